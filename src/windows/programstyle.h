// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QWidget;

// The program's own look for its small windows: the dark card colours with
// white text and the blue of the card face for highlights.
namespace programstyle {

void ApplyDark(QWidget *window);

} // namespace programstyle
