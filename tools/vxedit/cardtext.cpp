#include "cardtext.h"

#include <QStringDecoder>

using namespace Qt::Literals::StringLiterals;

namespace cardtext {

namespace {

bool decodeUtf8(const QByteArray &data, QString &text, QString *error)
{
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    text = decoder.decode(data);
    if (!decoder.hasError()) {
        if (text.startsWith(QChar(0xFEFF)))
            text.remove(0, 1);
        return true;
    }
    // Name the first line that does not decode.
    const QList<QByteArray> lines = data.split('\n');
    for (qsizetype i = 0; i < lines.size(); ++i) {
        QStringDecoder probe(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
        const QString decodedLine = probe.decode(lines[i]); // decoding happens on conversion
        Q_UNUSED(decodedLine);
        if (probe.hasError()) {
            if (error)
                *error = u"line %1: the text is not UTF-8"_s.arg(i + 1);
            return false;
        }
    }
    if (error)
        *error = u"the text is not UTF-8"_s;
    return false;
}

bool isBlank(const QStringList &fields)
{
    return fields.size() == 1 && fields.first().isEmpty();
}

bool isHeaderLine(const QString &line)
{
    // "#separator:tab", "#html:false", "#deck column:3" ...
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

void parseTsv(const QString &text, std::vector<Row> &rows)
{
    const QStringList lines = text.split(u'\n');
    bool atTop = true;
    for (qsizetype i = 0; i < lines.size(); ++i) {
        QString line = lines[i];
        if (line.endsWith(u'\r'))
            line.chop(1);
        if (atTop && isHeaderLine(line))
            continue;
        atTop = false;
        const QStringList fields = line.split(u'\t');
        if (isBlank(fields))
            continue;
        rows.push_back({int(i + 1), fields});
    }
}

bool parseCsv(const QString &text, std::vector<Row> &rows, QString *error)
{
    int line = 1;
    int rowLine = 1;
    QStringList fields;
    QString field;
    bool quoted = false;    // inside a quoted field
    bool wasQuoted = false; // the current field was quoted
    int quoteLine = 0;

    auto endField = [&] {
        fields << field;
        field.clear();
        wasQuoted = false;
    };
    auto endRow = [&] {
        endField();
        if (!isBlank(fields))
            rows.push_back({rowLine, fields});
        fields.clear();
    };

    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (quoted) {
            if (c == u'"') {
                if (i + 1 < text.size() && text[i + 1] == u'"') {
                    field += u'"';
                    ++i;
                } else {
                    quoted = false;
                }
            } else {
                if (c == u'\n')
                    ++line;
                // A quoted line break keeps its form but loses a Windows "\r".
                if (!(c == u'\r' && i + 1 < text.size() && text[i + 1] == u'\n'))
                    field += c;
            }
            continue;
        }
        if (c == u'"' && field.isEmpty() && !wasQuoted) {
            quoted = true;
            wasQuoted = true;
            quoteLine = line;
        } else if (c == u',') {
            endField();
        } else if (c == u'\n') {
            endRow();
            ++line;
            rowLine = line;
        } else if (c == u'\r' && i + 1 < text.size() && text[i + 1] == u'\n') {
            // the "\n" ends the row
        } else {
            field += c;
        }
    }
    if (quoted) {
        if (error)
            *error = u"line %1: a quoted field is never closed"_s.arg(quoteLine);
        return false;
    }
    if (!field.isEmpty() || !fields.isEmpty())
        endRow();
    return true;
}

QString csvField(const QString &field)
{
    const bool needsQuotes = field.contains(u',') || field.contains(u'"') || field.contains(u'\n')
            || field.contains(u'\r');
    if (!needsQuotes)
        return field;
    QString escaped = field;
    escaped.replace(u"\""_s, u"\"\""_s);
    return u'"' + escaped + u'"';
}

} // namespace

Format FormatForPath(const QString &path)
{
    return path.endsWith(u".csv"_s, Qt::CaseInsensitive) ? Format::Csv : Format::Tsv;
}

bool Parse(const QByteArray &data, Format format, std::vector<Row> &rows, QString *error)
{
    QString text;
    if (!decodeUtf8(data, text, error))
        return false;
    rows.clear();
    if (format == Format::Tsv) {
        parseTsv(text, rows);
        return true;
    }
    return parseCsv(text, rows, error);
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
        } else {
            out << csvField(f);
        }
    }
    line = out.join(format == Format::Tsv ? u"\t"_s : u","_s);
    return true;
}

} // namespace cardtext
