#pragma once

#include <QString>

class QWidget;
class frmChapter;
class frmSplash;

// The program's spine: the entry procedure, the loader that brings the system
// up, the destroyer that takes it down, and the new session in between.
namespace modMain {

// Entry: run mode, banner, home directory, updater file, then the loader.
void StartProgram();
// Brings the system up; with showSplash also the splash and the check for
// another running copy (a new session has neither).
void LoadSystem(bool showSplash);
// Takes the system down. Code 0 is a normal end or a new session, -1 an
// abandoned start-up (which touches no card data, renderer or positions);
// keepRunning keeps the study window and the process for a new session.
// exitStatus is what the process ends with when it is let go.
inline constexpr int kExitNormal = 0;
inline constexpr int kExitFailure = 1;
void DestroySystem(qint16 code, bool keepRunning, int exitStatus = kExitNormal);
void StartNewSession();

QString RunModeName();
qint32 DetectWindowsVersion(qint32 &major, qint32 &minor, qint32 &build);

void SetTopmost(QWidget *window);
void ClearTopmost(QWidget *window);
bool IsTopmost(const QWidget *window);
// The window can no longer be closed from its title bar or by the window
// manager's close command; the program still closes it.
void RemoveCloseCommand(QWidget *window);

// Moves a window to the middle of the screen.
void CentreOnScreen(QWidget *window);
// Positions are kept in twips (15 per pixel) under "<form>.left" / ".top".
void RestoreWindowPosition(QWidget *form);
void SaveWindowPosition(QWidget *form, bool saveNow);
inline constexpr int kTwipsPerPixel = 15;

void RequestMasterReset();
void WriteUpdaterFile();
QString MasterPath();

frmSplash *SplashWindow();
frmChapter *ChapterWindow();

} // namespace modMain
