// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cards/card.h"
#include "korva/bytestream.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <vector>

class Deck;

// A progress file (".vxs") is a snapshot of the whole deck: a 16-bit count
// (the deck's upper bound) and count + 1 card records in deck order, the last
// being the deck's empty slot. A record holds question, answer, note and spare
// as texts, the trouble flag and times viewed as 16-bit numbers, then the
// chapter as a text. Texts are a 16-bit byte length and the bytes.
//
// A deck that Windows-1252 can hold is written that way, and only so. A deck
// with any other text is written in UTF-8, and the file begins with a marker
// where the count would be:
//
//   offset 0   16 bits   -32768 (bytes 00 80): the marker
//   offset 2   text      "utf-8" (05 00 75 74 66 2D 38)
//   offset 9   16 bits   the count, as at offset 0 of a Windows-1252 file
//   offset 11  count + 1 card records as above, every text in UTF-8
//
// A reader that knows only the Windows-1252 layout takes the marker for the
// count: negative, or 32,768 if read without sign, more than any deck holds.
// Either way it refuses the file rather than read UTF-8 bytes as 1252 ones.

// Checks every limit first; false with a reason and out untouched when a card
// cannot be stored.
bool WriteProgressImage(const Deck &deck, QByteArray &out, QString *error);

// Parses a file of either layout; false with a reason (and cards untouched)
// when it is short or damaged. Bytes after the last card are not read; used
// tells where it ended, encoding which layout it had.
bool ReadProgressImage(QByteArrayView data, std::vector<Card> &cards, QString *error,
                       qsizetype *used = nullptr, korva::Encoding *encoding = nullptr);

// Asks for a file and writes the deck to it.
void SaveProgress();

namespace modMain {
// Asks for a file and replaces the deck by its cards. True when a file was read.
bool LoadProgress();
// The same with the file already chosen (opened from the desktop).
bool LoadProgressFrom(const QString &path);
} // namespace modMain
