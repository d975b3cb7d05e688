// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cardtext.h"

// Whether the first line of a list names its columns ("Question,Answer",
// "Front\tBack", "Wort;Übersetzung") rather than giving a card.
namespace headerrow {

// True when the first two card fields (bookkeeping columns left out) are a
// known name for a question side followed by a known name for an answer side
// in the same language, and any further field is empty or names a note. Case,
// accents, blanks, '_' and '-' do not count ("SIDE_1" is "side 1"). A file
// that names its columns in a "#columns:" line has cards from its first line.
bool Detect(const QStringList &fields, const cardtext::Layout &layout);

} // namespace headerrow
