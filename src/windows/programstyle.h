// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QWidget;

// The program's own look for its small windows: the dark card colours with
// white text and the blue of the card face for highlights.
namespace programstyle {

void ApplyDark(QWidget *window);

// Makes the application's style the platform's, save that the arrows of a
// toolbar too narrow for its buttons are read without first loading every
// image plugin Qt has: a cost start-up paid for a button rarely shown.
void InstallApplicationStyle();

} // namespace programstyle
