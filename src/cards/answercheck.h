// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>

// Judges an answer typed on the study window's line against the side of the
// card it stands for, forgiving what a learner should not be failed for:
// case, spaces and punctuation around the answer (and runs of spaces inside
// it), parenthesised parts ("stop (bus, tram)"), one leading article (der,
// die, das, ein, eine, the, a, an, to), the spellings ae, oe, ue and ss for
// ä, ö, ü and ß (either way round), and curly apostrophes. A side with
// several answers separated by ";" or "," takes any of them; several typed
// the same way must each be one of them.
namespace answercheck {

struct Verdict
{
    bool right = false;
    // One flag for each character of the side as written: the letters of the
    // answer nearest to what was typed that differ from it (a letter typed too
    // many marks its neighbour). None when right or when nothing was typed.
    QList<bool> marked;
};

Verdict Check(const QString &typed, const QString &expected);

} // namespace answercheck
