// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "windows/lifecycle.h"
#include "windows/windowplacement.h"

#include <QString>
#include <QStringList>

class QLocale;

class frmChapter;
class frmSplash;

// The program's spine: the entry procedure, the loader that brings the system
// up, the destroyer that takes it down, and the new session in between.
namespace modMain {

// Entry: run mode, banner, home directory, updater file, then the loader.
// arguments is the command line after the program's name: show_console
// anywhere in it, in any case, has every session log its run mode.
void StartProgram(const QStringList &arguments = {});
// Brings the system up; with showSplash also the splash and the check for
// another running copy (a new session has neither).
void LoadSystem(bool showSplash);
// Takes the system down. Code 0 is a normal end or a new session, -1 an
// abandoned start-up (which touches no card data, renderer or positions);
// keepRunning keeps the study window and the process for a new session.
// exitStatus is what the process ends with when it is let go.
void DestroySystem(qint16 code, bool keepRunning, int exitStatus = kExitNormal);
void StartNewSession();
// Lets the windows below reach DestroySystem and StartNewSession.
void InstallLifecycle();
// What the whole application needs before the first window: its name and
// icon, staying alive while windows come and go, fonts for the card's face
// names, and the owner-drawn controls made readable to assistive tools.
void PrepareApplication();

// A chapter (.zel) or progress file (.vxs) named on the command line, as the
// desktop passes a file opened with the program: the chapter joins the list,
// selected; the progress is resumed. Other arguments are left alone.
void OpenFileArguments(const QStringList &arguments);

QString RunModeName();
// The program's release date, 9 February 2010, as mm/dd/yyyy with the
// locale's date separator.
QString ReleaseDate(const QLocale &locale);
qint32 DetectWindowsVersion(qint32 &major, qint32 &minor, qint32 &build);

void WriteUpdaterFile();
QString MasterPath();

frmSplash *SplashWindow();
frmChapter *ChapterWindow();

} // namespace modMain
