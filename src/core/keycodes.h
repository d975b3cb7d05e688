// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <Qt>

// Keys travel between the controls and the windows as virtual-key codes (Return
// 13, Space 32, Left 37, Right 39, letters 65..90 whatever the Shift state)
// with a shift state (1 Shift, 2 Ctrl, 4 Alt), the way the windows match them.
namespace keycodes {

inline constexpr int kShiftMask = 1;
inline constexpr int kCtrlMask = 2;
inline constexpr int kAltMask = 4;

// The virtual-key code of a Qt key, or 0 for keys that have none.
int ToVirtualKey(int qtKey);
int ToShiftState(Qt::KeyboardModifiers modifiers);

} // namespace keycodes
