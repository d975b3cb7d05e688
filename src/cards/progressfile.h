#pragma once

#include "cards/card.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <vector>

class Deck;

// A progress file (".vxs") is a snapshot of the whole deck: a 16-bit count
// (the deck's upper bound) and count + 1 card records in deck order, the last
// being the deck's empty slot. A record holds question, answer, note and spare
// as texts, the trouble flag and times viewed as 16-bit numbers, then the
// chapter as a text.

// Checks every limit first; false with a reason and out untouched when a card
// cannot be stored.
bool WriteProgressImage(const Deck &deck, QByteArray &out, QString *error);

// Parses a file; false with a reason (and cards untouched) when it is short or
// damaged. Bytes after the last card are not read; used tells where it ended.
bool ReadProgressImage(QByteArrayView data, std::vector<Card> &cards, QString *error,
                       qsizetype *used = nullptr);

// Asks for a file and writes the deck to it.
void SaveProgress();

namespace modMain {
// Asks for a file and replaces the deck by its cards. True when a file was read.
bool LoadProgress();
// The same with the file already chosen (opened from the desktop).
bool LoadProgressFrom(const QString &path);
} // namespace modMain
