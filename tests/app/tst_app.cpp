// SPDX-License-Identifier: GPL-3.0-or-later
#include "programfixture.h"

// Start-up, the first run, the chapter window and the ways the program ends.
class AppTest : public ProgramFixture
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { prepareProgramDirectory(); }
    void init() { beginTest(); }
    void cleanup() { endTest(); }

    // The first start, with the setup's answers, in a locale of its own (the
    // release date's separator follows it); then the second start, which asks
    // nothing and reads the answers back.
    void firstAndSecondStart_data()
    {
        QTest::addColumn<QString>("locale");
        QTest::addColumn<QString>("date");
        QTest::addColumn<bool>("trouble");
        QTest::addColumn<bool>("hover");
        QTest::addColumn<QStringList>("arguments"); // the command line after the program's name
        QTest::newRow("yes and yes, dots, show_console")
                << u"de_DE"_s << u"02.09.2010"_s << true << true << QStringList({u"Show_Console"_s, u"x.zel"_s});
        QTest::newRow("no and yes, dashes, a file")
                << u"nl_NL"_s << u"02-09-2010"_s << false << true << QStringList({u"x.zel"_s, u"show_consolation"_s});
    }
    void firstAndSecondStart()
    {
        QFETCH(QString, locale);
        QFETCH(QString, date);
        QFETCH(bool, trouble);
        QFETCH(bool, hover);
        QFETCH(QStringList, arguments);
        m_env->prompter.onModal = [&](QObject *window) {
            auto *setup = qobject_cast<QWidget *>(window);
            [&] { // both centred and on top, the splash below the setup
                for (QWidget *w : {setup, static_cast<QWidget *>(modMain::SplashWindow())}) {
                    const QPoint off =
                            w->frameGeometry().center() - QGuiApplication::primaryScreen()->geometry().center();
                    QVERIFY2(off.manhattanLength() <= 2, qPrintable(u"%1,%2"_s.arg(off.x()).arg(off.y())));
                }
                QVERIFY(modMain::IsTopmost(setup) && g_SplashUp && modMain::IsTopmost(modMain::SplashWindow()));
            }();
            return answerSetup(trouble, hover)(window);
        };
        QLocale::setDefault(QLocale(locale));
        modMain::StartProgram(arguments);
        QLocale::setDefault(QLocale::c());
        FlushDeletes();

        const QString base = m_env->home() + u"/Documents/Vocabrix"_s;
        const QString console = arguments.contains(u"Show_Console"_s) // the run mode, told before anything is loaded
                ? u"ZEL.LOADER is loading the system in Full Retail mode/n|"
                  u"Logging system disabled in Full Retail mode - not logging to disk/n|"
                  u"Showing the message watcher window per command line request/n|"_s
                : QString();
        const QStringList expected =
                (u"/b/cVocabrix v1.0 build 1/n|"
                 u"/b/cCopyright (c) 2026 Quillmere. Free to use for study at home and at school./n|"
                 u"using home directory: '"_s
                 + base + u"'| [created]/n|setting base directory to: "_s + base
                 + u"/n|the specified file doesn't exist, creating new/n|file created/n|file mounted/n|"
                   u"updater file generated/n|"_s
                 + console
                 + u"KORVA Alive/n|ZEL Platform v3.44 Startup/n|"
                   u"last platform revision date is 16Jan2010/n|Program release date: "_s
                 + date
                 + u"/n|Bringing up the system ../n|Starting the cvar subsystem ../n|"
                   u".. cvar system disabled in this implementation/n|"
                   u"Warning: localization support requires the cvar subsystem/n|"
                   u"Localization support has been disabled/n| .. client detected: \"Vocabrix\"; version: 1.0 build 1/n|"
                   u"Checking for already running instances ../n| .. no previously running instance has been found./n|"
                   u"starting the KORVA class driver ../n|Windows OS version detected: 5.1 build 2600/n|"
                   u" .. OS supports Alpha: Yes/n| .. OS supports API Gradient: Yes/n|"
                   u"the specified file doesn't exist, creating new/n|file created/n|file mounted/n|"
                   u" ..KORVA data file mounted successfully/n| .. Initializing KORVA master DB file for first use.../n|"
                   u"forcing metrics data manager to defaults/n|.. 12 colors defined/n|"
                   u"wrote 12 color definitions to disk/n|Awaiting user response in Setup Window/n|"
                   u" .. alpha enabled in program: No using level of 90/n| .. loading chapter selection form/n|"
                   u"db editor seems to be present./n| .. chapter selection form is loaded/n|Entering FlushToZero mode/n|"
                   u"Initializing data system for first use/n| .. not flushing empty data set/n|"
                   u"System brought up successfully/n| .. Splash killed/n|ZEL.Loader exited/n"_s)
                        .split(u'|');
        QCOMPARE(m_env->logLines(), expected);
        for (size_t i = 0; i < m_env->log->lines.size(); ++i)
            QCOMPARE(m_env->log->lines[i].level, i < 2 ? 1 : i == 3 ? 4 : 3); // as a watcher receives them
        QCOMPARE(m_env->prompter.modalWindows, std::vector<QString> {u"frmSetup"_s});
        QVERIFY(m_env->prompter.boxes.empty());
        QCOMPARE(QList<bool>({g_TroubleByDefault, g_TroubleDefaultCurrent, g_ShowMouseHover}),
                 QList<bool>({trouble, trouble, hover})); // the setup's answers, as the loader read them

        // The splash is gone, the chapter window offers the examples by their titles.
        QVERIFY(!g_SplashUp && !modMain::SplashWindow());
        frmChapter *chapters = modMain::ChapterWindow();
        QVERIFY(chapters && chapters->isVisible());
        QCOMPARE(chapters->LV1->topLevelItem(1)->text(0), u"German 2: Food and Drink"_s);
        m_env->prompter.onModal = nullptr;
        chapters->findChild<QAction *>(u"about"_s)->trigger(); // its toolbar's last button
        QCOMPARE(m_env->prompter.modalWindows.back(), u"frmAbout"_s);

        QLocalServer other; // the running program holds its key
        QVERIFY(!listenAsAnotherCopy(other));

        chapters->Quit();
        FlushDeletes();
        QVERIFY(g_ProcessReleased);

        m_env->prompter.modalWindows.clear();
        restartProgram();
        QVERIFY(m_env->prompter.modalWindows.empty()); // the second start asks nothing
        QCOMPARE(QList<bool>({g_TroubleDefaultCurrent, g_ShowMouseHover}), QList<bool>({trouble, hover}));
        QCOMPARE(modMain::ChapterWindow()->LV1->topLevelItemCount(), 4);
    }

    void versionDetectedOnce()
    {
        // The code, the version it fills in, whether alpha and gradients are on.
        auto detect = [] {
            qint32 major = -1, minor = -1, build = -1;
            const int code = modMain::DetectWindowsVersion(major, minor, build);
            return QList<int>({code, major, minor, build, g_OsAlpha, g_OsGradient});
        };
        QCOMPARE(detect(), QList<int>({501, 5, 1, 2600, 1, 1}));
        // Later calls fill nothing and leave the flags as they are.
        g_OsAlpha = false;
        SetOsVersionOverride(OsVersion {4, 10, 1998});
        QCOMPARE(detect(), QList<int>({501, 0, 0, 0, 0, 1}));
    }

    // Answered by mouse here (the window as it opens is in its recorded layout).
    void setupWindow()
    {
        g_MasterDb = std::make_unique<ikorvalite>();
        QVERIFY(g_MasterDb->Mount(m_env->path(u"sys.zel"_s), false));
        frmSetup setup;
        setup.show();
        auto click = [](QWidget *w) { QTest::mouseClick(w, Qt::LeftButton, {}, QPoint(6, w->height() / 2)); };
        click(setup.Check1); // the check box alone does not do
        QVERIFY(!setup.Command1->isEnabled());
        QVERIFY(!setup.close());
        QTest::keyClick(&setup, Qt::Key_Escape);
        QVERIFY(setup.isVisible());
        click(setup.Option1);
        QVERIFY(setup.Command1->isEnabled());
        QTest::keyClick(&setup, Qt::Key_Return); // Finished is the default button
        QVERIFY(!setup.isVisible());
    }

    // The updater file written on its own, with nothing to do beside the save.
    void updaterFileAlone()
    {
        modMain::WriteUpdaterFile();
        QVERIFY(ReadFileBytes(m_programDir.filePath(u"Vocabrix.upd"_s)).contains("app_current_version"));
        QCOMPARE(m_env->logLines().join(u'|'),
                 u"the specified file doesn't exist, creating new/n|file created/n|"
                 "file mounted/n|updater file generated/n"_s);
    }

    // Starts that end the program with status 1 after their boxes ('@' in a
    // box stands for the settings file) and the log's last lines. Code -1
    // writes neither the cards nor the settings.
    void startEndsWithStatusOne_data()
    {
        QTest::addColumn<QString>("cause"); // "unwatched": no log watcher connected
        QTest::addColumn<QStringList>("boxes");
        QTest::addColumn<QString>("logEnd"); // lines joined by '|'
        const QString korva = Box(u"KORVA File System Critical Error"_s,
                                  u"The program's master database couldn't be opened. Check the path: \r\n'@' and "
                                  "try again."_s,
                                  MsgIcon::Critical);
        const QString down = u"KORVA system going down on code -1/n|halting renderer ../n|saving Alpha Options/n|"
                             "korvamain has exited .. NOT writing current data to disk/n|unloading form frmSplash/n|"
                             "KORVA Platform Dead/n|KORVA Platform release successful/n|"
                             "Process will be released after this line/n"_s;
        QTest::newRow("another copy running")
                << u"instance"_s
                << QStringList(Box(u"Previous Instance Found"_s,
                                   u"A previous instance was detected. Exit that instance before starting a new one."_s,
                                   MsgIcon::Exclamation))
                << u"Previous program instance found/n|"_s + down;
        QTest::newRow("nothing selected")
                << u"nothing"_s
                << QStringList({Box(u"FileLoader"_s, u"No files were selected to be loaded. The program will exit."_s,
                                    MsgIcon::Exclamation),
                                Box(u"Database Loader Failure"_s,
                                    u"The specified chapters couldn't be loaded. This may result from corrupted "
                                    "database files and you may need to reinstall the program if this error "
                                    "persists."_s)})
                << u"KORVA system going down on code 0/n|halting renderer ../n|saving Alpha Options/n| .. renderer dead/n|"
                   "Entering FlushToZero mode/n| .. not flushing empty data set/n|saving the korva master/n|"
                   "unmounting file/n|destroying class instance/n| ..class instance destroyed/n|"
                   "unloading form frmChapter/n|KORVA Platform Dead/n|KORVA Platform release successful/n|"
                   "Process will be released after this line/n"_s;
        QTest::newRow("settings file damaged, the log watched")
                << u"damaged"_s << QStringList(korva)
                << u" ..KORVA class initialization failure./n|The program cannot start/n|"_s + down;
        QTest::newRow("settings file damaged, no watcher: the high-priority line is a box")
                << u"damaged, unwatched"_s
                << QStringList(
                           {Box(u"High Priority Message Handler"_s, u"The program cannot start/n"_s, MsgIcon::Critical),
                            korva})
                << QString();
    }
    void startEndsWithStatusOne()
    {
        QFETCH(QString, cause);
        QFETCH(QStringList, boxes);
        QFETCH(QString, logEnd);
        m_env.reset(); // one environment at a time
        m_env = std::make_unique<TestEnvironment>(!cause.endsWith(u"unwatched"_s));
        const QByteArray damaged(300, '\x5A');
        QLocalServer other;
        if (cause.startsWith(u"damaged"_s))
            WriteFileBytes(master(), damaged);
        if (cause == u"instance"_s)
            QVERIFY(listenAsAnotherCopy(other));
        // The splash up and running under the box, its status line the last thing logged.
        bool splashUnderBox = false;
        m_env->prompter.onBox = [&](const MessageBoxRequest &) {
            frmSplash *splash = modMain::SplashWindow();
            const QStringList log = m_env->logLines();
            splashUnderBox = splash && splash->isVisible() && splash->RendererRunning() && !modMain::IsTopmost(splash)
                    && (log.isEmpty() || splash->StatusText() == QString(log.last()).remove(u"/n"_s));
        };
        if (cause == u"nothing"_s) {
            startProgram();
            m_env->log->clear();
            study({});
        } else {
            modMain::StartProgram();
            FlushDeletes();
        }
        QCOMPARE(m_env->prompter.seen(), boxes.replaceInStrings(u"@"_s, master()));
        if (!logEnd.isEmpty()) {
            const QStringList lines = m_env->logLines(), end = logEnd.split(u'|');
            QCOMPARE(lines.mid(lines.size() - end.size()), end);
        }
        QCOMPARE(splashUnderBox, cause != u"nothing"_s);
        if (cause.startsWith(u"damaged"_s)) // nothing written
            QCOMPARE(ReadFileBytes(master()), damaged);
        QCOMPARE(QFileInfo::exists(master()), cause != u"instance"_s); // another copy's home is not touched
        QVERIFY(!g_MasterDb && !frmMain::Existing() && forms::Open().isEmpty());
        QVERIFY(g_ProcessReleased);
        QCOMPARE(g_ExitStatus, 1);
    }

    // No, then Yes with no editor beside the program: the program goes on.
    void editorButton()
    {
        startProgram();
        auto press = [this](MsgResult answer) {
            m_env->prompter.answers = {answer};
            QTest::mouseClick(modMain::ChapterWindow()->Command5, Qt::LeftButton);
        };
        press(MsgResult::No);
        QTemporaryDir empty;
        modFolders::SetProgramDirectory(empty.path());
        press(MsgResult::Yes);
        modFolders::SetProgramDirectory(m_programDir.path());
        const QString question = Box(u"Load Editor?"_s,
                                     u"This button will cause this program to close and load the database editor. "
                                     "Do you want to continue?"_s,
                                     MsgIcon::None, MsgButtons::YesNo);
        QCOMPARE(m_env->prompter.seen(),
                 QStringList(
                         {question, question,
                          Box(u"Editor not Found"_s,
                              u"The database editor couldn't be found. If you wish to use this tool, it is "
                              "possible you may need to reinstall, ensuring the tool is selected for install."_s)}));
        QVERIFY(m_env->prompter.launches.empty() && !g_ProcessReleased);

        press(MsgResult::Yes);
        FlushDeletes();
        QCOMPARE(m_env->prompter.launches.size(), size_t(1));
        QCOMPARE(m_env->prompter.launches[0].program, m_programDir.filePath(ExecutableFileName(u"vxedit"_s)));
        QCOMPARE(m_env->prompter.launches[0].workingDirectory, m_env->home() + u"/Documents/Vocabrix"_s);
        QVERIFY(g_ProcessReleased); // the program closes for the editor
        QCOMPARE(g_ExitStatus, 0);
    }
};

QTEST_MAIN(AppTest)
#include "tst_app.moc"
