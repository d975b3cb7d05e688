// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/instanceguard.h"
#include "cards/progressfile.h"
#include "controls/zelcheck.h"
#include "core/extrasettings.h"
#include "core/keycodes.h"
#include "core/modbrowser.h"
#include "core/modfolders.h"
#include "core/osversion.h"
#include "korvabuilder.h"
#include "uitestsupport.h"
#include "windows/frmchapter.h"
#include "windows/frmsetup.h"
#include "windows/frmsplash.h"
#include "windows/typedanswer.h"

#include <QAccessible>
#include <QContextMenuEvent>
#include <QCryptographicHash>
#include <QFontDatabase>
#include <QLabel>
#include <QLocalServer>
#include <QMenu>
#include <QRadioButton>
#include <QToolBar>
#include <QToolButton>

#include <sys/stat.h>

using namespace Qt::Literals::StringLiterals;

namespace {

// The user's answers in the first-run setup.
std::function<int(QObject *)> answerSetup(bool troubleByDefault, bool hoverHelp)
{
    return [=](QObject *window) {
        auto *setup = qobject_cast<frmSetup *>(window);
        if (!setup)
            return 0;
        (troubleByDefault ? setup->Option1 : setup->Option2)->click();
        setup->Check1->setChecked(hoverHelp);
        setup->Command1->click();
        return 1;
    };
}

QString programDir()
{
    return modFolders::ProgramDirectory();
}

// Numbers in the settings file, each as "key=value group" ("key=none" if absent).
QStringList stored(const QString &master, const QStringList &keys)
{
    ikorvalite db;
    db.Mount(master, false);
    QStringList out;
    for (const QString &key : keys) {
        const auto n = db.GetNumber(key, 12345);
        out << key + u'=' + (n.found ? QString::number(n.value) : u"none"_s) + u' ' + db.GetNote(key);
    }
    return out;
}

// A chapter of two cards, without a title.
void writeSmallChapter(const QString &path)
{
    WriteFileBytes(path,
                   bytes::header("generated automatically by the Vocabrix Editor v1.21", 4, 2) + bytes::placeholder()
                           + bytes::entry("a", -1, "b", 0, {}) + bytes::entry("c", -1, "d", 0, {}));
}

// A kept session's deck of one card, by hand: "Hund"/"dog", a trouble card
// viewed 3 times, then the empty slot.
QByteArray keptDeck()
{
    using namespace bytes;
    return i16(1) + text("Hund") + text("dog") + text("note") + text("") + i16(-1) + i16(3) + text("K") + text("")
            + text("") + text("") + text("") + i16(0) + i16(0) + text("");
}

QByteArray keptState(const QByteArray &deck, const QByteArray &lines)
{
    return "format=1\ndeck_bytes=" + QByteArray::number(deck.size())
            + "\ndeck_sha256=" + QCryptographicHash::hash(deck, QCryptographicHash::Sha256).toHex() + "\n" + lines;
}

// What a person sees of the session: the deck's bytes, the card, its texts,
// the boxes.
QStringList sessionSeen()
{
    QByteArray deck;
    WriteProgressImage(g_Deck, deck, nullptr);
    const r_data *m = modrender::Metrics();
    using C = r_data::Corner;
    frmMain *main = frmMain::Existing();
    return {QString::fromLatin1(deck.toHex()),
            QString::number(modrender::CurrentCard),
            m->MainText(),
            m->CornerText(C::TopLeft),
            m->CornerText(C::TopRight),
            m->CornerText(C::BottomLeft),
            m->NoteText(),
            main->Check1->Checked() ? u"marked"_s : u"-"_s,
            main->Check2->Checked() ? u"trouble only"_s : u"-"_s};
}

// Selects the chapters at these rows and presses Study.
void study(const QList<int> &rows)
{
    frmChapter *chapters = modMain::ChapterWindow();
    QVERIFY(chapters);
    chapters->LV1->clearSelection();
    for (int row : rows)
        chapters->LV1->topLevelItem(row)->setSelected(true);
    chapters->Command1->click();
    FlushDeletes();
}

} // namespace

class AppTest : public QObject
{
    Q_OBJECT

    std::unique_ptr<TestEnvironment> m_env;
    QTemporaryDir m_programDir; // the examples and the editor, as beside the program

    QString master() const { return m_env->home() + u"/Documents/Vocabrix/sys.zel"_s; }

    void startProgram(bool troubleByDefault = false, bool hoverHelp = true)
    {
        m_env->prompter.onModal = answerSetup(troubleByDefault, hoverHelp);
        modMain::StartProgram();
        FlushDeletes();
    }

    // Which of the wanted lines ('|' between them) the log lacks, and which of
    // the unwanted it holds: empty when the log is right.
    QStringList logMismatch(const QString &wanted, const QString &unwanted = {}) const
    {
        const QStringList log = m_env->logLines();
        QStringList out;
        for (const QString &line : wanted.split(u'|', Qt::SkipEmptyParts))
            if (!log.contains(line))
                out << u"missing: "_s + line;
        for (const QString &line : unwanted.split(u'|', Qt::SkipEmptyParts))
            if (log.contains(line))
                out << u"unwanted: "_s + line;
        return out;
    }

    // The program started again after it ended, with the same home.
    void restartProgram()
    {
        ResetProgramState();
        g_Deck.Reset();
        g_Watcher = std::make_unique<RecordingWatcher>(m_env->log);
        modMain::StartProgram();
        FlushDeletes();
    }

private Q_SLOTS:
    void initTestCase()
    {
        InstallFontSubstitutes();
        const QString built = QCoreApplication::applicationDirPath();
        for (int n = 1; n <= 4; ++n)
            QVERIFY(QFile::copy(built + u"/ex%1.zel"_s.arg(n), m_programDir.filePath(u"ex%1.zel"_s.arg(n))));
        QVERIFY(QFile::link(built + u'/' + ExecutableFileName(u"vxedit"_s),
                            m_programDir.filePath(ExecutableFileName(u"vxedit"_s))));
        modFolders::SetProgramDirectory(m_programDir.path());
        instanceguard::SetKey(u"vocabrix-test-"_s + QString::number(QCoreApplication::applicationPid()));
    }

    void applicationPrepared()
    {
        QFont::removeSubstitutions(u"Tahoma"_s);
        QApplication::setQuitOnLastWindowClosed(true);
        QApplication::setWindowIcon(QIcon());
        zelCheck check;
        QCOMPARE(QAccessible::queryAccessibleInterface(&check)->role(), QAccessible::Client); // Qt's plain widget
        modMain::PrepareApplication();
        QCOMPARE(QApplication::applicationName(), u"Vocabrix"_s);
        QVERIFY(!QApplication::windowIcon().isNull());
        QVERIFY(!QApplication::quitOnLastWindowClosed());
        QVERIFY(QFontDatabase::families().contains(u"Tahoma"_s) || !QFont::substitutes(u"Tahoma"_s).isEmpty());
        zelCheck another;
        QCOMPARE(QAccessible::queryAccessibleInterface(&another)->role(), QAccessible::CheckBox);
    }

    void init()
    {
        m_env = std::make_unique<TestEnvironment>();
        SetOsVersionOverride(OsVersion {5, 1, 2600});
        g_SuppressRefresh = true;
    }

    void cleanup()
    {
        UnloadAllForms();
        instanceguard::Release();
        SetOsVersionOverride(std::nullopt);
        m_env.reset();
    }

    void firstStart()
    {
        QFile::remove(programDir() + u"/Vocabrix.upd"_s);
        m_env->prompter.onModal = [this](QObject *window) {
            // While the setup is up, the chapter list and colours are already on disk.
            ikorvalite db;
            db.Mount(master(), false);
            [&] {
                QCOMPARE(db.GetNumber(u"flist_count"_s, 0).value, 4);
                QCOMPARE(db.GetText(u"flist_name_3"_s).value, programDir() + u"/ex3.zel"_s);
                QCOMPARE(db.GetNumber(u"backcolor_b"_s, 0).value, 14570825);
                QVERIFY(modMain::IsTopmost(qobject_cast<QWidget *>(window)));
                QVERIFY(g_SplashUp);
            }();
            return answerSetup(false, false)(window);
        };
        modMain::StartProgram();
        FlushDeletes();

        const QString base = m_env->home() + u"/Documents/Vocabrix"_s;
        const QStringList expected =
                (u"/b/cVocabrix v1.0 build 1/n|"
                 u"/b/cCopyright (c) 2026 Quillmere. Free to use for study at home and at school./n|"
                 u"using home directory: '"_s
                 + base + u"'| [created]/n|setting base directory to: "_s + base
                 + u"/n|the specified file doesn't exist, creating new/n|file created/n|file mounted/n|"
                   u"updater file generated/n|KORVA Alive/n|ZEL Platform v3.44 Startup/n|"
                   u"last platform revision date is 16Jan2010/n|Program release date: 02/09/2010/n|"
                   u"Bringing up the system ../n|Starting the cvar subsystem ../n|"
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
            QCOMPARE(m_env->log->lines[i].level, i < 2 ? kLogBanner : i == 3 ? kLogContinuation : kLogProgress);
        // 25 ms after each line shown on the splash, plus the two fine pauses.
        const qsizetype splashLines =
                expected.indexOf(u"System brought up successfully/n"_s) - expected.indexOf(u"KORVA Alive/n"_s) + 1;
        QCOMPARE(m_env->pauser.sleptMs, 150 + 75 + 25 * splashLines);
        QCOMPARE(m_env->prompter.modalWindows, std::vector<QString> {u"frmSetup"_s});
        QVERIFY(m_env->prompter.boxes.empty());
        QCOMPARE(g_RunMode, kRunModeRelease);
        QCOMPARE(modMain::RunModeName(), u"Full Retail"_s);

        // The setup's answers were saved; the loader read them back.
        QCOMPARE(stored(master(), {u"trouble_by_default"_s, u"show_mouse_hover"_s}),
                 QStringList({u"trouble_by_default=0 "_s, u"show_mouse_hover=0 "_s})); // no group yet
        QVERIFY(!g_TroubleByDefault && !g_TroubleDefaultCurrent && !g_ShowMouseHover);

        // The splash is gone, the chapter window offers the examples.
        QVERIFY(!g_SplashUp);
        QVERIFY(!modMain::SplashWindow());
        frmChapter *chapters = modMain::ChapterWindow();
        QVERIFY(chapters && chapters->isVisible());
        QCOMPARE(chapters->LV1->topLevelItemCount(), 4);
        QCOMPARE(chapters->LV1->topLevelItem(1)->text(0), u"German 2: Food and Drink"_s);
        QVERIFY(chapters->Command1->isEnabled());
        QCOMPARE(g_Deck.UBound(), 0);

        // The updater file was rewritten.
        QCOMPARE(ReadFileBytes(programDir() + u"/Vocabrix.upd"_s),
                 bytes::header("KORVA Database File; KORVA Lite version", 4, 3) + bytes::placeholder()
                         + bytes::entry("app_title", -1, "Vocabrix", 0, {})
                         + bytes::entry("app_current_version", -1, "101", 0, {})
                         + bytes::entry("app_desc", -1, "This is a vocabulary flash cards program", 0, {}));
    }

    // The date's separator follows the locale (slashes in firstStart).
    void releaseDateFollowsTheLocale_data()
    {
        QTest::addColumn<QString>("locale");
        QTest::addColumn<QString>("date");
        QTest::newRow("dots") << u"de_DE"_s << u"02.09.2010"_s;
        QTest::newRow("dashes") << u"nl_NL"_s << u"02-09-2010"_s;
    }
    void releaseDateFollowsTheLocale()
    {
        QFETCH(QString, locale);
        QFETCH(QString, date);
        QLocale::setDefault(QLocale(locale));
        startProgram();
        QLocale::setDefault(QLocale::c());
        QCOMPARE(logMismatch(u"Program release date: "_s + date + u"/n"_s), QStringList());
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
        g_OsVersionCode = 0; // a first call on an older system
        QCOMPARE(detect(), QList<int>({410, 4, 10, 1998, 0, 1}));
        g_OsVersionCode = 0;
        g_OsAlpha = true; // older still: the flags stay as they were
        SetOsVersionOverride(OsVersion {4, 0, 1381});
        QCOMPARE(detect(), QList<int>({400, 4, 0, 1381, 1, 1}));
    }

    // Answered by mouse here; firstStart answers no and no.
    void setupWindow()
    {
        g_MasterDb = std::make_unique<ikorvalite>();
        QVERIFY(g_MasterDb->Mount(m_env->path(u"sys.zel"_s), false));
        frmSetup setup;
        setup.show();
        QCOMPARE(setup.windowTitle(), u"Vocabrix 2007 Initial Setup"_s);
        QVERIFY(setup.Label1->font().bold());
        QCOMPARE(setup.Label1->font().pointSizeF(), setup.font().pointSizeF() * 1.6);
        QVERIFY(!setup.Option1->isChecked() && !setup.Option2->isChecked()); // nothing chosen for you
        QVERIFY(!setup.Command1->isEnabled());
        auto click = [](QWidget *w) { QTest::mouseClick(w, Qt::LeftButton, {}, QPoint(6, w->height() / 2)); };
        click(setup.Check1); // the check box alone does not do
        QVERIFY(!setup.Command1->isEnabled());
        QVERIFY(!setup.close());
        QTest::keyClick(&setup, Qt::Key_Escape);
        QVERIFY(setup.isVisible());
        click(setup.Option1);
        QVERIFY(setup.Command1->isEnabled());
        if (!setup.Check1->isChecked())
            click(setup.Check1);
        click(setup.Command1);
        QVERIFY(!setup.isVisible());
        QCOMPARE(setup.result(), int(QDialog::Accepted));
        QCOMPARE(g_MasterDb->GetNumber(u"trouble_by_default"_s, 5).value, -1);
        QCOMPARE(g_MasterDb->GetNumber(u"show_mouse_hover"_s, 5).value, -1);
        QCOMPARE(g_MasterDb->GetNote(u"trouble_by_default"_s), QString()); // no group
    }

    void secondStartSkipsFirstUse()
    {
        startProgram(true, true);
        modMain::ChapterWindow()->Quit();
        FlushDeletes();
        QVERIFY(g_ProcessReleased);

        m_env->log->clear();
        m_env->prompter.modalWindows.clear();
        restartProgram();
        QVERIFY(m_env->prompter.modalWindows.empty());
        QCOMPARE(logMismatch(u" ..KORVA data file mounted successfully/n"_s,
                             u" .. Initializing KORVA master DB file for first use.../n"_s),
                 QStringList());
        QVERIFY(g_TroubleDefaultCurrent && g_ShowMouseHover); // read back from the first run
        QCOMPARE(modMain::ChapterWindow()->LV1->topLevelItemCount(), 4);
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
        other.setSocketOptions(QLocalServer::AbstractNamespaceOption);
        if (cause == u"instance"_s)
            QVERIFY(other.listen(u"vocabrix-test-"_s + QString::number(QCoreApplication::applicationPid())));
        QStringList splashAtBox;
        m_env->prompter.onBox = [&](const MessageBoxRequest &) {
            frmSplash *splash = nullptr;
            for (QWidget *w : QApplication::topLevelWidgets())
                splash = splash ? splash : qobject_cast<frmSplash *>(w);
            const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
            splashAtBox = QStringList {splash && splash->isVisible() && splash->RendererRunning() ? u"up"_s : u"gone"_s,
                                       modMain::IsTopmost(splash) ? u"topmost"_s : u"not topmost"_s,
                                       splash && qAbs(splash->frameGeometry().center().x() - screen.center().x()) <= 2
                                               ? u"centred"_s
                                               : u"off centre"_s};
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
        if (cause.startsWith(u"damaged"_s)) {
            QCOMPARE(splashAtBox, QStringList({u"up"_s, u"not topmost"_s, u"centred"_s}));
            QCOMPARE(ReadFileBytes(master()), damaged); // nothing written
        }
        QCOMPARE(QFileInfo::exists(master()), cause != u"instance"_s); // another copy's home is not touched
        if (cause == u"instance"_s)
            QVERIFY(!g_SplashUp);
        QVERIFY(!g_MasterDb && !frmMain::Existing());
        QVERIFY(forms::Open().isEmpty());
        QVERIFY(g_ProcessReleased);
        QCOMPARE(g_ExitStatus, 1);
    }

    // Copies of the program share a key when they share a home folder, and
    // only then, however alike the paths begin.
    void instanceKeyCoversTheWholeHomePath_data()
    {
        QTest::addColumn<QString>("a");
        QTest::addColumn<QString>("b");
        QTest::addColumn<bool>("same");
        const QString prefix = u"/home/a-rather-long-shared-prefix-of-forty-bytes/"_s;
        QTest::newRow("same home") << prefix + u"Documents/Vocabrix"_s << prefix + u"Documents/Vocabrix"_s << true;
        QTest::newRow("alike for 40 bytes") << prefix + u"anna/Vocabrix"_s << prefix + u"otto/Vocabrix"_s << false;
        QTest::newRow("differ at the end") << u"/srv/x/Vocabrix1"_s << u"/srv/x/Vocabrix2"_s << false;
    }
    void instanceKeyCoversTheWholeHomePath()
    {
        QFETCH(QString, a);
        QFETCH(QString, b);
        QFETCH(bool, same);
        QCOMPARE(instanceguard::KeyFor(a) == instanceguard::KeyFor(b), same);
        QVERIFY(instanceguard::KeyFor(a).size() < 100); // fits a socket name
    }

    void studyAndExit()
    {
        startProgram(false, true);
        g_MasterDb->SetValue(u"frmMain.left"_s, QString(), 50000, u"metrics"_s); // far off screen
        g_MasterDb->SetValue(u"frmMain.top"_s, QString(), 300, u"metrics"_s);
        study({0, 2});
        frmMain *main = frmMain::Existing();
        QVERIFY(main && main->isVisible());
        QCOMPARE(main->pos(), QPoint(50000 / 15, 20)); // brought back on screen
        QVERIFY(!modMain::ChapterWindow());
        QCOMPARE(g_Deck.UBound(), 37 + 38);
        QCOMPARE(modrender::Metrics()->MainText(), g_Deck[0].question);
        QCOMPARE(modrender::Metrics()->CornerText(r_data::Corner::TopLeft), u"showing card 1 of 75; 0 trouble cards"_s);
        QVERIFY(main->zelFlatButton2->Enabled());
        const QStringList lines = m_env->logLines();
        QVERIFY(lines.contains(u" .. loaded 75 nodes/n"_s));
        QVERIFY(std::any_of(lines.begin(), lines.end(), [](const QString &l) {
            return l.startsWith(u"All file(s) loaded in "_s) && l.endsWith(u" msec/n"_s);
        }));

        main->HandleKey(39, 0);
        main->HandleKey(39, 0);
        QCOMPARE(modrender::CurrentCard, qint16(2));
        modrender::AlphaLevel = 120;
        modrender::AlphaEffects = true;
        main->move(123, 45);

        m_env->log->clear();
        main->HandleKey(88, 0); // X
        FlushDeletes();
        QVERIFY(g_ProcessReleased);
        QCOMPARE(g_ExitStatus, 0);
        QVERIFY(!frmMain::Existing());
        const QStringList shutdown =
                (u"KORVA system going down on code 0/n|halting renderer ../n|saving Alpha Options/n|"
                 u"renderer going down/n| .. renderer released ok/n| .. renderer dead/n|Entering FlushToZero mode/n|"
                 u" .. flushing 2636 bytes of data/n|All dynamic data flushed/n|saving the korva master/n|"
                 u"unmounting file/n|destroying class instance/n| ..class instance destroyed/n|"
                 u"unloading form frmMain/n|KORVA Platform Dead/n|KORVA Platform release successful/n|"
                 u"Process will be released after this line/n"_s)
                        .split(u'|');
        QStringList got = m_env->logLines();
        // The flushed byte count depends on the example texts; compare its shape.
        QVERIFY(got.size() == shutdown.size());
        QVERIFY(got[7].startsWith(u" .. flushing "_s));
        got[7] = shutdown[7];
        QCOMPARE(got, shutdown);
        for (const LogRecord::Line &line : m_env->log->lines)
            QCOMPARE(line.level, kLogProgress);

        // What the next start finds.
        QStringList next = stored(master(),
                                  u"alpha_level alpha_effects frmMain.left frmMain.top show_mouse_hover "
                                  "frmChapter.left"_s.split(u' '));
        QVERIFY(next.last().startsWith(u"frmChapter.left="_s) && next.takeLast().endsWith(u" metrics"_s));
        QCOMPARE(next.join(u", "_s),
                 u"alpha_level=120 alpha_transparency, alpha_effects=-1 alpha_transparency, "
                 "frmMain.left=1845 metrics, frmMain.top=675 metrics, show_mouse_hover=-1 options"_s);
    }

    void newSessionKeepsStudyWindow()
    {
        startProgram();
        study({0});
        frmMain *main = frmMain::Existing();
        main->Check1->SetChecked(true);
        main->Check2->SetChecked(true);
        QVERIFY(main->Timer1->isActive());
        m_env->log->clear();
        main->mP_n->trigger();
        FlushDeletes();
        QCOMPARE(frmMain::Existing(), main); // the same window, hidden and cleared
        QVERIFY(!main->isVisible());
        QVERIFY(!main->Check1->Checked() && !main->Check2->Checked());
        QVERIFY(!main->Timer1->isActive());
        QVERIFY(!main->Studying());
        QVERIFY(!g_ProcessReleased);
        QCOMPARE(m_env->logLines().mid(0, 2),
                 QStringList({u" ***************************/n"_s, u" -- Starting New Session --/n"_s}));
        QCOMPARE(logMismatch(u" .. skipping frmMain unloader/n|Checking for already running instances ../n|"
                             "Windows OS version detected: 0.0 build 0/n"_s,
                             u" .. no previously running instance has been found./n|"
                             "Process will be released after this line/n"_s),
                 QStringList());
        for (const LogRecord::Line &line : m_env->log->lines)
            QCOMPARE(line.level, kLogProgress);
        QVERIFY(!modMain::SplashWindow());
        QVERIFY(modMain::ChapterWindow() && modMain::ChapterWindow()->isVisible());
        QCOMPARE(g_Deck.UBound(), 0); // flushed
        QVERIFY(!stored(master(), {u"frmMain.left"_s}).constFirst().contains(u"=none"_s));

        study({3});
        QVERIFY(main->isVisible());
        QCOMPARE(modrender::Metrics()->CornerText(r_data::Corner::BottomRight), u"from 'German 4: Home and Family'"_s);
    }

    // Chapters added and removed; one in another script, from a folder that
    // Windows-1252 cannot name, is listed by its title, remembered (the
    // settings file turns UTF-8), studied, and kept as the last session.
    void chapterListEdits()
    {
        startProgram();
        g_Extras.SetBool(u"study.keep_session"_s, true);
        frmChapter *chapters = modMain::ChapterWindow();
        // The settings file itself is no chapter.
        m_env->prompter.fileAnswers = {master()};
        chapters->ToolbarCommand(u"sall"_s);
        QCOMPARE(m_env->prompter.seen(),
                 QStringList(Box(u"DB Open Error"_s, u"This file invalid and cannot be opened in this mode"_s,
                                 MsgIcon::Exclamation)));
        QCOMPARE(m_env->prompter.fileDialogs[0].title, u"Select File"_s);
        QCOMPARE(m_env->prompter.fileDialogs[0].filter, u"Vocabrix Data File (*.zel)"_s);
        QCOMPARE(chapters->LV1->topLevelItemCount(), 4);

        // A chapter without a title is listed by its file name.
        const QString mine = m_env->path(u"mine.zel"_s), russian = m_env->path(u"Словари/русский.zel"_s);
        writeSmallChapter(mine);
        QVERIFY(QDir().mkpath(m_env->path(u"Словари"_s)));
        QVERIFY(QFile::copy(QCoreApplication::applicationDirPath() + u"/ex5.zel"_s, russian));
        for (const QString &file : {mine, russian}) {
            m_env->prompter.fileAnswers = {file};
            chapters->ToolbarCommand(u"sall"_s);
        }
        QCOMPARE(m_env->prompter.boxes.size(), size_t(1));
        QCOMPARE(chapters->LV1->topLevelItem(4)->text(0), u"mine.zel"_s);
        QCOMPARE(chapters->LV1->topLevelItem(5)->text(0), u"Russian 1: Greetings and First Words"_s);
        QVERIFY(SaveScreenshot(chapters->grab().toImage(), u"chapter-window-russian.png"_s));

        // Removing three examples: the list on disk follows, a name past its end left behind.
        chapters->LV1->clearSelection();
        for (int row : {0, 1, 2})
            chapters->LV1->topLevelItem(row)->setSelected(true);
        chapters->ToolbarCommand(u"del"_s);
        chapters->SaveFileList();
        g_MasterDb->Save();
        study({2});
        ikorvalite db;
        QVERIFY(db.Mount(master(), false));
        QCOMPARE(db.Encoding(), korva::Encoding::Utf8);
        QCOMPARE(db.GetNumber(u"flist_count"_s, 0).value, 3);
        QStringList names;
        for (int n = 1; n <= 4; ++n)
            names << db.GetText(u"flist_name_%1"_s.arg(n)).value;
        QCOMPARE(names, QStringList({programDir() + u"/ex4.zel"_s, mine, russian, programDir() + u"/ex4.zel"_s}));
        QCOMPARE(g_Deck.UBound(), 38);
        QCOMPARE(modrender::Metrics()->MainText(), u"Здравствуйте"_s);
        QVERIFY(SaveScreenshot(frmMain::Existing()->grab().toImage(), u"study-russian.png"_s));

        frmMain::Existing()->HandleKey(88, 0); // X
        FlushDeletes();
        const QByteArray kept = ReadFileBytes(m_env->home() + u"/Documents/Vocabrix/lastsession.vxs"_s);
        QCOMPARE(kept.left(9), bytes::i16(-32768) + bytes::text("utf-8"));
        std::vector<Card> cards;
        QVERIFY(ReadProgressImage(kept, cards, nullptr));
        QCOMPARE(cards[0].question, u"Здравствуйте"_s);
    }

    // Every command of the chapter window by keyboard: Tab goes through it in
    // reading order, each toolbar button has a key that its tooltip names.
    void chapterWindowByKeyboard()
    {
        startProgram();
        frmChapter *chapters = modMain::ChapterWindow();
        QStringList order;
        QWidget *w = chapters->Toolbar2->widgetForAction(chapters->Toolbar2->actions().first());
        for (int i = 0; i < 8; ++i, w = w->nextInFocusChain()) {
            while (!(w->focusPolicy() & Qt::TabFocus) || !w->isVisibleTo(chapters))
                w = w->nextInFocusChain();
            order << (qobject_cast<QToolButton *>(w) ? qobject_cast<QToolButton *>(w)->defaultAction()->objectName()
                                                     : w->objectName());
        }
        QCOMPARE(order.join(u' '), u"sall del lsaved about LV1 Command5 Command2 Command1"_s);
        for (QAction *a : chapters->Toolbar2->actions()) {
            QVERIFY2(!a->shortcut().isEmpty(), qPrintable(a->objectName()));
            QVERIFY(a->toolTip().endsWith(u'(' + a->shortcut().toString(QKeySequence::NativeText) + u')'));
        }
        QVERIFY(QTest::qWaitForWindowActive(chapters));
        m_env->prompter.fileAnswers = {std::nullopt};
        QTest::keyClick(chapters->LV1, Qt::Key_R, Qt::ControlModifier);
        QCOMPARE(m_env->prompter.fileDialogs.size(), size_t(1));
        QCOMPARE(m_env->prompter.fileDialogs[0].title, u"Open File"_s); // resume progress
        chapters->LV1->clearSelection();
        chapters->LV1->topLevelItem(0)->setSelected(true);
        QTest::keyClick(chapters->LV1, Qt::Key_Delete);
        QCOMPARE(chapters->LV1->topLevelItemCount(), 3);
    }

    // A remembered chapter that cannot be listed is left out, and the window
    // says which and why, once, under the list.
    void chaptersLeftOutAreNamed()
    {
        startProgram();
        frmChapter *chapters = modMain::ChapterWindow();
        QVERIFY(!chapters->Notice->isVisibleTo(chapters));
        const QString gone = m_env->path(u"gone.zel"_s), damaged = m_env->path(u"damaged.zel"_s);
        WriteFileBytes(damaged, QByteArray(300, '\x7f'));
        g_MasterDb->SetValue(u"flist_count"_s, QString(), 3, QString());
        g_MasterDb->SetValue(u"flist_name_1"_s, gone, 0, QString());
        g_MasterDb->SetValue(u"flist_name_2"_s, damaged, 0, QString());
        g_MasterDb->SetValue(u"flist_name_3"_s, programDir() + u"/ex2.zel"_s, 0, QString());
        chapters->LV1->clear();
        chapters->LoadFileList();
        QCOMPARE(chapters->LV1->topLevelItemCount(), 1);
        QCOMPARE(chapters->findChild<QLabel *>(u"Notice"_s), chapters->Notice); // found by name, as tools look
        QVERIFY(chapters->Notice->isVisibleTo(chapters));
        const QString notice = chapters->Notice->text();
        QVERIFY2(notice.contains(u"'"_s + gone + u"' (the file is gone)"_s), qPrintable(notice));
        QVERIFY2(notice.contains(u"'"_s + damaged + u"' ("_s), qPrintable(notice));
        QVERIFY(m_env->prompter.boxes.empty()); // no box
        // A long title shows whole in the tooltip.
        QVERIFY(chapters->LV1->topLevelItem(0)->toolTip(0).startsWith(chapters->LV1->topLevelItem(0)->text(0)));
    }

    void editorButton()
    {
        startProgram();
        frmChapter *chapters = modMain::ChapterWindow();
        m_env->prompter.answers = {MsgResult::No};
        QTest::mouseClick(chapters->Command5, Qt::LeftButton);
        const QString question = Box(u"Load Editor?"_s,
                                     u"This button will cause this program to close and load the database editor. "
                                     "Do you want to continue?"_s,
                                     MsgIcon::None, MsgButtons::YesNo);
        QCOMPARE(m_env->prompter.seen(), QStringList(question));
        QVERIFY(m_env->prompter.launches.empty());

        // Yes, with no editor beside the program.
        QTemporaryDir empty;
        modFolders::SetProgramDirectory(empty.path());
        m_env->prompter.answers = {MsgResult::Yes};
        QTest::mouseClick(chapters->Command5, Qt::LeftButton);
        modFolders::SetProgramDirectory(m_programDir.path());
        QCOMPARE(m_env->prompter.seen(),
                 QStringList(
                         {question, question,
                          Box(u"Editor not Found"_s,
                              u"The database editor couldn't be found. If you wish to use this tool, it is "
                              "possible you may need to reinstall, ensuring the tool is selected for install."_s)}));
        QVERIFY(!g_ProcessReleased);

        m_env->prompter.answers = {MsgResult::Yes};
        QTest::mouseClick(chapters->Command5, Qt::LeftButton);
        FlushDeletes();
        QCOMPARE(m_env->prompter.launches.size(), size_t(1));
        QCOMPARE(m_env->prompter.launches[0].program, programDir() + u'/' + ExecutableFileName(u"vxedit"_s));
        QCOMPARE(m_env->prompter.launches[0].workingDirectory, m_env->home() + u"/Documents/Vocabrix"_s);
        QVERIFY(g_ProcessReleased); // the program closes for the editor
        QCOMPARE(g_ExitStatus, 0);
    }

    // Progress saved and resumed from the chapter window, then as a file
    // opened with the program from the desktop; there a chapter joins the
    // list, selected, and anything else is left alone.
    void progressSavedAndResumed()
    {
        startProgram();
        study({0});
        frmMain *main = frmMain::Existing();
        main->HandleKey(39, 0);
        main->HandleKey(32, 0); // card 2 becomes a trouble card
        QVERIFY(g_Deck[1].isTrouble());
        // The first dialog opens in the home folder, the next where the last
        // progress file went; the report keeps a folder of its own.
        QDir().mkpath(m_env->path(u"saves"_s));
        const QString saved = m_env->path(u"saves/progress.vxs"_s);
        m_env->prompter.fileAnswers = {saved};
        main->mP_sp->trigger();
        QVERIFY(QFileInfo::exists(saved));
        QCOMPARE(m_env->prompter.fileDialogs.back().fileName, g_BaseDirectory);
        m_env->prompter.fileAnswers = {std::nullopt};
        main->mP_ss->trigger();
        QCOMPARE(m_env->prompter.fileDialogs.back().fileName, g_BaseDirectory);

        main->mP_n->trigger();
        FlushDeletes();
        m_env->prompter.fileAnswers = {saved};
        modMain::ChapterWindow()->ToolbarCommand(u"lsaved"_s);
        FlushDeletes();
        QCOMPARE(m_env->prompter.fileDialogs.back().fileName, m_env->path(u"saves"_s));
        QVERIFY(main->isVisible());
        QVERIFY(!modMain::ChapterWindow());
        QCOMPARE(g_Deck.UBound(), 37);
        QVERIFY(g_Deck[1].isTrouble());
        QCOMPARE(g_Deck[1].timesViewed, qint16(1));
        QCOMPARE(g_Deck[0].timesViewed, qint16(2)); // shown again from the first card
        QCOMPARE(modrender::CurrentCard, qint16(0));
        QCOMPARE(logMismatch(u" .. loaded 37 nodes/n"_s), QStringList());

        main->mP_n->trigger();
        FlushDeletes();
        const QString mine = m_env->path(u"mine.zel"_s);
        writeSmallChapter(mine);
        const size_t dialogs = m_env->prompter.fileDialogs.size();
        m_env->log->clear();
        modMain::OpenFileArguments({m_env->path(u"missing.vxs"_s), mine, u"show_console"_s});
        QCOMPARE(logMismatch({}, u"Reading saved progress from file/n"_s), QStringList()); // not even tried
        frmChapter *chapters = modMain::ChapterWindow();
        QCOMPARE(chapters->LV1->topLevelItemCount(), 5);
        QCOMPARE(chapters->LV1->selectedItems(), QList<QTreeWidgetItem *>({chapters->LV1->topLevelItem(4)}));
        QVERIFY(m_env->prompter.fileDialogs.size() == dialogs && m_env->prompter.boxes.empty());
        m_env->log->clear();
        modMain::OpenFileArguments({saved});
        FlushDeletes();
        QVERIFY(!modMain::ChapterWindow());
        QCOMPARE(g_Deck.UBound(), 37);
        QCOMPARE(logMismatch(u"Reading saved progress from file/n| .. loaded 37 nodes/n"_s), QStringList());
    }

    // The session on show is kept when studying ends, and comes back as it
    // was left (no view counted), as long as the option keeps sessions.
    void keptSessionResumed_data()
    {
        QTest::addColumn<bool>("exit"); // else a new session
        QTest::addColumn<QString>("firstSide");
        QTest::addColumn<bool>("keep");
        QTest::addColumn<bool>("blocked"); // a folder where the deck goes
        QTest::newRow("exit, the answer on show") << true << u"question"_s << true << false;
        QTest::newRow("new session, answer first, flipped") << false << u"answer"_s << true << false;
        QTest::newRow("keeping off") << true << u"question"_s << false << false;
        QTest::newRow("the deck cannot be written") << false << u"question"_s << true << true;
    }
    void keptSessionResumed()
    {
        QFETCH(bool, exit);
        QFETCH(QString, firstSide);
        QFETCH(bool, keep);
        QFETCH(bool, blocked);
        startProgram();
        g_Extras.SetString(u"study.first_side"_s, firstSide);
        g_Extras.SetString(u"study.show_notes"_s, u"true"_s);
        g_Extras.SetBool(u"study.keep_session"_s, keep);
        study({1});
        frmMain *main = frmMain::Existing();
        for (int key : {39, 39, 32, 84, 13}) // two on, mark it, trouble cards only, flip
            main->HandleKey(key, 0);
        main->Typing->SetCounts(4, 1); // typed answers, right and wrong
        const QStringList seen = sessionSeen();
        QVERIFY(seen[3].startsWith(u"Showing "_s));
        const QString deck = m_env->home() + u"/Documents/Vocabrix/lastsession.vxs"_s;
        if (blocked)
            QVERIFY(QDir().mkdir(deck));
        if (exit) {
            main->HandleKey(88, 0);
            FlushDeletes();
            QVERIFY(g_ProcessReleased);
            restartProgram();
        } else {
            main->mP_n->trigger();
            QCOMPARE(main->Typing->RightCount() + main->Typing->WrongCount(), 0); // a new session counts anew
        }
        FlushDeletes();
        QCOMPARE(m_env->prompter.boxTitles(), blocked ? QStringList(u"Session Not Kept"_s) : QStringList());
        frmChapter *chapters = modMain::ChapterWindow();
        QAction *resume = chapters->findChild<QAction *>(u"lsession"_s);
        QCOMPARE(resume->isVisible(), keep && !blocked);
        QCOMPARE(chapters->Notice->isVisibleTo(chapters), blocked); // the folder is set aside
        QCOMPARE(QFileInfo(deck).isFile(), keep && !blocked);
        if (!keep || blocked)
            return;
        QVERIFY(resume->toolTip().endsWith(u"(Ctrl+L)"_s));
        QVERIFY(QTest::qWaitForWindowExposed(chapters));
        QVERIFY(chapters->Toolbar2->widgetForAction(chapters->findChild<QAction *>(u"about"_s))->isVisible());
        if (!exit)
            QVERIFY(SaveScreenshot(chapters->grab().toImage(), u"chapter-window-session.png"_s));
        QVERIFY(QTest::qWaitForWindowActive(chapters));
        QTest::keyClick(chapters->LV1, Qt::Key_L, Qt::ControlModifier);
        FlushDeletes();
        QVERIFY(!modMain::ChapterWindow());
        QVERIFY(frmMain::Existing()->isVisible());
        QCOMPARE(sessionSeen(), seen);
        QCOMPARE(std::pair(frmMain::Existing()->Typing->RightCount(), frmMain::Existing()->Typing->WrongCount()),
                 std::pair(4, 1));
        QVERIFY(!modrender::CanUndo());
        if (!exit)
            QVERIFY(SaveScreenshot(frmMain::Existing()->grab().toImage(), u"resumed-session.png"_s));
    }

    // Keeping the session writes no log line and nothing else: the shutdown
    // and "sys.zel" are the same with it as without it.
    void keptSessionChangesNothingElse()
    {
        QStringList shutdown[2];
        QByteArray masters[2];
        for (int keep = 0; keep < 2; ++keep) {
            if (keep) {
                cleanup();
                init();
            }
            startProgram();
            g_Extras.SetBool(u"study.keep_session"_s, keep);
            study({0});
            frmMain::Existing()->HandleKey(39, 0);
            frmMain::Existing()->HandleKey(13, 0);
            m_env->log->clear();
            frmMain::Existing()->HandleKey(88, 0);
            FlushDeletes();
            shutdown[keep] = m_env->logLines();
            masters[keep] = ReadFileBytes(master());
            QCOMPARE(QFileInfo::exists(m_env->home() + u"/Documents/Vocabrix/lastsession.txt"_s), bool(keep));
        }
        QCOMPARE(shutdown[1], shutdown[0]);
        QCOMPARE(masters[1], masters[0]);
    }

    // A damaged kept session is set aside, said in one line under the list,
    // and not offered; nothing else is asked or lost.
    void damagedSessionSetAside_data()
    {
        QTest::addColumn<QByteArray>("deck"); // "folder", "fifo", or null for none
        QTest::addColumn<QByteArray>("state");
        QTest::addColumn<QString>("why"); // empty: intact
        const QByteArray deck = keptDeck(), cut = deck.chopped(3);
        const QByteArray fine = "card=0\nside=question\nfirst_side=question\ntrouble_only=false\n";
        auto row = [](const char *name, const QByteArray &file, const QByteArray &state, const QString &why) {
            QTest::newRow(name) << file << state << why;
        };
        row("intact", deck, keptState(deck, fine), QString());
        row("the deck cut short", cut, keptState(cut, fine), u"lastsession.vxs: it ends inside card 2 of 2"_s);
        row("the state of another deck", deck, keptState(deck + "x", fine),
            u"lastsession.vxs is not the deck that lastsession.txt belongs to"_s);
        row("a card past the deck", deck, keptState(deck, QByteArray(fine).replace("card=0", "card=2")),
            u"lastsession.txt names no card of the deck"_s);
        row("an unknown side", deck, keptState(deck, "card=0\nside=back\nfirst_side=question\ntrouble_only=true\n"),
            u"lastsession.txt is damaged"_s);
        row("typed answers counted wrongly", deck, keptState(deck, fine + "typed_right=2\ntyped_wrong=-1\n"),
            u"lastsession.txt is damaged"_s);
        row("no state", deck, QByteArray(), u"lastsession.txt: no such file"_s);
        row("not a session", deck, "\x01\x02junk", u"lastsession.txt is not a session this version keeps"_s);
        row("a folder for the deck", "folder", keptState(deck, fine), u"lastsession.vxs: it is a folder, not a file"_s);
        row("a FIFO for the deck", "fifo", keptState(deck, fine), u"lastsession.vxs: it is a named pipe, not a file"_s);
    }
    void damagedSessionSetAside()
    {
        QFETCH(QByteArray, deck);
        QFETCH(QByteArray, state);
        QFETCH(QString, why);
        const QString home = m_env->home() + u"/Documents/Vocabrix/"_s;
        QVERIFY(QDir().mkpath(home));
        if (deck == "folder")
            QVERIFY(QDir(home).mkdir(u"lastsession.vxs"_s));
        else if (deck == "fifo")
            QCOMPARE(mkfifo(QFile::encodeName(home + u"lastsession.vxs"_s).constData(), 0600), 0);
        else
            WriteFileBytes(home + u"lastsession.vxs"_s, deck);
        if (!state.isNull())
            WriteFileBytes(home + u"lastsession.txt"_s, state);
        startProgram();
        frmChapter *chapters = modMain::ChapterWindow();
        QCOMPARE(chapters->findChild<QAction *>(u"lsession"_s)->isVisible(), why.isEmpty());
        QVERIFY(m_env->prompter.boxes.empty());
        if (why.isEmpty()) {
            QVERIFY(!chapters->Notice->isVisibleTo(chapters));
            chapters->ToolbarCommand(u"lsession"_s);
            QCOMPARE(modrender::Metrics()->MainText(), u"Hund"_s);
            QCOMPARE(modrender::Metrics()->NoteText(), QString()); // notes are off
            QCOMPARE(g_Deck[0].timesViewed, qint16(3));
            return;
        }
        QCOMPARE(chapters->Notice->text(),
                 u"The last session couldn't be resumed: "_s + why
                         + u"; its files were set aside as lastsession-damaged.vxs and lastsession-damaged.txt."_s);
        QVERIFY(!QFileInfo::exists(home + u"lastsession.vxs"_s) && !QFileInfo::exists(home + u"lastsession.txt"_s));
        if (!state.isNull())
            QCOMPARE(ReadFileBytes(home + u"lastsession-damaged.txt"_s), state);
        QVERIFY(QFileInfo(home + u"lastsession-damaged.vxs"_s).exists());
        QCOMPARE(chapters->LV1->topLevelItemCount(), 4); // the chapters are all there
    }

    // Typed answers take the keys from the first card on. The added keys: T
    // for the box no key reached (Space on it marks the card), F1 for the
    // manual behind the help link.
    void typedAnswerAndAddedKeys()
    {
        startProgram();
        g_Extras.SetBool(u"study.type_answer"_s, true);
        study({0});
        frmMain *main = frmMain::Existing();
        QCOMPARE(main->focusWidget(), main->Typing->Line());
        QTest::keyClicks(main->focusWidget(), u"hello"_s);
        QTest::keyClick(main->focusWidget(), Qt::Key_Return);
        QCOMPARE(main->Typing->RightCount(), 1);
        const bool only = main->Check2->Checked(), trouble = g_Deck[0].isTrouble();
        main->Check2->setFocus();
        QTest::keyClick(main->Check2, Qt::Key_T);
        QCOMPARE(main->Check2->Checked(), !only);
        QCOMPARE(g_Deck[0].isTrouble(), trouble);
        QTest::keyClick(main->Check2, Qt::Key_T, Qt::ShiftModifier);
        QCOMPARE(main->Check2->Checked(), only);
        qputenv("BROWSER", "testbrowser %s");
        QTest::keyClick(main, Qt::Key_F1);
        qunsetenv("BROWSER");
        QCOMPARE(m_env->prompter.launches.size(), size_t(1));
        QCOMPARE(m_env->prompter.launches[0].arguments, QStringList(modBrowser::ProductPageUrl()));
    }
};

QTEST_MAIN(AppTest)
#include "tst_app.moc"
