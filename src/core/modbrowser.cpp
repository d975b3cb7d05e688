// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/modbrowser.h"

#include "core/log.h"
#include "core/modfolders.h"
#include "core/prompter.h"
#include "korva/diskfile.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QUrl>

using namespace Qt::Literals::StringLiterals;

namespace modBrowser {

namespace {

constexpr qsizetype kCommandLength = 128;

QString trimBlanks(const QString &text)
{
    qsizetype start = 0, end = text.size();
    while (start < end && text[start] == u' ')
        ++start;
    while (end > start && text[end - 1] == u' ')
        --end;
    return text.mid(start, end - start);
}

QString quoted(const QString &arg)
{
    if (!arg.isEmpty() && !arg.contains(u' ') && !arg.contains(u'"') && arg != u"%1"_s)
        return arg;
    QString escaped = arg;
    escaped.replace(u"\""_s, u"\\\""_s);
    return u'"' + escaped + u'"';
}

QString joinCommand(const QStringList &tokens)
{
    if (tokens.isEmpty() || tokens.first().isEmpty())
        return {};
    QString command = u'"' + tokens.first() + u'"';
    for (qsizetype i = 1; i < tokens.size(); ++i)
        command += u' ' + quoted(tokens[i]);
    return command;
}

QStringList dirList(const char *variable, const QString &fallback)
{
    QString value = qEnvironmentVariable(variable);
    if (value.isEmpty())
        value = fallback;
    QStringList dirs = value.split(u':', Qt::SkipEmptyParts);
    for (QString &d : dirs) {
        while (d.endsWith(u'/') && d.size() > 1)
            d.chop(1);
    }
    return dirs;
}

QString configHome()
{
    const QString v = qEnvironmentVariable("XDG_CONFIG_HOME");
    return v.isEmpty() ? QDir::homePath() + u"/.config"_s : v;
}

QString dataHome()
{
    const QString v = qEnvironmentVariable("XDG_DATA_HOME");
    return v.isEmpty() ? QDir::homePath() + u"/.local/share"_s : v;
}

// The value of key in [group] of a desktop-style ini file, or empty.
QString iniValue(const QString &path, const QString &group, const QString &key)
{
    QByteArray data;
    if (korva::readFile(path, 4 * 1024 * 1024, data, nullptr) != korva::ReadStatus::Ok)
        return {};
    const QString header = u'[' + group + u']';
    bool inGroup = false;
    const QStringList lines = QString::fromUtf8(data).split(u'\n');
    for (const QString &raw : lines) {
        const QString line = raw.trimmed();
        if (line.startsWith(u'[')) {
            inGroup = (line == header);
            continue;
        }
        if (!inGroup || line.startsWith(u'#'))
            continue;
        const qsizetype eq = line.indexOf(u'=');
        if (eq > 0 && line.left(eq).trimmed() == key)
            return line.mid(eq + 1).trimmed();
    }
    return {};
}

QString findDesktopFile(const QString &desktopId, const QStringList &applicationDirs)
{
    for (const QString &dir : applicationDirs) {
        const QString path = dir + u'/' + desktopId;
        if (QFile::exists(path))
            return path;
        // "vendor-app.desktop" may also live as "vendor/app.desktop".
        const QString nested = dir + u'/' + QString(desktopId).replace(u'-', u'/');
        if (QFile::exists(nested))
            return nested;
    }
    return {};
}

} // namespace

QString BrowserCommandFromBrowserVariable(const QString &value)
{
    // BROWSER may list several commands separated by colons; the first is used.
    const QString first = value.split(u':', Qt::SkipEmptyParts).value(0).trimmed();
    if (first.isEmpty())
        return {};
    QStringList tokens = QProcess::splitCommand(first);
    bool hasAddress = false;
    for (QString &t : tokens) {
        if (t.contains(u"%s"_s)) {
            t.replace(u"%s"_s, u"%1"_s);
            hasAddress = true;
        }
    }
    if (!hasAddress)
        tokens << u"%1"_s;
    return joinCommand(tokens);
}

QString BrowserCommandFromExecLine(const QString &exec)
{
    QStringList tokens;
    for (const QString &token : QProcess::splitCommand(exec)) {
        // Field codes: the address codes become %1, "%%" a percent sign, and
        // the others (icon, name, file location) are dropped.
        QString out;
        for (qsizetype i = 0; i < token.size(); ++i) {
            if (token[i] != u'%' || i + 1 >= token.size()) {
                out += token[i];
                continue;
            }
            const QChar code = token[++i];
            if (code == u'u' || code == u'U' || code == u'f' || code == u'F')
                out += u"%1"_s;
            else if (code == u'%')
                out += u'%';
        }
        if (!out.isEmpty() || !token.startsWith(u'%'))
            tokens << out;
    }
    return joinCommand(tokens);
}

QString DefaultBrowserExecLine()
{
    const QString scheme = u"x-scheme-handler/http"_s;
    const QStringList dataDirs = dirList("XDG_DATA_DIRS", u"/usr/local/share:/usr/share"_s);
    QStringList applicationDirs {dataHome() + u"/applications"_s};
    for (const QString &d : dataDirs)
        applicationDirs << d + u"/applications"_s;

    // Where the desktop keeps its choice of default applications, most
    // personal first.
    QStringList lists {configHome() + u"/mimeapps.list"_s};
    for (const QString &d : dirList("XDG_CONFIG_DIRS", u"/etc/xdg"_s))
        lists << d + u"/mimeapps.list"_s;
    for (const QString &d : applicationDirs)
        lists << d + u"/mimeapps.list"_s << d + u"/defaults.list"_s;

    QStringList candidates;
    for (const QString &list : lists)
        candidates << iniValue(list, u"Default Applications"_s, scheme)
                              .split(u';', Qt::SkipEmptyParts);
    // Without a stated default, any installed handler will do.
    for (const QString &d : applicationDirs)
        candidates << iniValue(d + u"/mimeinfo.cache"_s, u"MIME Cache"_s, scheme)
                              .split(u';', Qt::SkipEmptyParts);

    for (const QString &id : candidates) {
        const QString desktopFile = findDesktopFile(id.trimmed(), applicationDirs);
        if (desktopFile.isEmpty())
            continue;
        const QString exec = iniValue(desktopFile, u"Desktop Entry"_s, u"Exec"_s);
        if (!exec.isEmpty())
            return exec;
    }
    return {};
}

QString DefaultBrowserCommand()
{
    const QString browser = qEnvironmentVariable("BROWSER");
    const QString command = browser.isEmpty() ? BrowserCommandFromExecLine(DefaultBrowserExecLine())
                                              : BrowserCommandFromBrowserVariable(browser);
    // The command was read into a buffer of 128 characters: a longer one
    // counts as missing.
    if (command.isEmpty() || command.size() >= kCommandLength) {
        Log(u"warning: couldn't open the query registry for browser key"_s);
        return {};
    }
    return command.leftJustified(kCommandLength, u' ');
}

SplitCommand SplitBrowserCommand(const QString &command)
{
    // The first double quote from the second character on closes a quoted path.
    const qsizetype q = command.size() > 1 ? command.indexOf(u'"', 1) + 1 : 0;
    return {trimBlanks(command.left(q)), trimBlanks(command.mid(q))};
}

void OpenUrl(const QString &url)
{
    const SplitCommand split = SplitBrowserCommand(DefaultBrowserCommand());
    Log(u"file: "_s + split.file);
    QString args = split.args;
    args.replace(u"%1"_s, url);
    Log(u"args: "_s + args);

    QString program = split.file;
    if (program.size() >= 2 && program.startsWith(u'"') && program.endsWith(u'"'))
        program = program.mid(1, program.size() - 2);
    prompter().StartProgram(program, QProcess::splitCommand(args), QString());
}

QString ProductPageUrl()
{
    return QUrl::fromLocalFile(modFolders::ProgramDirectory() + u"/doc/index.html"_s).toString();
}

void OpenProductPage()
{
    OpenUrl(ProductPageUrl());
}

} // namespace modBrowser
