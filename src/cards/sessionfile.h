// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cards/card.h"

#include <QString>

#include <vector>

class Deck;

// The session kept when studying ends, for Resume Last Session: two files of
// their own in the home folder. "lastsession.vxs" holds the deck in the
// progress-file format; "lastsession.txt" (key=value lines) the card on show,
// its side, the trouble-only state and the counts of typed answers, with the
// size and hash of the deck file, so a deck that does not belong to the state
// is found out.
namespace sessionfile {

struct State
{
    int card = 0;             // the index of the card on show
    bool answerShown = false; // the side on show
    bool answerFirst = false; // the side that card showed first
    bool troubleOnly = false; // "show only trouble cards"
    int typedRight = 0;       // typed answers judged right and wrong; a
    int typedWrong = 0;       // state kept before they were counted has none
};

QString DeckPath();
QString StatePath();
// Either file is there (intact or not).
bool Exists();

// Writes the deck, then the state; false with the reason when either could
// not be written or the deck cannot be stored.
bool Write(const Deck &deck, const State &state, QString *error);

// Reads and checks both files; false with the reason (cards and state
// untouched) when either is missing, damaged or does not match the other.
bool Read(std::vector<Card> &cards, State &state, QString *error);

// Moves both files aside (lastsession-damaged.vxs and .txt), replacing those
// set aside before. False when a file stayed in its place.
bool SetAside();
QString SetAsideDeckName();
QString SetAsideStateName();

} // namespace sessionfile
