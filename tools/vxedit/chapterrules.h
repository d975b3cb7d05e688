#pragma once

#include "korva/korvaformat.h"

#include <QString>

// What a chapter file can hold: one text entry per card (key = question,
// text = answer, note = note) in a 128-byte record, texts in Windows-1252, at
// most 32,767 cards, and a title that fits the header record.
namespace chapterrules {

inline constexpr qsizetype kCardTextBytes = korva::kRecordLength - (2 + 2 + 2 + 4 + 2);

korva::Entry CardEntry(const QString &question, const QString &answer, const QString &note);

// Bytes the card's record takes, or -1 when a text cannot be stored.
qsizetype CardRecordBytes(const QString &question, const QString &answer, const QString &note);

// Why the card cannot be stored, or an empty text when it can.
QString CheckCard(const QString &question, const QString &answer, const QString &note);
QString CheckTitle(const QString &title);

} // namespace chapterrules
