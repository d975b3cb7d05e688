// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/extrasettings.h"
#include "core/gcommondialog.h"
#include "core/keycodes.h"
#include "core/modbrowser.h"
#include "core/modfolders.h"
#include "core/programstate.h"
#include "korva/ikorvalite.h"
#include "korva/korvahooks.h"
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

// Every launch so far, "program | arguments".
QStringList launches(const FakePrompter &prompter)
{
    QStringList out;
    for (const auto &l : prompter.launches)
        out << l.program + u" | "_s + l.arguments.join(u' ');
    return out;
}

// Every program-wide value, pointers as whether they are set.
QVariantList programState()
{
    QVariantList state;
    state << g_RunMode << g_BaseDirectory << bool(g_MasterDb) << bool(g_Watcher) << (g_SplashOutlet != nullptr)
          << g_SplashUp << g_ShuttingDown << g_ShuffleRunning << g_DeleteMasterOnExit << g_OsAlpha << g_OsGradient
          << g_OsVersionCode << g_ShowMouseHover << g_TroubleByDefault << g_TroubleDefaultCurrent << g_SuppressRefresh
          << g_ProcessReleased << g_ExitStatus << modrender::CurrentCard << modrender::AlphaLevel
          << modrender::AlphaEffects;
    return state;
}

} // namespace

class CoreTest : public QObject
{
    Q_OBJECT

    QVariantList m_freshState;

private Q_SLOTS:
    void initTestCase() { m_freshState = programState(); }

    // A reset leaves every program-wide value as a new process finds it, so
    // a start after an earlier one in the same process starts afresh.
    void resetIsAFreshStart()
    {
        g_RunMode = kRunModeDebug, g_BaseDirectory = u"/home/x"_s;
        g_MasterDb = std::make_unique<ikorvalite>(), g_Watcher = std::make_unique<RecordingWatcher>();
        static RecordingSplash splash;
        g_SplashOutlet = &splash;
        g_SplashUp = g_ShuttingDown = g_ShuffleRunning = g_DeleteMasterOnExit = g_OsAlpha = g_OsGradient = true;
        g_OsVersionCode = 0x0501, g_ShowMouseHover = g_TroubleByDefault = g_TroubleDefaultCurrent = true;
        g_SuppressRefresh = g_ProcessReleased = true, g_ExitStatus = 1;
        modrender::CurrentCard = 7, modrender::AlphaLevel = 200, modrender::AlphaEffects = true;
        for (qsizetype i = 0; i < m_freshState.size(); ++i)
            QVERIFY2(programState()[i] != m_freshState[i], qPrintable(u"value %1 left unchanged"_s.arg(i)));
        ResetProgramState();
        QCOMPARE(programState(), m_freshState);
    }

    // With no desktop to ask (no prompter set), every box takes its safest
    // answer, which it writes out; dialogs are cancelled, nothing is started.
    void answersWithoutADesktop()
    {
        SetPrompter(nullptr);
        const std::pair<MsgButtons, MsgResult> answers[] = {{MsgButtons::OK, MsgResult::OK},
                                                            {MsgButtons::OKCancel, MsgResult::Cancel},
                                                            {MsgButtons::YesNo, MsgResult::No},
                                                            {MsgButtons::YesNoCancel, MsgResult::Cancel}};
        for (const auto &[buttons, answer] : answers) {
            QTest::ignoreMessage(QtWarningMsg, "Title : Text");
            QCOMPARE(MsgBox(u"Title"_s, u"Text"_s, MsgIcon::Question, buttons), answer);
        }
        Prompter &nobody = prompter();
        QCOMPARE(nobody.AskFileName({}), std::nullopt);
        QCOMPARE(nobody.AskColor(0), std::nullopt);
        QVERIFY(!nobody.AskPrint({}));
        QVERIFY(!nobody.StartProgram(u"true"_s, {}, {}) && !nobody.OpenDocument(u"x"_s));
        QCOMPARE(nobody.ShowModal(nullptr), 0);
    }

    void cleanup()
    {
        SetTickSource(nullptr);
        QLocale::setDefault(QLocale::c());
        qunsetenv("BROWSER");
        qunsetenv("XDG_DATA_DIRS");
        qunsetenv("XDG_CONFIG_DIRS");
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
        QTest::newRow("nothing connected: dropped")
                << false << false << kLogProgress << u"dropped/n"_s << QString() << 0;
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

    // The file engine asks and warns through the program's own boxes (its log
    // lines are seen in the start's log, tst_app).
    void korvaReachesThePerson()
    {
        TestEnvironment env;
        env.prompter.answers = {MsgResult::Yes, MsgResult::No};
        QVERIFY(korva::hooks().askYesNo(u"Title"_s, u"Save?"_s));
        QVERIFY(!korva::hooks().askYesNo(u"Title"_s, u"Save?"_s));
        korva::hooks().warn(u"Careful"_s, u"Look"_s);
        QCOMPARE(env.prompter.seen().last(), Box(u"Careful"_s, u"Look"_s, MsgIcon::Exclamation));
        QCOMPARE(env.prompter.seen().first(), Box(u"Title"_s, u"Save?"_s, MsgIcon::Question, MsgButtons::YesNo));
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
        QTest::newRow("grouped thousands")
                << qint64(10) << qint64(0) << qint64(12345) << u"%t"_s << u"1,234.5000000"_s << 1234500.0;
        QTest::newRow("no counter") << qint64(0) << qint64(5) << qint64(9) << u"%t"_s << u"0.0000000"_s << 0.0;
        QTest::newRow("no marker: warned, unchanged")
                << qint64(1000) << qint64(0) << qint64(5) << u"no marker here/n"_s << u"no marker here/n"_s << 5.0;
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
        timer.Stop();
        QCOMPARE(timer.strElapsed(mask), text);
        QCOMPARE(timer.ElapsedMs(), ms);
        QCOMPARE(env.logLines(),
                 !mask.contains(u"%t"_s)
                         ? QStringList(u" .. warning: strElapsed couldn't find a '%t' in string mask/n"_s)
                         : QStringList());
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
        QDir(env.home()).rmdir(u"Documents"_s); // made with its parents
        const QString expected = env.home() + u"/Documents/Vocabrix"_s;

        modFolders::SetHomeDirectory();
        QCOMPARE(g_BaseDirectory, expected);
        QVERIFY(QFileInfo(expected).isDir());
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

    // Where the command comes from (the BROWSER variable, a desktop entry's
    // Exec line, or as it stands), and how it is split into file and args.
    void browserCommand_data()
    {
        QTest::addColumn<QString>("from");
        QTest::addColumn<QString>("value");
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("args");
        QTest::newRow("quoted path, -url and quoted address")
                << u"command"_s << u"\"C:\\Program Files\\Browser\\browser.exe\" -url \"%1\"     "_s
                << u"\"C:\\Program Files\\Browser\\browser.exe\""_s << u"-url \"%1\""_s;
        QTest::newRow("unquoted path leaves the file empty")
                << u"command"_s << u"/usr/bin/browser %1"_s << QString() << u"/usr/bin/browser %1"_s;
        QTest::newRow("BROWSER with %s") << u"BROWSER"_s << u"lynx -dump %s"_s << u"\"lynx\""_s << u"-dump \"%1\""_s;
        QTest::newRow("BROWSER list takes the first") << u"BROWSER"_s << u"w3m:lynx"_s << u"\"w3m\""_s << u"\"%1\""_s;
        QTest::newRow("Exec %U and dropped codes")
                << u"Exec"_s << u"chromium --new %U %i"_s << u"\"chromium\""_s << u"--new \"%1\""_s;
        QTest::newRow("Exec quoted program")
                << u"Exec"_s << u"\"/opt/My Browser/run\" %f"_s << u"\"/opt/My Browser/run\""_s << u"\"%1\""_s;
        QTest::newRow("Exec without address") << u"Exec"_s << u"surf"_s << u"\"surf\""_s << QString();
    }
    void browserCommand()
    {
        QFETCH(QString, from);
        QFETCH(QString, value);
        QFETCH(QString, file);
        QFETCH(QString, args);
        const QString command = from == u"BROWSER"_s ? modBrowser::BrowserCommandFromBrowserVariable(value)
                : from == u"Exec"_s                  ? modBrowser::BrowserCommandFromExecLine(value)
                                                     : value;
        const modBrowser::SplitCommand split = modBrowser::SplitBrowserCommand(command);
        QCOMPARE(split.file, file);
        QCOMPARE(split.args, args);
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
                       "x-scheme-handler/http=other.desktop;\n" // outside any group: not read
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
        QCOMPARE(launches(env.prompter), QStringList(u"/usr/bin/mybrowser | --private file:///tmp/doc/index.html"_s));
        // The older list kept among the applications counts as well.
        QFile::remove(env.home() + u"/.config/mimeapps.list"_s);
        WriteFileBytes(apps + u"/defaults.list"_s, "[Default Applications]\nx-scheme-handler/http=other.desktop\n");
        QCOMPARE(modBrowser::DefaultBrowserExecLine(), u"/usr/bin/other %u"_s);

        const QByteArray browser = QByteArray("/") + QByteArray(120, 'b');
        qputenv("BROWSER", browser);
        QCOMPARE(modBrowser::BrowserCommandFromBrowserVariable(QString::fromUtf8(browser)).size(), 128);
        env.log->clear();
        QCOMPARE(modBrowser::DefaultBrowserCommand(), QString());
        QCOMPARE(env.logLines(), QStringList(u"warning: couldn't open the query registry for browser key"_s));
        // The launch goes ahead with an empty file and fails quietly.
        modBrowser::OpenUrl(u"http://example.org"_s);
        QVERIFY(env.prompter.boxes.empty());
        QCOMPARE(launches(env.prompter).last(), u" | "_s);
    }

    // The filter in Qt's form; a name without an extension takes the default
    // one. Asked for a place, the folder chosen is remembered for that place;
    // asked for none, nothing is. (Open, Save, their titles and a cancel are
    // seen with the progress files, the colour with the options.)
    void fileDialogs()
    {
        TestEnvironment env;
        env.prompter.fileAnswers = {u"/tmp/a/list"_s, u"/tmp/b/other.tsv"_s};
        QCOMPARE(GCommonDialog::AskSave(u"Export"_s, u"Lists|*.tsv|Text|*.txt;*.csv"_s, u"tsv"_s, {}, u"list"_s)
                         .value_or(QString()),
                 u"/tmp/a/list.tsv"_s);
        QCOMPARE(env.prompter.fileDialogs[0].filter, u"Lists (*.tsv);;Text (*.txt *.csv)"_s);
        QVERIFY(GCommonDialog::AskSave(u"Export"_s, u"*.tsv"_s, u"tsv"_s, {}, {}));
        QCOMPARE(g_Extras.String(u"folder.list"_s), u"/tmp/a"_s);
        QVERIFY(!g_Extras.Contains(u"folder."_s));
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
        QTest::newRow("values in their order, unknown ones kept")
                << QByteArray("# a comment\nzeta=2\nA.x-y_z=two words=\n")
                << QStringList {u"zeta=2"_s, u"A.x-y_z=two words="_s} << head + "zeta=2\nA.x-y_z=two words=\n" + added;
        QTest::newRow("damaged lines left out")
                << QByteArray("ok=1\nno equals\n=v\nbad key=2\nesc=a\\qb\ntail=c\\\nutf=\xff\xfe\nlast=\xc3\xa4\r\n")
                << QStringList {u"ok=1"_s, u"esc"_s, u"tail"_s, u"utf"_s, u"last=ä"_s}
                << head + "ok=1\nlast=\xc3\xa4\n" + added;
        QTest::newRow("escapes, a key given twice")
                << QByteArray("p=C:\\\\x\\ny\\r\nk=1\nk=2\n") << QStringList {u"p=C:\\x\ny\r"_s, u"k=2"_s}
                << head + "p=C:\\\\x\\ny\\r\nk=2\n" + added;
        QTest::newRow("larger than any settings file")
                << QByteArray("k=1\n#" + QByteArray(1024 * 1024, 'x') + "\n") << QStringList {u"k"_s} << head + added;
        QTest::newRow("a folder in its place") << QByteArray("folder") << QStringList {u"k"_s} << QByteArray();
    }
    void extraSettingsFile()
    {
        QFETCH(QByteArray, file);
        QFETCH(QStringList, read);
        QFETCH(QByteArray, saved);
        TestEnvironment env;
        const QString path = env.path(u"extras.conf"_s);
        QCOMPARE(ExtraSettings::Path(), path);
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
        } else {
            QCOMPARE(ReadFileBytes(path), saved);
        }
    }

    void extraSettingsTypes()
    {
        TestEnvironment env;
        WriteFileBytes(ExtraSettings::Path(), "n=-12\nbad=12x\nt=true\ny=YES\nf=0\nz=maybe\n");
        g_Extras.Load();
        QCOMPARE(QList<int>({g_Extras.Int(u"n"_s, 5), g_Extras.Int(u"bad"_s, 5)}), QList<int>({-12, 5}));
        QCOMPARE(QList<bool>({g_Extras.Bool(u"t"_s, false), g_Extras.Bool(u"y"_s, false), g_Extras.Bool(u"f"_s, true),
                              g_Extras.Bool(u"z"_s, true), g_Extras.Bool(u"none"_s, false)}),
                 QList<bool>({true, true, false, true, false}));
        g_Extras.SetBool(u"t"_s, true); // the same value: nothing to save
        g_Extras.SetInt(u"n"_s, -12);
        QVERIFY(!g_Extras.IsDirty());
        g_Extras.SetInt(u"n"_s, 7);
        QVERIFY(g_Extras.IsDirty() && g_Extras.String(u"n"_s) == u"7"_s);
        g_Extras.Load(); // read again: the change is gone, and nothing is left to save
        QVERIFY(!g_Extras.IsDirty() && g_Extras.Int(u"n"_s, 5) == -12);
        ResetProgramState(); // a program that read no file
        QVERIFY(!g_Extras.Contains(u"n"_s) && !g_Extras.IsDirty());
    }
};

QTEST_GUILESS_MAIN(CoreTest)
#include "tst_core.moc"
