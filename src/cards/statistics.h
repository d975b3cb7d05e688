#pragma once

#include <QDate>
#include <QString>

class Deck;

// The statistics report: a plain-text table of the deck, one line per card
// with question, answer, trouble mark, times viewed and chapter.
QString StatisticsReport(const Deck &deck, const QDate &date);

// Writes the report of the deck to path (replacing it in one step) and opens
// it in the desktop's text editor. A file that cannot be written is told to
// the user and not opened.
bool WriteStatistics(const QString &path);

// Opens a text file with the desktop's handler for it.
void OpenInNotepad(const QString &path);
