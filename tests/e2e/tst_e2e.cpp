// SPDX-License-Identifier: GPL-3.0-or-later
// Starts the real programs. In a real X server (Xvfb), driven with xdotool:
// first use, chapter choice, a few study keys and exit, then the settings file
// it left, with screenshots of the chapter and study windows. Without any
// display: the command lines that must not need one.
//
// The programs are those of the build and, when VOCABRIX_PACKAGE_ROOT names a
// folder the Debian package was unpacked into, the unpacked ones as well,
// started through their links in usr/bin.
#include <QGuiApplication>
#include <QPixmap>
#include <QTest>
#include <QtCore>

using namespace Qt::Literals::StringLiterals;

namespace {

// Where the programs under test are started from, and the folder they should
// find their own files in.
struct Installation
{
    QString name;
    QString binDir;
    QString programDir; // canonical, as the program sees itself
};

QList<Installation> installations()
{
    const QString built = QFileInfo(QStringLiteral(VOCABRIX_BINARY)).canonicalPath();
    QList<Installation> list {{u"build"_s, built, built}};
    const QString root = qEnvironmentVariable("VOCABRIX_PACKAGE_ROOT");
    if (!root.isEmpty())
        list.append({u"package"_s, root + u"/usr/bin"_s, QFileInfo(root + u"/usr/lib/vocabrix"_s).canonicalFilePath()});
    return list;
}

// A home of its own for a started program, so nothing of the machine's user
// is read or changed.
QProcessEnvironment homeEnvironment(const QString &home)
{
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(u"HOME"_s, home);
    env.insert(u"XDG_CONFIG_HOME"_s, home + u"/.config"_s);
    env.insert(u"XDG_DATA_HOME"_s, home + u"/.local/share"_s);
    env.insert(u"XDG_CACHE_HOME"_s, home + u"/.cache"_s);
    env.remove(u"XDG_CONFIG_DIRS"_s);
    env.insert(u"ASAN_OPTIONS"_s, u"detect_leaks=0"_s);
    return env;
}

} // namespace

Q_DECLARE_METATYPE(Installation)

class EndToEndTest : public QObject
{
    Q_OBJECT

    QProcess m_xvfb;
    QString m_xdotool;

    QString xdotool(const QStringList &args)
    {
        QProcess p;
        p.start(m_xdotool, args);
        p.waitForFinished(10000);
        return QString::fromUtf8(p.readAllStandardOutput()).trimmed();
    }

    // The id of the window with exactly this title, once it shows.
    QString waitForWindow(const QString &title, int timeoutMs = 30000)
    {
        QElapsedTimer t;
        t.start();
        while (t.elapsed() < timeoutMs) {
            const QString ids = xdotool({u"search"_s, u"--onlyvisible"_s, u"--name"_s, u"^"_s + title + u"$"_s});
            if (!ids.isEmpty())
                return ids.split(u'\n').last();
            QThread::msleep(100);
        }
        return {};
    }

    void keys(const QString &window, const QStringList &keys)
    {
        xdotool({u"windowfocus"_s, u"--sync"_s, window});
        QThread::msleep(300); // let the window take the focus in
        xdotool(QStringList {u"key"_s, u"--delay"_s, u"150"_s} + keys);
    }

    // Sends keys to a window until the next window shows (a window that had
    // just appeared may not have taken the focus yet), and returns the next.
    QString keysUntil(const QString &window, const QStringList &keySequence, const QString &nextTitle)
    {
        for (int attempt = 0; attempt < 3; ++attempt) {
            keys(window, keySequence);
            const QString next = waitForWindow(nextTitle, 10000);
            if (!next.isEmpty())
                return next;
        }
        return {};
    }

    // A picture of one window (given by its X id) as the user sees it.
    void screenshot(const QString &path, const QString &window)
    {
        QProcess grab;
        grab.start(QCoreApplication::applicationFilePath(), {u"--grab"_s, path, window});
        QVERIFY(grab.waitForFinished(30000) && grab.exitCode() == 0);
    }

private Q_SLOTS:
    void initTestCase()
    {
        const QString xvfb = QStandardPaths::findExecutable(u"Xvfb"_s);
        m_xdotool = QStandardPaths::findExecutable(u"xdotool"_s);
        QVERIFY2(!xvfb.isEmpty() && !m_xdotool.isEmpty(), "Xvfb and xdotool are needed (scripts/install-deps.sh)");
        // The server picks a free display itself and says which (its number
        // comes in one piece): no race with another test's server starting at
        // the same moment.
        m_xvfb.start(xvfb, {u"-displayfd"_s, u"1"_s, u"-screen"_s, u"0"_s, u"1024x768x24"_s, u"-nolisten"_s, u"tcp"_s});
        m_xvfb.waitForReadyRead(10000);
        const QByteArray number = m_xvfb.readLine().trimmed();
        QVERIFY2(!number.isEmpty(), "no X display could be started");
        // Everything started from here on draws on it, as a desktop program.
        qputenv("DISPLAY", ':' + number);
        qputenv("QT_QPA_PLATFORM", "xcb");
    }

    void cleanupTestCase()
    {
        m_xvfb.terminate();
        m_xvfb.waitForFinished(5000);
    }

    void firstUseStudyAndExit_data()
    {
        QTest::addColumn<Installation>("installation");
        for (const Installation &i : installations())
            QTest::newRow(qPrintable(i.name)) << i;
    }

    void firstUseStudyAndExit()
    {
        QFETCH(Installation, installation);
        QTemporaryDir home;
        QProcess program;
        program.setProcessChannelMode(QProcess::ForwardedChannels);
        // A chapter of the user's own, named on the command line as a file
        // manager would, joins the examples.
        const QString mine = home.path() + u"/mine.zel"_s;
        QVERIFY(QFile::copy(installation.programDir + u"/ex2.zel"_s, mine));
        program.setProcessEnvironment(homeEnvironment(home.path()));
        program.start(installation.binDir + u"/vocabrix"_s, {mine});

        // First use: the setup asks; trouble marking off, then Finished.
        const QString setup = waitForWindow(u"Vocabrix 2007 Initial Setup"_s);
        QVERIFY2(!setup.isEmpty(), qPrintable(u"no setup window; the program's state: %1"_s.arg(program.state())));
        const QString chapters =
                keysUntil(setup, {u"space"_s, u"Down"_s, u"Return"_s}, u"Vocabrix - Choose Chapters"_s);
        QVERIFY2(!chapters.isEmpty(), "the chapter window did not appear");

        const QString shots = QStringLiteral(SCREENS_DIR);
        const QString prefix = shots + u'/' + installation.name + u'-';
        QDir().mkpath(shots);
        QThread::msleep(800); // the splash goes, the list is painted
        screenshot(prefix + u"chapter-window.png"_s, chapters);

        // The chapter window offers the four examples and the user's chapter: study them all.
        const QString study = keysUntil(chapters, {u"ctrl+a"_s, u"Return"_s}, u"Vocabrix"_s);
        QVERIFY2(!study.isEmpty(), "the study window did not appear");
        keys(study, {u"Right"_s, u"Right"_s, u"Return"_s, u"space"_s, u"Return"_s, u"Right"_s});
        QThread::msleep(800); // the card fades in

        screenshot(prefix + u"study-window.png"_s, study);

        keys(study, {u"x"_s});
        QVERIFY(program.waitForFinished(20000));
        QVERIFY(program.exitStatus() == QProcess::NormalExit && program.exitCode() == 0);

        // What it left in its home folder, as the editor beside the program
        // reads it: the answers, and the examples in the program's own folder.
        const QString master = home.path() + u"/Documents/Vocabrix/sys.zel"_s;
        QProcess dump;
        dump.setProcessEnvironment(homeEnvironment(home.path()));
        dump.start(installation.binDir + u"/vxedit"_s, {u"dump"_s, master});
        QVERIFY(dump.waitForFinished(20000));
        QCOMPARE(dump.exitCode(), 0);
        QMap<QString, QString> stored; // "value group"
        for (const QJsonValue &e : QJsonDocument::fromJson(dump.readAllStandardOutput())[u"entries"_s].toArray()) {
            const QJsonObject entry = e.toObject();
            const QJsonValue value = entry[u"is_text"_s].toInt() ? entry[u"text"_s] : entry[u"number"_s];
            stored.insert(entry[u"key"_s].toString(),
                          value.toVariant().toString() + u' ' + entry[u"note"_s].toString());
        }
        QCOMPARE(QStringList(
                         {stored[u"trouble_by_default"_s], stored[u"show_mouse_hover"_s], stored[u"flist_count"_s]}),
                 QStringList({u"0 options"_s, u"-1 options"_s, u"5 "_s}));
        for (int n = 1; n <= 4; ++n) {
            const QString chapter = stored.value(u"flist_name_%1"_s.arg(n)).trimmed();
            QCOMPARE(chapter, installation.programDir + u"/ex%1.zel"_s.arg(n));
            QVERIFY2(QFileInfo(chapter).isFile(), qPrintable(chapter));
        }
        QCOMPARE(stored.value(u"flist_name_5"_s).trimmed(), mine);
    }

    // What the programs answer on a terminal, with no display to open a
    // window on (a window would abort them).
    void commandLine_data()
    {
        QTest::addColumn<QString>("program");
        QTest::addColumn<QString>("argument");
        QTest::addColumn<QString>("out");
        const QString version = QStringLiteral(VOCABRIX_VERSION);
        for (const Installation &i : installations()) {
            const QString vocabrix = i.binDir + u"/vocabrix"_s, vxedit = i.binDir + u"/vxedit"_s;
            QTest::addRow("%s: vocabrix --version", qPrintable(i.name))
                    << vocabrix << u"--version"_s << u"vocabrix "_s + version + u'\n';
            QTest::addRow("%s: vocabrix -h", qPrintable(i.name)) << vocabrix << u"-h"_s << u"usage: vocabrix"_s;
            QTest::addRow("%s: vxedit --version", qPrintable(i.name))
                    << vxedit << u"--version"_s << u"vxedit "_s + version + u'\n';
        }
    }

    void commandLine()
    {
        QFETCH(QString, program);
        QFETCH(QString, argument);
        QFETCH(QString, out);
        QTemporaryDir home;
        QProcessEnvironment env = homeEnvironment(home.path());
        env.remove(u"DISPLAY"_s);
        env.remove(u"WAYLAND_DISPLAY"_s); // a window would abort them (xcb)
        QProcess p;
        p.setProcessEnvironment(env);
        p.start(program, {argument});
        QVERIFY(p.waitForFinished(20000));
        const QString stdoutText = QString::fromUtf8(p.readAllStandardOutput());
        const QString stderrText = QString::fromUtf8(p.readAllStandardError());
        QVERIFY2(p.exitStatus() == QProcess::NormalExit && p.exitCode() == 0, qPrintable(stderrText));
        QVERIFY2(out.endsWith(u'\n') ? stdoutText == out : stdoutText.startsWith(out), qPrintable(stdoutText));
        QVERIFY2(stderrText.isEmpty(), qPrintable(stderrText));
        QVERIFY(QDir(home.path()).isEmpty()); // nothing started that writes
    }
};

int main(int argc, char *argv[])
{
    if (argc == 4 && qstrcmp(argv[1], "--grab") == 0) {
        QGuiApplication app(argc, argv);
        const WId window = QByteArray(argv[3]).toULongLong();
        const QPixmap shot = QGuiApplication::primaryScreen()->grabWindow(window);
        return !shot.isNull() && shot.save(QString::fromLocal8Bit(argv[2])) ? 0 : 1;
    }
    QCoreApplication app(argc, argv);
    EndToEndTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_e2e.moc"
