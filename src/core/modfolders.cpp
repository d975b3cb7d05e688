// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/modfolders.h"

#include "core/log.h"
#include "core/programstate.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

using namespace Qt::Literals::StringLiterals;

namespace modFolders {

QString SpecialFolderPath(qint32 folderId)
{
    if (folderId != kFolderPersonal)
        return {};
    const QString path = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    if (path.isEmpty())
        return {};
    return path.endsWith(u'/') ? path : path + u'/';
}

QString DocumentsFolder()
{
    return SpecialFolderPath(kFolderPersonal);
}

void SetHomeDirectory()
{
    g_BaseDirectory = DocumentsFolder() + u"Vocabrix"_s;

    // Anything of that name counts as there, a plain file too: it is left
    // alone, and the master database then cannot be mounted.
    QString suffix;
    if (!QFileInfo::exists(g_BaseDirectory)) {
        // The documents folder itself may be missing on a fresh account.
        QDir().mkpath(g_BaseDirectory);
        suffix = u" [created]/n"_s;
    } else {
        suffix = u" [exists]/n"_s;
    }
    Log(u"using home directory: '"_s + g_BaseDirectory + u"'"_s, kLogProgress);
    Log(suffix, kLogContinuation);
}

namespace {
QString g_programDirectory;
}

void SetProgramDirectory(const QString &path)
{
    g_programDirectory = path;
}

QString ProgramDirectory()
{
    if (!g_programDirectory.isEmpty())
        return g_programDirectory;
    if (!QCoreApplication::instance())
        return QDir::currentPath();
    return QCoreApplication::applicationDirPath();
}

} // namespace modFolders

QString ExecutableFileName(const QString &baseName)
{
#ifdef Q_OS_WIN
    return baseName + u".exe"_s;
#else
    return baseName;
#endif
}
