#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <vector>

// Cards as lines of text: one card per line, question, answer and an optional
// note, separated by tabs (TSV) or by commas with CSV quoting.
namespace cardtext {

enum class Format { Tsv, Csv };

struct Row
{
    int line = 0; // where the card starts in its file, from 1
    QStringList fields;
};

// The format a file name asks for: ".csv" is CSV, anything else tab-separated.
Format FormatForPath(const QString &path);

// Splits UTF-8 text into rows. A byte-order mark, Windows line ends, blank
// lines and the "#key:value" header lines that some programs put on top of a
// tab-separated export are skipped. False with "line N: why" in error when the
// text is not UTF-8 or a quoted CSV field never ends.
bool Parse(const QByteArray &data, Format format, std::vector<Row> &rows, QString *error);

// One line of a file (without the line end). False with a reason when a field
// cannot be written in the format (a tab or line break in TSV).
bool FormatRow(const QStringList &fields, Format format, QString &line, QString *error);

} // namespace cardtext
