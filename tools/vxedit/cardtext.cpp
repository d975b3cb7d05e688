// SPDX-License-Identifier: GPL-3.0-or-later
#include "cardtext.h"

#include "korva/korvaformat.h"

#include <QStringDecoder>

using namespace Qt::Literals::StringLiterals;

namespace cardtext {

namespace {

// The text is decoded a piece at a time, each ending right after a line
// break, so that no line (nor a character, nor a "\r\n") is cut and only
// one piece is held as text at once.
constexpr qsizetype kPiece = 1024 * 1024;

qsizetype pieceEnd(const QByteArray &data, qsizetype from)
{
    if (data.size() - from <= kPiece)
        return data.size();
    const qsizetype last = data.lastIndexOf('\n', from + kPiece - 1);
    if (last >= from)
        return last + 1;
    const qsizetype next = data.indexOf('\n', from + kPiece);
    return next < 0 ? data.size() : next + 1;
}

QString decodePiece(QByteArrayView bytes, bool *bad)
{
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = decoder.decode(bytes);
    *bad = decoder.hasError();
    return text;
}

// False with the first line that is not UTF-8 named in error.
bool checkUtf8(const QByteArray &data, QString *error)
{
    int line = 1;
    for (qsizetype from = 0, end; from < data.size(); from = end) {
        end = pieceEnd(data, from);
        bool bad = false;
        decodePiece(QByteArrayView(data).sliced(from, end - from), &bad);
        if (!bad) {
            line += int(QByteArrayView(data).sliced(from, end - from).count('\n'));
            continue;
        }
        for (qsizetype start = from; start < end; ++line) {
            qsizetype stop = data.indexOf('\n', start);
            if (stop < 0 || stop >= end)
                stop = end;
            decodePiece(QByteArrayView(data).sliced(start, stop - start), &bad);
            if (bad) {
                if (error)
                    *error = u"line %1: the text is not UTF-8"_s.arg(line);
                return false;
            }
            start = stop + 1;
        }
        if (error)
            *error = u"the text is not UTF-8"_s;
        return false;
    }
    return true;
}

bool isBlank(const QStringList &fields)
{
    for (const QString &f : fields) {
        if (!f.isEmpty())
            return false;
    }
    return true;
}

// "#separator:tab", "#html:false", "#deck column:3" ...: a "#", a name of
// letters and blanks, a colon.
bool isHeaderLine(const QString &line)
{
    if (!line.startsWith(u'#'))
        return false;
    const qsizetype colon = line.indexOf(u':');
    if (colon < 2)
        return false;
    for (qsizetype i = 1; i < colon; ++i) {
        const QChar c = line[i];
        if (!(c.isLetter() || c == u' ' || c == u'_'))
            return false;
    }
    return true;
}

QChar separatorNamed(const QString &name)
{
    static const QList<std::pair<QString, QChar>> names {
            {u"tab"_s, u'\t'},  {u"comma"_s, u','}, {u"semicolon"_s, u';'},
            {u"space"_s, u' '}, {u"pipe"_s, u'|'},  {u"colon"_s, u':'},
    };
    for (const auto &[n, c] : names) {
        if (name.compare(n, Qt::CaseInsensitive) == 0)
            return c;
    }
    return name.size() == 1 ? name[0] : QChar(u'\t');
}

QString csvField(const QString &f, bool alwaysQuoted)
{
    const bool needsQuotes = alwaysQuoted || f.contains(u',') || f.contains(u'"')
            || f.contains(u'\n') || f.contains(u'\r');
    if (!needsQuotes)
        return f;
    QString escaped = f;
    escaped.replace(u"\""_s, u"\"\""_s);
    return u'"' + escaped + u'"';
}

} // namespace

Format FormatForPath(const QString &path)
{
    return path.endsWith(u".csv"_s, Qt::CaseInsensitive) ? Format::Csv : Format::Tsv;
}

Layout LayoutFor(Format format)
{
    Layout layout;
    if (format == Format::Csv) {
        layout.delimiter = u',';
        layout.quoted = true;
    }
    return layout;
}

Layout DetectLayout(const QByteArray &data, const QString &path)
{
    Layout layout = LayoutFor(FormatForPath(path));
    // QString::fromUtf8 drops a leading byte-order mark itself.
    const QString text = QString::fromUtf8(data.left(64 * 1024));
    const QStringList lines = text.split(u'\n');

    qsizetype i = 0;
    for (; i < lines.size(); ++i) {
        // As the reader takes them: from the first column of a line.
        const QString line = lines[i].trimmed();
        if (!lines[i].startsWith(u'#') || !isHeaderLine(line))
            break;
        const qsizetype colon = line.indexOf(u':');
        const QString name = line.mid(1, colon - 1).trimmed().toLower();
        const QString value = line.mid(colon + 1).trimmed();
        layout.fromHeader = true;
        if (name == u"separator"_s) {
            layout.delimiter = separatorNamed(value);
            layout.quoted = true;
        } else if (name == u"html"_s) {
            layout.html = value.compare(u"true"_s, Qt::CaseInsensitive) == 0;
        } else if (name == u"columns"_s) {
            layout.columnNames = value.split(layout.delimiter);
        } else if (name.endsWith(u" column"_s)) {
            const int column = value.toInt();
            if (column > 0)
                layout.metaColumns << column - 1;
        }
    }
    if (layout.fromHeader || FormatForPath(path) == Format::Csv
        || !path.endsWith(u".txt"_s, Qt::CaseInsensitive))
        return layout;

    // A plain .txt: whichever of tab, semicolon and comma its first lines use.
    int tabs = 0, semicolons = 0, commas = 0;
    for (qsizetype n = 0; n < lines.size() && n < 20; ++n) {
        tabs += int(lines[n].count(u'\t'));
        semicolons += int(lines[n].count(u';'));
        commas += int(lines[n].count(u','));
    }
    if (tabs == 0 && (semicolons > 0 || commas > 0)) {
        layout.delimiter = semicolons >= commas ? u';' : u',';
        layout.quoted = true;
    }
    return layout;
}

bool Parse(const QByteArray &data, const Layout &layout, const RowSink &sink, QString *error)
{
    if (!checkUtf8(data, error))
        return false;

    int line = 1, rowLine = 1, quoteLine = 0, rowCount = 0;
    QStringList fields;
    QString field;
    bool quoted = false;    // inside a quoted field
    bool wasQuoted = false; // the current field was quoted
    bool atTop = true;      // still among the header lines
    QString stop;           // why reading stopped early

    auto fieldTooLong = [&] {
        if (field.size() <= kMaxFieldLength)
            return false;
        stop = u"line %1: a field of more than 65,535 characters; no card holds that much"_s.arg(
                wasQuoted ? quoteLine : line);
        return true;
    };
    auto endField = [&] {
        if (fieldTooLong())
            return false;
        if (fields.size() >= kMaxFields) {
            stop = u"line %1: more than %2 fields; a card has a question, an answer and a note"_s
                           .arg(rowLine)
                           .arg(kMaxFields);
            return false;
        }
        fields << (layout.html ? HtmlToText(field) : field);
        field.clear();
        wasQuoted = false;
        return true;
    };
    auto endRow = [&] {
        if (!endField())
            return false;
        if (!isBlank(fields)) {
            if (++rowCount > kMaxRows) {
                stop = u"line %1: more cards than the %2 a chapter can hold"_s.arg(rowLine).arg(
                        kMaxRows - 1);
                return false;
            }
            if (!sink(Row {rowLine, std::move(fields)}, &stop)) {
                if (stop.isEmpty())
                    stop = u"line %1: refused"_s.arg(rowLine);
                return false;
            }
        }
        fields.clear();
        return true;
    };

    bool going = true;
    for (qsizetype from = 0, to; going && from < data.size(); from = to) {
        to = pieceEnd(data, from);
        bool bad = false; // checked above
        QString text = decodePiece(QByteArrayView(data).sliced(from, to - from), &bad);
        if (from == 0 && text.startsWith(QChar(0xFEFF)))
            text.remove(0, 1);
        for (qsizetype i = 0; going && i < text.size(); ++i) {
            if (fieldTooLong()) { // mutate: skip: only sooner; the field's end refuses it the same
                going = false;
                break;
            }
            const QChar c = text[i];
            if (atTop && fields.isEmpty() && field.isEmpty() && c == u'#') {
                const qsizetype end = text.indexOf(u'\n', i);
                const QString candidate = text.mid(i, end < 0 ? -1 : end - i).trimmed();
                if (isHeaderLine(candidate)) {
                    if (end < 0)
                        break;
                    i = end;
                    ++line;
                    rowLine = line;
                    continue;
                }
            }
            atTop = false;
            if (quoted) {
                if (c == u'"') {
                    if (i + 1 < text.size() && text[i + 1] == u'"') {
                        field += u'"';
                        ++i;
                    } else {
                        quoted = false;
                    }
                } else {
                    // A quoted line break keeps its form but loses the "\r" of a
                    // Windows line end, so a field never holds one to write back.
                    if (c == u'\n') {
                        ++line;
                        while (field.endsWith(u'\r'))
                            field.chop(1);
                    }
                    field += c;
                }
                continue;
            }
            if (layout.quoted && c == u'"' && field.isEmpty() && !wasQuoted) {
                quoted = true;
                wasQuoted = true;
                quoteLine = line;
            } else if (c == layout.delimiter) {
                going = endField();
            } else if (c == u'\n') {
                going = endRow();
                ++line;
                rowLine = line;
            } else if (c == u'\r' && i + 1 < text.size() && text[i + 1] == u'\n') {
                // the "\n" ends the row
            } else {
                field += c;
            }
        }
    }
    if (going && quoted)
        stop = u"line %1: a quoted field is never closed"_s.arg(quoteLine);
    else if (going && (!field.isEmpty() || !fields.isEmpty()))
        endRow();
    if (!stop.isEmpty()) {
        if (error)
            *error = stop;
        return false;
    }
    return true;
}

bool Parse(const QByteArray &data, const Layout &layout, std::vector<Row> &rows, QString *error)
{
    rows.clear();
    const bool ok = Parse(
            data, layout,
            [&rows](Row &&row, QString *) {
                rows.push_back(std::move(row));
                return true;
            },
            error);
    if (!ok)
        rows.clear();
    return ok;
}

bool Parse(const QByteArray &data, Format format, std::vector<Row> &rows, QString *error)
{
    return Parse(data, LayoutFor(format), rows, error);
}

bool LooksLikeHeaderLine(const QString &line)
{
    return isHeaderLine(line.trimmed()) && line.startsWith(u'#');
}

bool FormatRow(const QStringList &fields, Format format, QString &line, QString *error)
{
    QStringList out;
    for (const QString &f : fields) {
        if (format == Format::Tsv) {
            if (f.contains(u'\t') || f.contains(u'\n') || f.contains(u'\r')) {
                if (error)
                    *error = u"'%1' holds a tab or line break, which a tab-separated file "
                             "cannot carry (export to .csv instead)"_s.arg(f);
                return false;
            }
            out << f;
            continue;
        }
        out << csvField(f, false);
    }
    line = out.join(format == Format::Tsv ? u"\t"_s : u","_s);
    return true;
}

bool FormatCards(const korva::Entry *cards, qsizetype count, Format format, QByteArray &out,
                 int *badCard, QString *error)
{
    QString text;
    for (qsizetype i = 0; i < count; ++i) {
        const korva::Entry &c = cards[i];
        QStringList fields {c.key, c.text};
        if (!c.note.isEmpty())
            fields << c.note;
        QString line;
        if (!FormatRow(fields, format, line, error)) {
            if (badCard)
                *badCard = int(i + 1);
            return false;
        }
        // A first line that looks like a header line would be read back as one.
        if (i == 0 && LooksLikeHeaderLine(line)) {
            if (format == Format::Tsv) {
                if (badCard)
                    *badCard = 1;
                if (error)
                    *error =
                            u"'%1' would read back as a header line (export to .csv instead)"_s.arg(
                                    c.key);
                return false;
            }
            line = csvField(fields[0], true) + line.mid(csvField(fields[0], false).size());
        }
        text += line + u'\n';
    }
    out = text.toUtf8();
    return true;
}

} // namespace cardtext
