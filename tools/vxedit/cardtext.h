#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <vector>

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

// Splits UTF-8 text into rows. A byte-order mark, Windows line ends, blank
// lines and the header lines on top are skipped. False with "line N: why" in
// error when the text is not UTF-8 or a quoted field never ends.
bool Parse(const QByteArray &data, const Layout &layout, std::vector<Row> &rows, QString *error);
bool Parse(const QByteArray &data, Format format, std::vector<Row> &rows, QString *error);

// Plain text of an HTML field: tags dropped, line breaks as blanks, entities
// decoded.
QString HtmlToText(const QString &html);

// One line of a file (without the line end). False with a reason when a field
// cannot be written in the format (a tab or line break in TSV).
bool FormatRow(const QStringList &fields, Format format, QString &line, QString *error);

} // namespace cardtext
