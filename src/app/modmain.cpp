// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/modmain.h"

#include "app/instanceguard.h"
#include "cards/deck.h"
#include "controls/zelaccessible.h"
#include "core/clstimer.h"
#include "core/extrasettings.h"
#include "core/log.h"
#include "core/modfolders.h"
#include "core/osversion.h"
#include "core/pause.h"
#include "core/programstate.h"
#include "core/prompter.h"
#include "core/rounding.h"
#include "core/version.h"
#include "drawing/logicalfont.h"
#include "drawing/programicon.h"
#include "korva/diskfile.h"
#include "korva/ikorvalite.h"
#include "settings/r_data.h"
#include "settings/settingskeys.h"
#include "windows/forms.h"
#include "windows/frmchapter.h"
#include "windows/frmmain.h"
#include "windows/frmsetup.h"
#include "windows/frmsplash.h"
#include "windows/lastsession.h"
#include "windows/lifecycle.h"
#include "windows/modrender.h"
#include "windows/programstyle.h"

#include <QApplication>
#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QLocale>
#include <QPointer>
#include <QScreen>
#include <QThread>
#include <QWidget>
#include <QWindow>

#include <functional>
#include <memory>

using namespace Qt::Literals::StringLiterals;

namespace modMain {

namespace {

QPointer<frmSplash> g_splash;
QPointer<frmChapter> g_chapter;
// The splash made while the updater file went to disk, until it is shown.
QPointer<frmSplash> g_madeSplash;
// The command line after the program's name, as the start was given it; each
// session's loader looks in it for the show_console switch.
QStringList g_arguments;

QString versionText()
{
    return QString::number(version::kMajor) + u'.' + QString::number(version::kMinor) + u" build "_s
            + QString::number(version::kRevision);
}

QString yesNo(bool flag)
{
    return flag ? u"Yes"_s : u"No"_s;
}

// The failure path when "sys.zel" cannot be mounted.
void masterMountFailed()
{
    ClearTopmost(g_splash);
    Log(u" ..KORVA class initialization failure./n"_s);
    Log(u"The program cannot start/n"_s, kLogProgress, -1, true);
    MsgBox(u"KORVA File System Critical Error"_s,
           u"The program's master database couldn't be opened. Check the path: \r\n'"_s
                   + MasterPath() + u"' and try again."_s,
           MsgIcon::Critical, MsgButtons::OK);
    g_MasterDb.reset();
    DestroySystem(-1, false, kExitFailure);
}

void seedFirstUse(bool showSplash)
{
    Log(u" .. Initializing KORVA master DB file for first use.../n"_s);
    const QString programDir = modFolders::ProgramDirectory();
    g_MasterDb->SetValue(settings::kFileListCount, QString(), 4, QString());
    for (int n = 1; n <= 4; ++n)
        g_MasterDb->SetValue(settings::FileListName(n), programDir + u"/ex%1.zel"_s.arg(n), 0,
                             QString());
    {
        r_data metrics;
        metrics.ColorDefaults();
        metrics.WriteColors();
    }
    Log(u"Awaiting user response in Setup Window/n"_s);
    frmSetup setup(showSplash ? g_splash.data() : nullptr);
    CentreOnScreen(&setup);
    SetTopmost(&setup);
    prompter().ShowModal(&setup);
    g_MasterDb->Save();
}

// Writes the updater file. The save waits for the disk; `meanwhile`, when
// given, runs beside it in this thread. The lines are logged once both are
// done, in the order they always come.
void writeUpdaterFile(const std::function<void()> &meanwhile)
{
    // The program directory is often not the user's to write (an installed
    // program that was once run as root): a failure here is logged, never
    // shown, and start-up goes on.
    const QString path =
            modFolders::ProgramDirectory() + u'/' + QString::fromUtf16(version::kTitle) + u".upd"_s;
    if (korva::inspectPath(path).kind == korva::PathKind::Regular)
        QFile::remove(path);
    ikorvalite updater;
    updater.SetQuiet(true);
    const bool mounted = updater.Mount(path, false);
    updater.SetValue(u"app_title"_s, QString::fromUtf16(version::kTitle), 0, QString());
    // Major, minor and revision run together: the updater compares them so.
    updater.SetValue(u"app_current_version"_s,
                     QString::number(version::kMajor) + QString::number(version::kMinor)
                             + QString::number(version::kRevision),
                     0, QString());
    updater.SetValue(u"app_desc"_s, u"This is a vocabulary flash cards program"_s, 0, QString());
    bool saved = false;
    if (mounted && meanwhile) {
        // Nothing else touches the updater while its thread saves it.
        std::unique_ptr<QThread> saver(
                QThread::create([&updater, &saved] { saved = updater.Save(); }));
        saver->start();
        meanwhile();
        saver->wait();
    } else {
        if (meanwhile)
            meanwhile();
        saved = mounted && updater.Save();
    }
    if (!saved)
        Log(u" .. the updater file '"_s + path + u"' couldn't be written: "_s + updater.LastError()
            + u"/n"_s);
    updater.Unmount();
    Log(u"updater file generated/n"_s);
}

} // namespace

QString ReleaseDate(const QLocale &locale)
{
    // The separator is the first character between the fields of the
    // locale's short date form; the C locale's form has none of its own.
    QChar separator = u'/';
    const QString form = locale.dateFormat(QLocale::ShortFormat);
    if (locale.language() != QLocale::C) {
        for (QChar c : form) {
            if (!c.isLetter() && c != u'\'') {
                separator = c;
                break;
            }
        }
    }
    return u"02"_s + separator + u"09"_s + separator + u"2010"_s;
}

QString MasterPath()
{
    return g_BaseDirectory + u'/' + settings::kMasterFileName;
}

frmSplash *SplashWindow()
{
    return g_splash;
}

frmChapter *ChapterWindow()
{
    return g_chapter;
}

void StartProgram(const QStringList &arguments)
{
    g_arguments = arguments;
    g_RunMode = kRunModeRelease;
    // The common controls need no set-up here.
    g_SplashUp = false;
    g_DeleteMasterOnExit = false;
    ConnectWatcher();
    Log(u"/b/cVocabrix v"_s + QString::number(version::kMajor) + u'.'
                + QString::number(version::kMinor) + u" build "_s
                + QString::number(version::kRevision) + u"/n"_s,
        kLogBanner);
    Log(u"/b/c"_s + QString::fromUtf16(version::kNotice) + u"/n"_s, kLogBanner);
    modFolders::SetHomeDirectory();
    Log(u"setting base directory to: "_s + g_BaseDirectory + u"/n"_s);
    g_Extras.Load(); // the additions' settings, beside "sys.zel"; read quietly
    // The splash is made, not yet shown, while the updater file is synced.
    writeUpdaterFile([] { g_madeSplash = new frmSplash; });
    LoadSystem(true);
}

void LoadSystem(bool showSplash)
{
    if (showSplash) {
        g_SplashUp = true;
        g_splash = g_madeSplash ? g_madeSplash.data() : new frmSplash;
        g_madeSplash = nullptr;
        CentreOnScreen(g_splash);
        g_splash->show();
        g_splash->StartRenderer();
        SetTopmost(g_splash);
    }
    g_ShuffleRunning = false;
    g_ShuttingDown = false;

    const QString commandLine = g_arguments.join(u' ').toLower();
    if (commandLine.contains(u"show_console"_s)) {
        Log(u"ZEL.LOADER is loading the system in "_s + RunModeName() + u" mode/n"_s);
        Log(u"Logging system disabled in "_s + RunModeName() + u" mode - not logging to disk/n"_s);
        Log(u"Showing the message watcher window per command line request/n"_s);
    }
    Log(u"KORVA Alive/n"_s);
    if (showSplash)
        PauseWithEvents(150, true);
    Log(u"ZEL Platform v3.44 Startup/n"_s);
    Log(u"last platform revision date is 16Jan2010/n"_s);
    Log(u"Program release date: "_s + ReleaseDate(QLocale()) + u"/n"_s);
    Log(u"Bringing up the system ../n"_s);
    // There is no configuration-variable subsystem: these four lines are all
    // of that step.
    Log(u"Starting the cvar subsystem ../n"_s);
    Log(u".. cvar system disabled in this implementation/n"_s);
    Log(u"Warning: localization support requires the cvar subsystem/n"_s);
    Log(u"Localization support has been disabled/n"_s);
    Log(u" .. client detected: \""_s + QString::fromUtf16(version::kProductName)
        + u"\"; version: "_s + versionText() + u"/n"_s);
    Log(u"Checking for already running instances ../n"_s);

    if (showSplash) {
        if (instanceguard::PreviousInstanceRunning()) {
            ClearTopmost(g_splash);
            Log(u"Previous program instance found/n"_s);
            MsgBox(u"Previous Instance Found"_s,
                   u"A previous instance was detected. Exit that instance before starting a new one."_s,
                   MsgIcon::Exclamation, MsgButtons::OK);
            g_SplashUp = false;
            DestroySystem(-1, false, kExitFailure);
            return;
        }
        Log(u" .. no previously running instance has been found./n"_s);
    }

    Log(u"starting the KORVA class driver ../n"_s);
    g_MasterDb = std::make_unique<ikorvalite>();
    qint32 major = 0, minor = 0, build = 0;
    DetectWindowsVersion(major, minor, build);
    Log(u"Windows OS version detected: %1.%2 build %3/n"_s.arg(major).arg(minor).arg(build));
    Log(u" .. OS supports Alpha: "_s + yesNo(g_OsAlpha) + u"/n"_s);
    Log(u" .. OS supports API Gradient: "_s + yesNo(g_OsGradient) + u"/n"_s);

    const QString master = MasterPath();
    const bool existedBefore = g_MasterDb->FileExists(master);
    if (!g_MasterDb->Mount(master, false)) {
        masterMountFailed();
        return;
    }
    Log(u" ..KORVA data file mounted successfully/n"_s);
    if (!existedBefore)
        seedFirstUse(showSplash);

    modrender::LoadAlphaOptions();

    g_chapter = new frmChapter;
    RestoreWindowPosition(g_chapter);

    // A missing key means "on" for both.
    g_ShowMouseHover = g_MasterDb->GetNumber(settings::kShowMouseHover, settings::kTrue).value != 0;
    g_TroubleByDefault =
            g_MasterDb->GetNumber(settings::kTroubleByDefault, settings::kTrue).value != 0;
    g_TroubleDefaultCurrent = g_TroubleByDefault;

    g_chapter->ShowForm();
    g_chapter->SetActionsEnabled(false);
    FlushData(showSplash);

    // The start-up time ("The system was brought up in %t msec/n") is never
    // measured, so that line is never written; on purpose.
    Log(u"System brought up successfully/n"_s);

    if (showSplash) {
        PauseWithEvents(75, true);
        g_SplashUp = false;
        if (g_splash)
            g_splash->StopRenderer();
        forms::Unload(g_splash);
    }
    Log(u" .. Splash killed/n"_s);

    if (g_chapter) {
        g_chapter->raise();
        g_chapter->activateWindow();
        g_chapter->SetActionsEnabled(true);
    }
    Log(u"ZEL.Loader exited/n"_s);
}

void DestroySystem(qint16 code, bool keepRunning, int exitStatus)
{
    g_ShuttingDown = true;
    if (g_ShuffleRunning) {
        Log(u"suspending system destroyer until randomizer exits ../n"_s);
        while (g_ShuffleRunning)
            PauseWithEvents(10, true);
        Log(u"randomizer exit detected, resuming system destroyer/n"_s);
    }
    if (g_SplashUp && g_splash)
        g_splash->StopRenderer();
    Log(u"KORVA system going down on code "_s + QString::number(code) + u"/n"_s);
    Log(u"halting renderer ../n"_s);
    Log(u"saving Alpha Options/n"_s);
    modrender::SaveAlphaOptions();

    if (code == 0) {
        // While the card on show and the deck are still there. Quietly: the
        // shutdown's lines stay as they are.
        lastsession::Keep();
        modrender::ReleaseRendering();
        Log(u" .. renderer dead/n"_s);
        for (QWidget *form : forms::Open())
            SaveWindowPosition(form, false);
        FlushData(false);
    }

    if (g_MasterDb) {
        g_MasterDb->SetValue(settings::kShowMouseHover, QString(),
                             settings::FlagValue(g_ShowMouseHover), settings::kGroupOptions);
        g_MasterDb->SetValue(settings::kTroubleByDefault, QString(),
                             settings::FlagValue(g_TroubleByDefault), settings::kGroupOptions);
        Log(u"saving the korva master/n"_s);
        g_MasterDb->Save();
        Log(u"unmounting file/n"_s);
        g_MasterDb->Unmount();
        Log(u"destroying class instance/n"_s);
        g_MasterDb.reset();
        Log(u" ..class instance destroyed/n"_s);
    } else {
        Log(u"korvamain has exited .. NOT writing current data to disk/n"_s);
    }

    for (QWidget *form : forms::Open()) {
        auto *study = qobject_cast<frmMain *>(form);
        if (study && keepRunning) {
            study->Reinitialize();
            Log(u" .. skipping frmMain unloader/n"_s);
        } else {
            Log(u"unloading form "_s + forms::Name(form) + u"/n"_s);
            forms::Unload(form);
        }
    }
    Log(u"KORVA Platform Dead/n"_s);
    Log(u"KORVA Platform release successful/n"_s);

    if (g_DeleteMasterOnExit) {
        if (korva::inspectPath(MasterPath()).kind == korva::PathKind::Regular)
            QFile::remove(MasterPath());
        // Every setting goes, the additions' too.
        QFile::remove(ExtraSettings::Path());
        g_Extras.Clear();
    } else if (g_Extras.IsDirty()) {
        // Settings whose save failed when they changed get one more try; the
        // user was told then.
        g_Extras.Save();
    }

    if (!keepRunning) {
        Log(u"Process will be released after this line/n"_s);
        DisconnectWatcher();
        // The process ends when its last window is gone: the event loop stops
        // once the unloaded windows are deleted.
        g_ProcessReleased = true;
        g_ExitStatus = exitStatus;
        QCoreApplication::exit(exitStatus);
    }
}

namespace {

// What the windows below call to end the program or start a new session.
class Spine final : public ProgramLifecycle
{
public:
    void DestroySystem(qint16 code, bool keepRunning, int exitStatus) override
    {
        modMain::DestroySystem(code, keepRunning, exitStatus);
    }
    void StartNewSession() override { modMain::StartNewSession(); }
};

} // namespace

void PrepareApplication()
{
    QApplication::setApplicationName(QStringLiteral("Vocabrix"));
    QApplication::setWindowIcon(ProgramIcon());
    // The program ends when shutdown says so, not when a window closes: a new
    // session hides every window for a moment.
    QApplication::setQuitOnLastWindowClosed(false);
    programstyle::InstallApplicationStyle();
    InstallFontSubstitutes();
    InstallControlAccessibility();
}

void InstallLifecycle()
{
    static Spine spine;
    SetLifecycle(&spine);
}

void StartNewSession()
{
    Log(u" ***************************/n"_s);
    Log(u" -- Starting New Session --/n"_s);
    DestroySystem(0, true);
    LoadSystem(false);
}

void OpenFileArguments(const QStringList &arguments)
{
    for (const QString &argument : arguments) {
        const QFileInfo file(argument);
        frmChapter *chapters = ChapterWindow();
        if (!chapters || !file.isFile())
            continue;
        if (file.suffix() == u"zel"_s)
            chapters->AddChapterFile(file.absoluteFilePath());
        else if (file.suffix() == u"vxs"_s)
            chapters->ResumeProgress(file.absoluteFilePath());
    }
}

QString RunModeName()
{
    switch (g_RunMode) {
    case kRunModeDebug:
        return u"Debug"_s;
    case kRunModeRelease:
        return u"Full Retail"_s;
    default:
        return QString();
    }
}

qint32 DetectWindowsVersion(qint32 &major, qint32 &minor, qint32 &build)
{
    // Only the first call reads the version; later ones (a new session) get
    // an empty record, 0.0 build 0, which leaves the flags as they are.
    OsVersion v;
    if (g_OsVersionCode == 0) {
        if (const std::optional<OsVersion> read = QueryOsVersion()) {
            v = *read;
            g_OsVersionCode = v.code();
        }
    }
    major = v.major;
    minor = v.minor;
    build = v.build;
    if (major >= 5) {
        g_OsAlpha = true;
        g_OsGradient = true;
    } else if (major == 4 && minor >= 10) {
        g_OsAlpha = false;
        g_OsGradient = true;
    }
    return g_OsVersionCode;
}

void WriteUpdaterFile()
{
    writeUpdaterFile({});
}

} // namespace modMain
