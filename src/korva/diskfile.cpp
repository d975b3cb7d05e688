#include "korva/diskfile.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

using namespace Qt::Literals::StringLiterals;

namespace korva {

namespace {

bool fail(QString *error, const QString &why)
{
    if (error)
        *error = why;
    return false;
}

} // namespace

bool saveFile(const QString &path, QByteArrayView data, QString *error, SaveOptions)
{
    const QFileInfo info(path);
    if (info.exists() && !info.isFile())
        return fail(error, u"'%1' is not a regular file"_s.arg(path));
    QSaveFile out(path);
    // Unbuffered, so a write that fails says so here and not inside commit().
    if (!out.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        return fail(error, out.errorString());
    if (out.write(data.constData(), data.size()) != data.size()) {
        const QString why = out.errorString();
        out.cancelWriting();
        return fail(error, why);
    }
    if (!out.commit())
        return fail(error, out.errorString());
    return true;
}

bool readFile(const QString &path, qint64 maxSize, QByteArray &out, QString *error)
{
    const QFileInfo info(path);
    if (!info.exists())
        return fail(error, u"the file does not exist"_s);
    // A FIFO or device would block or never end: only regular files are read.
    if (!info.isFile())
        return fail(error, u"it is not a regular file"_s);
    if (info.size() > maxSize)
        return fail(error, u"it is larger than %1 bytes"_s.arg(maxSize));
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return fail(error, file.errorString());
    QByteArray data = file.read(maxSize + 1);
    if (data.size() > maxSize)
        return fail(error, u"it is larger than %1 bytes"_s.arg(maxSize));
    if (file.error() != QFileDevice::NoError)
        return fail(error, file.errorString());
    out = std::move(data);
    return true;
}

} // namespace korva
