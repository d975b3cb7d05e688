// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDate>
#include <QString>

class Deck;

// The statistics report: a plain-text table of the deck, one line per card
// with question, answer, trouble mark, times viewed and chapter.
// Columns are counted as a fixed-width editor shows the text (see
// TextColumns), so they stay aligned in any script.
QString StatisticsReport(const Deck &deck, const QDate &date);

// Columns the text takes in a fixed-width editor: one a character, none for
// a combining mark or an invisible format character, two for a wide East
// Asian character (and most emoji). A character outside the 16-bit range
// counts once, not as its two halves.
qsizetype TextColumns(QStringView text);

// Writes the report of the deck to path (replacing it in one step) and opens
// it in the desktop's text editor. A file that cannot be written is told to
// the user and not opened.
bool WriteStatistics(const QString &path);

// Opens a text file with the desktop's handler for it.
void OpenInNotepad(const QString &path);
