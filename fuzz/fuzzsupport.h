// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What the fuzz targets share: a scratch folder for the files they mount and
// save, and a stop that names the property that broke.
#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QString>
#include <QTemporaryDir>

#include <cstdio>
#include <cstdlib>

namespace fuzz {

// In memory where the machine has such a folder: every save syncs its file.
inline QString scratch(const QString &name)
{
    static QTemporaryDir dir(QFileInfo(QStringLiteral("/dev/shm")).isWritable()
                                     ? QStringLiteral("/dev/shm/vocabrix-fuzz-XXXXXX")
                                     : QDir::tempPath() + QStringLiteral("/vocabrix-fuzz-XXXXXX"));
    return dir.filePath(name);
}

inline void writeFile(const QString &path, QByteArrayView data)
{
    QFile f(path);
    if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate)
        || f.write(data.data(), data.size()) != data.size())
        std::abort();
}

inline QByteArray readFile(const QString &path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

inline void check(bool property, const char *what)
{
    if (!property) {
        std::fprintf(stderr, "property broken: %s\n", what);
        std::abort();
    }
}

} // namespace fuzz
