#include "core/gcommondialog.h"
#include "core/modbrowser.h"
#include "core/modfolders.h"
#include "testsupport.h"

#include <QLocale>

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
        SetTickSource(nullptr);
        QLocale::setDefault(QLocale::c());
        qunsetenv("BROWSER");
    }

    void highPriorityWithoutWatcherIsABoxOnly()
    {
        TestEnvironment env(false);
        RecordingSplash splash;
        g_SplashOutlet = &splash;
        g_SplashUp = true;
        Log(u"The program cannot start/n"_s, kLogProgress, -1, true);
        QCOMPARE(env.prompter.boxes.size(), size_t(1));
        const MessageBoxRequest &box = env.prompter.boxes[0];
        QCOMPARE(box.title, u"High Priority Message Handler"_s);
        QCOMPARE(box.text, u"The program cannot start/n"_s); // markers kept
        QCOMPARE(box.icon, MsgIcon::Critical);
        QCOMPARE(box.buttons, MsgButtons::OK);
        QVERIFY(splash.texts.isEmpty());
        QCOMPARE(env.pauser.sleptMs, 0);
    }

    void watcherGetsEveryLine()
    {
        TestEnvironment env;
        Log(u"/b/cVocabrix v1/n"_s, kLogBanner);
        Log(u"urgent/n"_s, kLogProgress, -1, true); // with a watcher, no box
        Log(u" [exists]/n"_s, kLogContinuation);
        QCOMPARE(env.logLines(), QStringList({u"/b/cVocabrix v1/n"_s, u"urgent/n"_s, u" [exists]/n"_s}));
        QCOMPARE(env.log->lines[0].level, kLogBanner);
        QCOMPARE(env.log->lines[2].level, kLogContinuation);
        QCOMPARE(env.log->lines[1].channel, -1);
        QVERIFY(env.prompter.boxes.empty());
        QCOMPARE(env.pauser.eventRounds, 3); // one event round per line
    }

    void splashShowsLinesWithoutMarkers_data()
    {
        QTest::addColumn<QString>("message");
        QTest::addColumn<QString>("shown");
        QTest::newRow("end marker") << u"KORVA Alive/n"_s << u"KORVA Alive"_s;
        QTest::newRow("markers in the middle") << u"a/nb/tc/n"_s << u"abc"_s;
        QTest::newRow("no marker") << u"using home directory: 'x'"_s << u"using home directory: 'x'"_s;
        QTest::newRow("format markers stay") << u"/b/cVocabrix/n"_s << u"/b/cVocabrix"_s;
    }
    void splashShowsLinesWithoutMarkers()
    {
        QFETCH(QString, message);
        QFETCH(QString, shown);
        TestEnvironment env(false);
        RecordingSplash splash;
        g_SplashOutlet = &splash;
        g_SplashUp = true;
        Log(message);
        QCOMPARE(splash.texts, QStringList(shown));
        QCOMPARE(env.pauser.sleptMs, 25); // each line is paced
        QCOMPARE(env.pauser.eventRounds, 1);
    }

    void quietWithoutOutletsAndNoWatcherToConnect()
    {
        TestEnvironment env(false);
        Log(u"dropped/n"_s);
        ConnectWatcher(); // switched off in this build
        QVERIFY(!g_Watcher);
        QVERIFY(env.prompter.boxes.empty() && env.prompter.launches.empty());
        QCOMPARE(env.pauser.sleptMs + env.pauser.eventRounds, 0);

        bool disconnected = false;
        g_Watcher = std::make_unique<RecordingWatcher>();
        static_cast<RecordingWatcher *>(g_Watcher.get())->disconnected = &disconnected;
        DisconnectWatcher();
        QVERIFY(disconnected && !g_Watcher);
        DisconnectWatcher(); // nothing left: no harm
    }

    void registerWatcher()
    {
        TestEnvironment env;
        g_BaseDirectory = env.home();
        RegisterWatcher();
        QCOMPARE(env.prompter.boxTitles(), QStringList(u"DEBUG Mode Mismatch"_s));
        QCOMPARE(env.prompter.boxes[0].text,
                 u"This program is in DEBUG mode, but the external debugger couldn't be found. "
                 "Check "
                 "to ensure the file is present in the current directory."_s);
        QCOMPARE(env.prompter.boxes[0].icon, MsgIcon::Exclamation);

        const QString debugger = env.path(ExecutableFileName(u"zeldebug"_s));
        WriteFileBytes(debugger, "#!/bin/sh\n");
        RegisterWatcher();
        QCOMPARE(env.logLines().last(), u" .. execing "_s + debugger + u" for debugger registration/n"_s);
        QCOMPARE(env.prompter.launches.size(), size_t(1));
        QCOMPARE(env.prompter.launches[0].program, debugger);
    }

    void elapsedText_data()
    {
        QTest::addColumn<qint64>("frequency");
        QTest::addColumn<qint64>("start");
        QTest::addColumn<qint64>("stop");
        QTest::addColumn<QString>("mask");
        QTest::addColumn<QString>("text");
        QTest::addColumn<double>("ms");
        // The value is in seconds although the masks say "msec".
        QTest::newRow("2.5 ms") << qint64(1000000) << qint64(1000) << qint64(3500) << u"took %t msec/n"_s
                                << u"took 0.0025000 msec/n"_s << 2.5;
        QTest::newRow("two markers") << qint64(1000) << qint64(0) << qint64(1500) << u"%t|%t"_s
                                     << u"1.5000000|1.5000000"_s << 1500.0;
        QTest::newRow("grouped thousands")
                << qint64(10) << qint64(0) << qint64(12345) << u"%t"_s << u"1,234.5000000"_s << 1234500.0;
        QTest::newRow("no counter") << qint64(0) << qint64(5) << qint64(9) << u"%t"_s << u"0.0000000"_s << 0.0;
        QTest::newRow("before Stop: negative")
                << qint64(1000) << qint64(2500) << qint64(-1) << u"%t"_s << u"-2.5000000"_s << -2500.0;
    }
    void elapsedText()
    {
        QFETCH(qint64, frequency);
        QFETCH(qint64, start);
        QFETCH(qint64, stop);
        QFETCH(QString, mask);
        QFETCH(QString, text);
        QFETCH(double, ms);
        TestEnvironment env;
        QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
        ManualTicks ticks;
        ticks.frequency = frequency;
        SetTickSource(&ticks);
        clsTimer timer;
        ticks.now = start;
        timer.Start();
        ticks.now = stop;
        if (stop >= 0)
            timer.Stop();
        QCOMPARE(timer.strElapsed(mask), text);
        QCOMPARE(timer.ElapsedMs(), ms);
        QVERIFY(env.logLines().isEmpty());
    }

    void maskWithoutMarker()
    {
        TestEnvironment env;
        clsTimer timer;
        QCOMPARE(timer.strElapsed(u"no marker here/n"_s), u"no marker here/n"_s);
        QCOMPARE(env.logLines(), QStringList(u" .. warning: strElapsed couldn't find a '%t' in string mask/n"_s));
    }

    void timerFrequencyAndAvailability()
    {
        TestEnvironment env(false);
        ManualTicks ticks;
        ticks.frequency = 3579545;
        SetTickSource(&ticks);
        clsTimer timer;
        QCOMPARE(timer.Frequency(), 3579545);
        QVERIFY(!timer.Available()); // only with a watcher
        g_Watcher = std::make_unique<RecordingWatcher>();
        QVERIFY(timer.Available());
        SetTickSource(nullptr);
        clsTimer real;
        QCOMPARE(real.Frequency(), 1000000000);
    }

    void pauseWithEvents_data()
    {
        QTest::addColumn<int>("ms");
        QTest::addColumn<bool>("fine");
        QTest::addColumn<int>("sleeps");
        QTest::addColumn<qint64>("slept");
        QTest::addColumn<int>("eventRounds");
        QTest::newRow("fine 150") << 150 << true << 150 << qint64(150) << 152;
        QTest::newRow("fine 1") << 1 << true << 1 << qint64(1) << 3;
        QTest::newRow("fine 0") << 0 << true << 0 << qint64(0) << 1;
        QTest::newRow("coarse 75") << 75 << false << 1 << qint64(75) << 2;
    }
    void pauseWithEvents()
    {
        QFETCH(int, ms);
        QFETCH(bool, fine);
        QFETCH(int, sleeps);
        QFETCH(qint64, slept);
        QFETCH(int, eventRounds);
        TestEnvironment env(false);
        PauseWithEvents(ms, fine);
        QCOMPARE(env.pauser.sleeps, sleeps);
        QCOMPARE(env.pauser.sleptMs, slept);
        QCOMPARE(env.pauser.eventRounds, eventRounds);
    }

    void homeDirectoryCreatedThenFound()
    {
        TestEnvironment env;
        QDir(env.home()).rmdir(u"Documents"_s); // made with its parents
        const QString expected = env.home() + u"/Documents/Vocabrix"_s;
        QCOMPARE(modFolders::DocumentsFolder(), env.home() + u"/Documents/"_s);

        modFolders::SetHomeDirectory();
        QCOMPARE(g_BaseDirectory, expected);
        QVERIFY(QFileInfo(expected).isDir());
        QCOMPARE(env.logLines(), QStringList({u"using home directory: '"_s + expected + u"'"_s, u" [created]/n"_s}));
        QCOMPARE(env.log->lines[0].level, kLogProgress);
        QCOMPARE(env.log->lines[1].level, kLogContinuation);

        env.log->clear();
        modFolders::SetHomeDirectory();
        QCOMPARE(env.logLines().last(), u" [exists]/n"_s);

        // A plain file of that name is found as well, and left as it is.
        QVERIFY(QDir(expected).removeRecursively());
        WriteFileBytes(expected, "not a folder");
        env.log->clear();
        modFolders::SetHomeDirectory();
        QCOMPARE(env.logLines().last(), u" [exists]/n"_s);
        QCOMPARE(env.log->lines.back().level, kLogContinuation);
        QCOMPARE(ReadFileBytes(expected), QByteArray("not a folder"));
    }

    void browserSplit_data()
    {
        QTest::addColumn<QString>("command");
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("args");
        QTest::newRow("quoted path, -url and quoted address")
                << u"\"C:\\Program Files\\Browser\\browser.exe\" -url \"%1\"     "_s
                << u"\"C:\\Program Files\\Browser\\browser.exe\""_s << u"-url \"%1\""_s;
        QTest::newRow("no address") << u"\"/usr/bin/browser\""_s << u"\"/usr/bin/browser\""_s << QString();
        QTest::newRow("unquoted path leaves the file empty")
                << u"/usr/bin/browser %1"_s << QString() << u"/usr/bin/browser %1"_s;
        QTest::newRow("empty") << QString() << QString() << QString();
    }
    void browserSplit()
    {
        QFETCH(QString, command);
        QFETCH(QString, file);
        QFETCH(QString, args);
        const modBrowser::SplitCommand split = modBrowser::SplitBrowserCommand(command);
        QCOMPARE(split.file, file);
        QCOMPARE(split.args, args);
    }

    void browserCommandForms_data()
    {
        QTest::addColumn<bool>("fromVariable");
        QTest::addColumn<QString>("value");
        QTest::addColumn<QString>("command");
        QTest::newRow("BROWSER plain") << true << u"firefox"_s << u"\"firefox\" \"%1\""_s;
        QTest::newRow("BROWSER with %s") << true << u"lynx -dump %s"_s << u"\"lynx\" -dump \"%1\""_s;
        QTest::newRow("BROWSER list takes the first") << true << u"w3m:lynx"_s << u"\"w3m\" \"%1\""_s;
        QTest::newRow("Exec %u") << false << u"/usr/bin/firefox-esr %u"_s << u"\"/usr/bin/firefox-esr\" \"%1\""_s;
        QTest::newRow("Exec %U and dropped codes")
                << false << u"chromium --new %U %i"_s << u"\"chromium\" --new \"%1\""_s;
        QTest::newRow("Exec quoted program")
                << false << u"\"/opt/My Browser/run\" %f"_s << u"\"/opt/My Browser/run\" \"%1\""_s;
        QTest::newRow("Exec without address") << false << u"surf"_s << u"\"surf\""_s;
    }
    void browserCommandForms()
    {
        QFETCH(bool, fromVariable);
        QFETCH(QString, value);
        QFETCH(QString, command);
        QCOMPARE(fromVariable ? modBrowser::BrowserCommandFromBrowserVariable(value)
                              : modBrowser::BrowserCommandFromExecLine(value),
                 command);
    }

    void browserFromDefaultDesktopEntry()
    {
        TestEnvironment env;
        const QString apps = env.home() + u"/.local/share/applications"_s;
        qputenv("XDG_DATA_DIRS", env.path(u"nowhere"_s).toUtf8());
        qputenv("XDG_CONFIG_DIRS", env.path(u"nowhere"_s).toUtf8());
        writeDesktopFile(apps, u"mybrowser.desktop"_s, u"/usr/bin/mybrowser --private %u"_s);
        WriteFileBytes(env.home() + u"/.config/mimeapps.list"_s,
                       "[Added Associations]\nx-scheme-handler/http=other.desktop;\n"
                       "[Default "
                       "Applications]\nx-scheme-handler/http=missing.desktop;mybrowser.desktop;\n");
        QCOMPARE(modBrowser::DefaultBrowserExecLine(), u"/usr/bin/mybrowser --private %u"_s);
        const QString command = modBrowser::DefaultBrowserCommand();
        QCOMPARE(command.size(), 128);
        QCOMPARE(command.trimmed(), u"\"/usr/bin/mybrowser\" --private \"%1\""_s);

        modBrowser::OpenUrl(u"file:///tmp/doc/index.html"_s);
        QCOMPARE(env.logLines(),
                 QStringList({u"file: \"/usr/bin/mybrowser\""_s, u"args: --private \"file:///tmp/doc/index.html\""_s}));
        QCOMPARE(env.prompter.launches.size(), size_t(1));
        QCOMPARE(env.prompter.launches[0].program, u"/usr/bin/mybrowser"_s);
        QCOMPARE(env.prompter.launches[0].arguments, QStringList({u"--private"_s, u"file:///tmp/doc/index.html"_s}));
        qunsetenv("XDG_DATA_DIRS");
        qunsetenv("XDG_CONFIG_DIRS");
    }

    void browserVariableWins()
    {
        TestEnvironment env;
        qputenv("BROWSER", "/opt/b/browser --new-tab");
        modBrowser::OpenProductPage();
        QCOMPARE(env.prompter.launches.size(), size_t(1));
        QCOMPARE(env.prompter.launches[0].program, u"/opt/b/browser"_s);
        QCOMPARE(env.prompter.launches[0].arguments, QStringList({u"--new-tab"_s, modBrowser::ProductPageUrl()}));
        QVERIFY(modBrowser::ProductPageUrl().startsWith(u"file:///"_s));
        QVERIFY(modBrowser::ProductPageUrl().endsWith(u"/doc/index.html"_s));
    }

    void overLongOrMissingBrowserCommand_data()
    {
        QTest::addColumn<QByteArray>("browser");
        QTest::newRow("128 characters") << (QByteArray("/") + QByteArray(120, 'b')); // with quotes and "%1"
        QTest::newRow("nothing known") << QByteArray();
    }
    void overLongOrMissingBrowserCommand()
    {
        QFETCH(QByteArray, browser);
        TestEnvironment env;
        qputenv("XDG_DATA_DIRS", env.path(u"nowhere"_s).toUtf8());
        qputenv("XDG_CONFIG_DIRS", env.path(u"nowhere"_s).toUtf8());
        if (!browser.isEmpty()) {
            qputenv("BROWSER", browser);
            QCOMPARE(modBrowser::BrowserCommandFromBrowserVariable(QString::fromUtf8(browser)).size(), 128);
        }
        QCOMPARE(modBrowser::DefaultBrowserCommand(), QString());
        QCOMPARE(env.logLines(), QStringList(u"warning: couldn't open the query registry for browser key"_s));

        // The launch goes ahead with an empty file and fails quietly.
        modBrowser::OpenUrl(u"http://example.org"_s);
        QVERIFY(env.prompter.boxes.empty());
        QCOMPARE(env.prompter.launches.back().program, QString());
        qunsetenv("XDG_DATA_DIRS");
        qunsetenv("XDG_CONFIG_DIRS");
    }

    void dialogFilters_data()
    {
        QTest::addColumn<QString>("filter");
        QTest::addColumn<QString>("qt");
        QTest::newRow("one pair") << u"Vocabrix Data File|*.zel"_s << u"Vocabrix Data File (*.zel)"_s;
        QTest::newRow("two pairs") << u"Save|*.vxs|All|*.*"_s << u"Save (*.vxs);;All (*.*)"_s;
        QTest::newRow("lone pattern") << u"*.txt"_s << u"*.txt (*.txt)"_s;
        QTest::newRow("several patterns") << u"Text|*.txt;*.csv"_s << u"Text (*.txt *.csv)"_s;
    }
    void dialogFilters()
    {
        QFETCH(QString, filter);
        QFETCH(QString, qt);
        QCOMPARE(GCommonDialog::ToQtFilter(filter), qt);
    }

    void fileDialogThroughPrompter()
    {
        TestEnvironment env;
        env.prompter.fileAnswers = {u"/tmp/progress"_s, u"/tmp/already.vxs"_s, std::nullopt};
        GCommonDialog dialog;
        dialog.SetDialogTitle(u"Save As"_s);
        dialog.SetFilter(u"Vocabrix Save File|*.vxs"_s);
        dialog.SetDefaultExt(u"vxs"_s);
        QVERIFY(dialog.ShowSave());
        QCOMPARE(dialog.FileName(), u"/tmp/progress.vxs"_s);
        QVERIFY(dialog.ShowOpen());
        QCOMPARE(dialog.FileName(), u"/tmp/already.vxs"_s);
        QVERIFY(!dialog.ShowOpen());
        QCOMPARE(env.prompter.fileDialogs[0].kind, FileDialogKind::Save);
        QCOMPARE(env.prompter.fileDialogs[0].title, u"Save As"_s);
        QCOMPARE(env.prompter.fileDialogs[0].filter, u"Vocabrix Save File (*.vxs)"_s);
        QCOMPARE(env.prompter.fileDialogs[1].kind, FileDialogKind::Open);

        env.prompter.colorAnswers = {0x123456u};
        dialog.SetColor(0xFF);
        QVERIFY(dialog.ShowColor());
        QCOMPARE(dialog.Color(), 0x123456u);
        QVERIFY(!dialog.ShowColor());
        QCOMPARE(dialog.Color(), 0x123456u);
    }
};

QTEST_GUILESS_MAIN(CoreTest)
#include "tst_core.moc"
