// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QRect;
class QWidget;

// A window no larger than the screen it opens on and wholly on it, so that
// small screens (a 1024x600 netbook) show every window whole. For windows
// that open where they like; those that keep their place between runs in
// the settings stay where they were put.
void FitOnScreen(QWidget *window);
// The same within a given area (the screen's available part).
void FitInto(QWidget *window, const QRect &available);

// Room the window manager's frame and title bar take around a window.
inline constexpr int kFrameSides = 8;
inline constexpr int kFrameTop = 32;
