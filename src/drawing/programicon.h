// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QIcon;

// The program's icon: two flash cards, the front one a card face. Both
// programs and every window share it.
QIcon ProgramIcon();
