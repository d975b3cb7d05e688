// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QWidget;

// The spine's window helpers that every window uses: staying on top, the
// close command, and the positions that windows keep between runs.
namespace modMain {

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

// Shutdown deletes "sys.zel" at its very end, so the next start is a first use.
void RequestMasterReset();

} // namespace modMain
