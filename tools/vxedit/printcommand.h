// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cards/card.h"

#include <QString>

#include <vector>

// What `vxedit print` reads: the cards of a chapter file, or of a progress
// file with the trouble marks it keeps.
namespace printcommand {

struct Source
{
    std::vector<Card> cards;
    bool troubleMarks = false; // a progress file: the cards' marks mean something
};

// A ".vxs" file is read as a progress file, anything else as a chapter
// (whose cards take its title, or its file name, as their chapter). False
// with a reason when the file is no such thing.
bool Read(const QString &path, Source &out, QString *error);

} // namespace printcommand
