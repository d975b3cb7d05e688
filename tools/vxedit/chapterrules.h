// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "korva/korvaformat.h"

#include <QString>

// What a chapter file can hold: one text entry per card (key = question,
// text = answer, note = note) in a 128-byte record, at most 32,767 cards, and
// a title that fits the header record. Texts are Windows-1252 while every
// text of the chapter fits it, else the whole file is UTF-8, and the limits
// are bytes of that encoding.
namespace chapterrules {

inline constexpr qsizetype kCardTextBytes = korva::kRecordLength - (2 + 2 + 2 + 4 + 2);

korva::Entry CardEntry(const QString &question, const QString &answer, const QString &note);

// Windows-1252 holds every text of the card.
bool HoldsCp1252(const korva::Entry &card);

// The encoding the card is written in, in a chapter written in the given one:
// a card that Windows-1252 cannot hold makes the chapter UTF-8.
korva::Encoding CardEncoding(const korva::Entry &card, korva::Encoding chapter);

// Bytes the card's record takes in a chapter of the given encoding, or -1 when
// a text cannot be stored.
qsizetype CardRecordBytes(const QString &question, const QString &answer, const QString &note,
                          korva::Encoding chapter);

// Why a text of the card cannot be stored in any encoding (half of a
// character without its other half), or an empty text when all can.
QString CheckTexts(const korva::Entry &card);

// Why the card (or the title) cannot be stored in a chapter of the given
// encoding, or an empty text when it can. A title in a header with the given
// reserved text (a UTF-8 chapter's is its marker).
QString CheckCard(const QString &question, const QString &answer, const QString &note,
                  korva::Encoding chapter);
QString CheckTitle(const QString &title, korva::Encoding chapter,
                   const QString &reserved = QString());

} // namespace chapterrules
