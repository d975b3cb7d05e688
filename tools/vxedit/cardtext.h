// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <functional>
#include <vector>

namespace korva {
struct Entry;
}

// Cards as lines of text: one card per line, its fields separated by a
// delimiter: tabs (TSV), commas with CSV quoting, or what a file's own header
// lines say (the "#separator:tab", "#html:true", "#columns:..." lines that
// some flash-card programs write on top of their exports).
namespace cardtext {

enum class Format { Tsv, Csv };

struct Row
{
    int line = 0; // where the card starts in its file, from 1
    QStringList fields;
};

// How to read a file: what separates fields, whether fields may be quoted,
// whether they hold HTML, the column names it gives and the columns that are
// bookkeeping (deck, note type, tags) rather than card text.
struct Layout
{
    QChar delimiter = u'\t';
    bool quoted = false;
    bool html = false;
    QStringList columnNames;
    QList<int> metaColumns;
    bool fromHeader = false; // said by the file's own header lines
};

// The format a file name asks for: ".csv" is CSV, anything else tab-separated.
Format FormatForPath(const QString &path);
Layout LayoutFor(Format format);

// The layout of a file: its header lines when it has them, else its name
// and, for a .txt file, which of tab, semicolon or comma its first lines use.
Layout DetectLayout(const QByteArray &data, const QString &path);

// No list can become a chapter beyond these: 32,767 cards and a line of
// column names; a card and a few bookkeeping columns.
inline constexpr int kMaxRows = 32768;
inline constexpr int kMaxFields = 64;
// A field longer than a chapter's text field can be is no card's text; kept
// out, it cannot make the editor's tables lay out megabytes of one line.
inline constexpr int kMaxFieldLength = 65535;

// Takes one row as it is read; false (with a reason in error) stops reading.
using RowSink = std::function<bool(Row &&row, QString *error)>;

// Splits UTF-8 text into rows, in time and memory linear in the text. A
// byte-order mark, Windows line ends, blank lines and the header lines on top
// are skipped. False with "line N: why" in error when the text is not UTF-8,
// a quoted field never ends, a field is longer than kMaxFieldLength, a line
// has more than kMaxFields fields or there are more than kMaxRows rows
// (reading stops there).
bool Parse(const QByteArray &data, const Layout &layout, const RowSink &sink, QString *error);
bool Parse(const QByteArray &data, const Layout &layout, std::vector<Row> &rows, QString *error);
bool Parse(const QByteArray &data, Format format, std::vector<Row> &rows, QString *error);

// A line that a reader would take for a header line if it came first.
bool LooksLikeHeaderLine(const QString &line);

// Plain text of an HTML field: tags dropped, line breaks as blanks, entities
// decoded.
QString HtmlToText(const QString &html);

// One line of a file (without the line end). False with a reason when a field
// cannot be written in the format (a tab or line break in TSV).
bool FormatRow(const QStringList &fields, Format format, QString &line, QString *error);

// The cards (question, answer and a note when there is one) as the UTF-8
// lines of a file that reads back as the same cards. False with the card's
// number (from 1) and why when one cannot be written.
bool FormatCards(const korva::Entry *cards, qsizetype count, Format format, QByteArray &out,
                 int *badCard, QString *error);

} // namespace cardtext
