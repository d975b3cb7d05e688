// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/extrasettings.h"
#include "core/modbrowser.h"
#include "core/modfolders.h"
#include "core/programstate.h"
#include "testsupport.h"

using namespace Qt::Literals::StringLiterals;

namespace {

class RecordingSplash final : public SplashStatusOutlet
{
public:
    QStringList texts;
    void SetStatusText(const QString &text) override { texts << text; }
};

void writeDesktopFile(const QString &dir, const QString &id, const QString &exec)
{
    WriteFileBytes(dir + u'/' + id,
                   (u"[Desktop Entry]\nType=Application\nName=Browser\nExec="_s + exec
                    + u"\n\n[Desktop Action new-window]\nExec=other %u\n"_s)
                           .toUtf8());
}

} // namespace

class CoreTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup()
    {
        qunsetenv("BROWSER");
        qunsetenv("XDG_DATA_DIRS");
        qunsetenv("XDG_CONFIG_DIRS");
    }

    // The external debugger is started from the home folder when it is
    // there; when it is not, the person is told.
    void debuggerRegistration()
    {
        TestEnvironment env;
        RegisterWatcher();
        QCOMPARE(env.prompter.boxTitles(), QStringList(u"DEBUG Mode Mismatch"_s));
        const QString debugger = env.path(ExecutableFileName(u"zeldebug"_s));
        WriteFileBytes(debugger, "a debugger");
        RegisterWatcher();
        QCOMPARE(env.prompter.launches.at(0).program, debugger);
        QCOMPARE(env.logLines(), QStringList(u" .. execing "_s + debugger + u" for debugger registration/n"_s));
    }

    // Where a line goes: the watcher, the splash (without its markers,
    // paced), or nowhere. A high-priority line's box is seen with the start
    // that fails (tst_app).
    void logOutlets_data()
    {
        QTest::addColumn<bool>("watcher");
        QTest::addColumn<bool>("splash");
        QTest::addColumn<qint16>("level");
        QTest::addColumn<QString>("message");
        QTest::addColumn<QString>("shown"); // on the splash
        QTest::addColumn<int>("eventRounds");
        QTest::newRow("banner to watcher and splash")
                << true << true << kLogBanner << u"/b/cVocabrix/n"_s << u"/b/cVocabrix"_s << 2;
        QTest::newRow("a continuation") << true << false << kLogContinuation << u" [exists]/n"_s << QString() << 1;
        QTest::newRow("markers in the middle") << false << true << kLogProgress << u"a/nb/tc/n"_s << u"abc"_s << 1;
    }
    void logOutlets()
    {
        QFETCH(bool, watcher);
        QFETCH(bool, splash);
        QFETCH(qint16, level);
        QFETCH(QString, message);
        QFETCH(QString, shown);
        QFETCH(int, eventRounds);
        TestEnvironment env(watcher);
        RecordingSplash status;
        g_SplashOutlet = &status;
        g_SplashUp = splash;
        Log(message, level, -1, false);
        QCOMPARE(env.logLines(), watcher ? QStringList(message) : QStringList());
        if (watcher)
            QCOMPARE(QList<int>({env.log->lines[0].level, env.log->lines[0].channel}), QList<int>({level, -1}));
        QCOMPARE(status.texts, shown.isEmpty() ? QStringList() : QStringList(shown));
        QCOMPARE(env.pauser.sleptMs, shown.isEmpty() ? 0 : 25); // each line on the splash is paced
        QCOMPARE(env.pauser.eventRounds, eventRounds);
    }

    // A coarse pause sleeps once; a fine one in steps of a millisecond, handling events between.
    void pauseWithEvents()
    {
        // Milliseconds, fine (1) or coarse (0); then sleeps, milliseconds slept, event rounds.
        const QList<QList<qint64>> cases {{150, 1, 150, 150, 152}, {0, 1, 0, 0, 1}, {75, 0, 1, 75, 2}};
        for (const QList<qint64> &c : cases) {
            TestEnvironment env(false);
            PauseWithEvents(int(c[0]), c[1] == 1);
            QCOMPARE(QList<qint64>({env.pauser.sleeps, env.pauser.sleptMs, env.pauser.eventRounds}), c.mid(2));
        }
    }

    void homeDirectoryCreatedThenFound()
    {
        TestEnvironment env;
        QDir(env.home()).rmdir(u"Documents"_s); // made with its parents (" [created]/n" in the start's log, tst_app)
        modFolders::SetHomeDirectory();
        const QString home = g_BaseDirectory;
        QVERIFY(QFileInfo(home).isDir());

        // Found again, a plain file of that name too, and left as it is.
        QVERIFY(QDir(home).removeRecursively());
        WriteFileBytes(home, "not a folder");
        modFolders::SetHomeDirectory();
        QCOMPARE(env.logLines().last(), u" [exists]/n"_s);
        QCOMPARE(env.log->lines.back().level, kLogContinuation);
        QCOMPARE(ReadFileBytes(home), QByteArray("not a folder"));
    }

    // Where the command comes from (the BROWSER variable, a desktop entry's
    // Exec line, or as it stands), and how it is split: "file | args".
    void browserCommand_data()
    {
        QTest::addColumn<QString>("from");
        QTest::addColumn<QString>("value");
        QTest::addColumn<QString>("split");
        QTest::newRow("quoted path, -url and quoted address")
                << u"command"_s << u"\"C:\\Program Files\\Browser\\browser.exe\" -url \"%1\"     "_s
                << u"\"C:\\Program Files\\Browser\\browser.exe\" | -url \"%1\""_s;
        QTest::newRow("BROWSER with %s") << u"BROWSER"_s << u"lynx -dump %s"_s << u"\"lynx\" | -dump \"%1\""_s;
        QTest::newRow("BROWSER list takes the first") << u"BROWSER"_s << u"w3m:lynx"_s << u"\"w3m\" | \"%1\""_s;
        QTest::newRow("Exec codes") << u"Exec"_s << u"chromium %i --new %U %c"_s << u"\"chromium\" | --new \"%1\""_s;
        QTest::newRow("Exec quoted program")
                << u"Exec"_s << u"\"/opt/My Browser/run\" %f"_s << u"\"/opt/My Browser/run\" | \"%1\""_s;
        QTest::newRow("Exec without address") << u"Exec"_s << u"surf"_s << u"\"surf\" | "_s;
    }
    void browserCommand()
    {
        QFETCH(QString, from);
        QFETCH(QString, value);
        QFETCH(QString, split);
        const QString command = from == u"BROWSER"_s ? modBrowser::BrowserCommandFromBrowserVariable(value)
                : from == u"Exec"_s                  ? modBrowser::BrowserCommandFromExecLine(value)
                                                     : value;
        const modBrowser::SplitCommand parts = modBrowser::SplitBrowserCommand(command);
        QCOMPARE(parts.file + u" | "_s + parts.args, split);
    }

    // The desktop's default browser, when BROWSER is not set; a command too
    // long to keep (128 characters with its quotes and "%1") counts as none.
    void browserFromDefaultDesktopEntry()
    {
        TestEnvironment env;
        const QString apps = env.home() + u"/.local/share/applications"_s;
        qputenv("XDG_DATA_DIRS", env.path(u"nowhere"_s).toUtf8());
        qputenv("XDG_CONFIG_DIRS", env.path(u"nowhere"_s).toUtf8());
        writeDesktopFile(apps, u"mybrowser.desktop"_s, u"/usr/bin/mybrowser --private %u"_s);
        writeDesktopFile(apps, u"other.desktop"_s, u"/usr/bin/other %u"_s);
        WriteFileBytes(env.home() + u"/.config/mimeapps.list"_s,
                       "[Added Associations]\nx-scheme-handler/http=other.desktop;\n"
                       "[Default Applications]\nx-scheme-handler/http=missing.desktop;mybrowser.desktop;\n");
        QCOMPARE(modBrowser::DefaultBrowserCommand().trimmed(), u"\"/usr/bin/mybrowser\" --private \"%1\""_s);

        modBrowser::OpenUrl(u"file:///tmp/doc/index.html"_s);
        QCOMPARE(env.logLines(),
                 QStringList({u"file: \"/usr/bin/mybrowser\""_s, u"args: --private \"file:///tmp/doc/index.html\""_s}));
        QCOMPARE(env.prompter.launches.size(), size_t(1));
        QCOMPARE(env.prompter.launches[0].program, u"/usr/bin/mybrowser"_s);
        QCOMPARE(env.prompter.launches[0].arguments, QStringList({u"--private"_s, u"file:///tmp/doc/index.html"_s}));
        // The older list kept among the applications counts as well.
        QFile::remove(env.home() + u"/.config/mimeapps.list"_s);
        WriteFileBytes(apps + u"/defaults.list"_s, "[Default Applications]\nx-scheme-handler/http=other.desktop\n");
        QCOMPARE(modBrowser::DefaultBrowserExecLine(), u"/usr/bin/other %u"_s);

        // A BROWSER variable goes before the desktop's choice; this one, 128
        // characters with its quotes and "%1", is too long to keep.
        qputenv("BROWSER", QByteArray("/") + QByteArray(120, 'b'));
        env.log->clear();
        QCOMPARE(modBrowser::DefaultBrowserCommand(), QString());
        QCOMPARE(env.logLines(), QStringList(u"warning: couldn't open the query registry for browser key"_s));
    }

    // The additions' settings file: what is read from it, and what a save
    // writes after one setting was added ("key" alone: not read).
    void extraSettingsFile_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QStringList>("read");
        QTest::addColumn<QByteArray>("saved"); // empty: the save fails
        const QByteArray head = "# Vocabrix: settings of the study window's additions\n";
        const QByteArray added = "added=a\\nb\\\\\n";
        QTest::newRow("no file") << QByteArray() << QStringList {u"study.keep_session"_s} << head + added;
        QTest::newRow("values in their order, unknown ones kept, escapes, a key given twice")
                << QByteArray("# a comment\nzeta=2\nA.x-y_z=two words=\np=C:\\\\x\\ny\\r\nk=1\nk=2\n")
                << QStringList {u"zeta=2"_s, u"A.x-y_z=two words="_s, u"p=C:\\x\ny\r"_s, u"k=2"_s}
                << head + "zeta=2\nA.x-y_z=two words=\np=C:\\\\x\\ny\\r\nk=2\n" + added;
        QTest::newRow("damaged lines left out")
                << QByteArray("ok=1\nno equals\n=v\nbad key=2\nesc=a\\qb\ntail=c\\\nutf=\xff\xfe\nlast=\xc3\xa4\r\n")
                << QStringList {u"ok=1"_s, u"esc"_s, u"tail"_s, u"utf"_s, u"last=ä"_s}
                << head + "ok=1\nlast=\xc3\xa4\n" + added;
        QTest::newRow("a folder in its place") << QByteArray("folder") << QStringList {u"k"_s} << QByteArray();
    }
    void extraSettingsFile()
    {
        QFETCH(QByteArray, file);
        QFETCH(QStringList, read);
        QFETCH(QByteArray, saved);
        TestEnvironment env;
        const QString path = env.path(u"extras.conf"_s);
        if (file == "folder")
            QVERIFY(QDir(env.home()).mkdir(u"extras.conf"_s));
        else if (!file.isNull())
            WriteFileBytes(path, file);
        g_Extras.Load();
        for (const QString &r : read) {
            const QString key = r.section(u'=', 0, 0);
            QCOMPARE(g_Extras.Contains(key), r.contains(u'='));
            QCOMPARE(g_Extras.String(key, u"default"_s), r.contains(u'=') ? r.section(u'=', 1) : u"default"_s);
        }
        QVERIFY(!g_Extras.IsDirty());
        g_Extras.SetString(u"added"_s, u"a\nb\\"_s);
        QString error;
        QCOMPARE(g_Extras.Save(&error), !saved.isEmpty());
        QCOMPARE(g_Extras.IsDirty(), saved.isEmpty()); // kept to be tried again
        if (saved.isEmpty()) {
            QVERIFY(!error.isEmpty());
            QVERIFY(QFileInfo(path).isDir());
            g_Extras.Load(); // read again: the unsaved change is gone
            QVERIFY(!g_Extras.IsDirty() && !g_Extras.Contains(u"added"_s));
        } else {
            QCOMPARE(ReadFileBytes(path), saved);
        }
        g_Extras.SetString(u"added"_s, u"again"_s);
        g_Extras.Clear(); // settings reset: nothing left, nothing to save
        QVERIFY(!g_Extras.IsDirty() && !g_Extras.Contains(u"added"_s));
    }
};

QTEST_GUILESS_MAIN(CoreTest)
#include "tst_core.moc"
