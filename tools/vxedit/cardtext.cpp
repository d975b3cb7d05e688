#include "cardtext.h"

#include <QRegularExpression>
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
    QString text = QString::fromUtf8(data.left(64 * 1024));
    if (text.startsWith(QChar(0xFEFF)))
        text.remove(0, 1);
    const QStringList lines = text.split(u'\n');

    qsizetype i = 0;
    for (; i < lines.size(); ++i) {
        const QString line = lines[i].trimmed();
        if (!isHeaderLine(line))
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

bool Parse(const QByteArray &data, const Layout &layout, std::vector<Row> &rows, QString *error)
{
    QString text;
    if (!decodeUtf8(data, text, error))
        return false;
    rows.clear();

    int line = 1, rowLine = 1, quoteLine = 0;
    QStringList fields;
    QString field;
    bool quoted = false;    // inside a quoted field
    bool wasQuoted = false; // the current field was quoted
    bool atTop = true;      // still among the header lines

    auto endField = [&] {
        fields << (layout.html ? HtmlToText(field) : field);
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
                if (c == u'\n')
                    ++line;
                // A quoted line break keeps its form but loses a Windows "\r".
                if (!(c == u'\r' && i + 1 < text.size() && text[i + 1] == u'\n'))
                    field += c;
            }
            continue;
        }
        if (layout.quoted && c == u'"' && field.isEmpty() && !wasQuoted) {
            quoted = true;
            wasQuoted = true;
            quoteLine = line;
        } else if (c == layout.delimiter) {
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

bool Parse(const QByteArray &data, Format format, std::vector<Row> &rows, QString *error)
{
    return Parse(data, LayoutFor(format), rows, error);
}

QString HtmlToText(const QString &html)
{
    if (!html.contains(u'<') && !html.contains(u'&'))
        return html;
    static const QRegularExpression breaks(u"<\\s*(br|/div|/p|/li)\\b[^>]*>"_s,
                                           QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression tags(u"<[^>]*>"_s);
    QString text = html;
    text.replace(breaks, u" "_s);
    text.remove(tags);
    static const QList<std::pair<QString, QString>> entities {
            {u"&nbsp;"_s, u" "_s},  {u"&lt;"_s, u"<"_s},  {u"&gt;"_s, u">"_s},
            {u"&quot;"_s, u"\""_s}, {u"&#39;"_s, u"'"_s}, {u"&apos;"_s, u"'"_s},
    };
    for (const auto &[entity, character] : entities)
        text.replace(entity, character, Qt::CaseInsensitive);
    // The named characters of the Western European range, "&uuml;" and kin.
    static const QStringList latin1 =
            u"nbsp iexcl cent pound curren yen brvbar sect uml copy ordf laquo not shy reg "
            "macr deg plusmn sup2 sup3 acute micro para middot cedil sup1 ordm raquo frac14 "
            "frac12 frac34 iquest Agrave Aacute Acirc Atilde Auml Aring AElig Ccedil Egrave "
            "Eacute Ecirc Euml Igrave Iacute Icirc Iuml ETH Ntilde Ograve Oacute Ocirc Otilde "
            "Ouml times Oslash Ugrave Uacute Ucirc Uuml Yacute THORN szlig agrave aacute acirc "
            "atilde auml aring aelig ccedil egrave eacute ecirc euml igrave iacute icirc iuml "
            "eth ntilde ograve oacute ocirc otilde ouml divide oslash ugrave uacute ucirc uuml "
            "yacute thorn yuml"_s.split(u' ');
    if (text.contains(u'&')) {
        for (qsizetype i = 0; i < latin1.size(); ++i)
            text.replace(u'&' + latin1[i] + u';', QString(QChar(char16_t(0xA0 + i))));
    }
    static const QRegularExpression numeric(u"&#(x?)([0-9a-fA-F]+);"_s);
    QRegularExpressionMatch m;
    qsizetype from = 0;
    while ((m = numeric.match(text, from)).hasMatch()) {
        bool ok = false;
        const uint code = m.captured(2).toUInt(&ok, m.captured(1).isEmpty() ? 10 : 16);
        const QString replacement = ok && code > 0 && code <= 0x10FFFF
                ? QString::fromUcs4(reinterpret_cast<const char32_t *>(&code), 1)
                : QString();
        text.replace(m.capturedStart(), m.capturedLength(), replacement);
        from = m.capturedStart() + replacement.size();
    }
    text.replace(u"&amp;"_s, u"&"_s, Qt::CaseInsensitive);
    return text.simplified();
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
        const bool needsQuotes =
                f.contains(u',') || f.contains(u'"') || f.contains(u'\n') || f.contains(u'\r');
        if (!needsQuotes) {
            out << f;
            continue;
        }
        QString escaped = f;
        escaped.replace(u"\""_s, u"\"\""_s);
        out << u'"' + escaped + u'"';
    }
    line = out.join(format == Format::Tsv ? u"\t"_s : u","_s);
    return true;
}

} // namespace cardtext
