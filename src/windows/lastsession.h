// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Keeping the session on show when studying ends, for the chapter window's
// Resume Last Session (the files are the card store's sessionfile).
namespace lastsession {

// Keeps the deck, the card on show, its side, the trouble-only box and the
// counts of typed answers, when the study window studies a deck and the study options keep
// sessions. A session that cannot be kept is told in a message box; nothing is logged.
void Keep();

} // namespace lastsession
