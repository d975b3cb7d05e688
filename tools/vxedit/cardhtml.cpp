// SPDX-License-Identifier: GPL-3.0-or-later
#include "cardtext.h"

#include <QHash>

using namespace Qt::Literals::StringLiterals;

// HTML fields of an import, made plain in passes over the text that each look
// at every character once: tags first (those that break a line become a
// blank), then entities. What an entity gives is not read again, so
// "&lt;b&gt;" stays the text "<b>".

namespace cardtext {

namespace {

bool isAsciiSpace(QChar c)
{
    return c == u' ' || c == u'\t' || c == u'\n' || c == u'\x0B' || c == u'\f' || c == u'\r';
}

bool isWordChar(QChar c)
{
    const char16_t u = c.unicode();
    return (u >= u'a' && u <= u'z') || (u >= u'A' && u <= u'Z') || (u >= u'0' && u <= u'9')
            || u == u'_';
}

// Where the next '>' at or after from is, or -1; moves forward only, so a
// pass that asks at rising positions scans the text once.
class NextClose
{
public:
    explicit NextClose(const QString &text) : m_text(text) {}
    qsizetype at(qsizetype from)
    {
        if (!m_searched || (m_at >= 0 && m_at < from))
            m_at = m_text.indexOf(u'>', from);
        m_searched = true;
        return m_at;
    }

private:
    const QString &m_text;
    qsizetype m_at = -1;
    bool m_searched = false;
};

// <br ...>, </div>, </p>, </li>: the tag name right after "<" and blanks,
// ending where a word ends.
bool isBreakTag(const QString &text, qsizetype open, qsizetype close)
{
    qsizetype i = open + 1;
    while (i < close && isAsciiSpace(text[i]))
        ++i;
    for (const QStringView name : {u"br", u"/div", u"/p", u"/li"}) {
        if (close - i < name.size())
            continue;
        if (QStringView(text).mid(i, name.size()).compare(name, Qt::CaseInsensitive) != 0)
            continue;
        const qsizetype after = i + name.size();
        if (after == close || !isWordChar(text[after]))
            return true;
    }
    return false;
}

// One pass over the tags: with breaks true the line-breaking ones become a
// blank and the rest stay; with breaks false every tag goes.
QString replaceTags(const QString &text, bool breaks)
{
    QString out;
    out.reserve(text.size());
    NextClose next(text);
    qsizetype i = 0;
    while (i < text.size()) {
        const QChar c = text[i];
        const qsizetype close = c == u'<' ? next.at(i + 1) : -1;
        if (close < 0) {
            out += c;
            ++i;
            continue;
        }
        if (!breaks) {
            i = close + 1;
        } else if (isBreakTag(text, i, close)) {
            out += u' ';
            i = close + 1;
        } else {
            out += c;
            ++i;
        }
    }
    return out;
}

const QHash<QString, QChar> &latin1Names()
{
    // The named characters of the Western European range, "&uuml;" and kin,
    // in the order of their code from U+00A0.
    static const QHash<QString, QChar> names = [] {
        const QStringList list =
                u"nbsp iexcl cent pound curren yen brvbar sect uml copy ordf laquo not shy reg "
                "macr deg plusmn sup2 sup3 acute micro para middot cedil sup1 ordm raquo frac14 "
                "frac12 frac34 iquest Agrave Aacute Acirc Atilde Auml Aring AElig Ccedil Egrave "
                "Eacute Ecirc Euml Igrave Iacute Icirc Iuml ETH Ntilde Ograve Oacute Ocirc Otilde "
                "Ouml times Oslash Ugrave Uacute Ucirc Uuml Yacute THORN szlig agrave aacute acirc "
                "atilde auml aring aelig ccedil egrave eacute ecirc euml igrave iacute icirc iuml "
                "eth ntilde ograve oacute ocirc otilde ouml divide oslash ugrave uacute ucirc uuml "
                "yacute thorn yuml"_s.split(u' ');
        QHash<QString, QChar> h;
        for (qsizetype i = 0; i < list.size(); ++i)
            h.insert(list[i], QChar(char16_t(0xA0 + i)));
        return h;
    }();
    return names;
}

int hexValue(QChar c)
{
    const char16_t u = c.unicode();
    if (u >= u'0' && u <= u'9')
        return u - u'0';
    if (u >= u'a' && u <= u'f')
        return u - u'a' + 10;
    if (u >= u'A' && u <= u'F')
        return u - u'A' + 10;
    return -1;
}

// "&#65;" or "&#x41;" at i: its length, with the character (empty for a code
// that is none) in out; 0 when there is no such entity at i.
qsizetype numericEntity(const QString &text, qsizetype i, QString &out)
{
    qsizetype j = i + 2;
    if (j > text.size() || text[i + 1] != u'#')
        return 0;
    const bool hex = j < text.size() && text[j] == u'x';
    if (hex)
        ++j;
    const qsizetype digits = j;
    while (j < text.size() && hexValue(text[j]) >= 0)
        ++j;
    if (j == digits || j >= text.size() || text[j] != u';')
        return 0;
    // A decimal entity with hex letters, or a number past every code, stands
    // for nothing.
    quint64 code = 0;
    bool ok = true;
    for (qsizetype k = digits; k < j && ok; ++k) {
        const int v = hexValue(text[k]);
        ok = hex || v < 10;
        code = code * (hex ? 16 : 10) + quint64(v);
        ok = ok && code <= 0x10FFFF;
    }
    out.clear();
    if (ok && code > 0) {
        const char32_t c = char32_t(code);
        out = QString::fromUcs4(&c, 1);
    }
    return j + 1 - i;
}

QString decodeEntities(const QString &text)
{
    static const std::pair<QStringView, QChar> kSimple[] = {
            {u"&nbsp;", u' '}, {u"&lt;", u'<'},    {u"&gt;", u'>'},  {u"&quot;", u'"'},
            {u"&#39;", u'\''}, {u"&apos;", u'\''}, {u"&amp;", u'&'},
    };
    QString out;
    out.reserve(text.size());
    QString numeric;
    qsizetype i = 0;
    while (i < text.size()) {
        const qsizetype amp = text.indexOf(u'&', i);
        if (amp < 0) {
            out += QStringView(text).mid(i);
            break;
        }
        out += QStringView(text).mid(i, amp - i);
        i = amp;
        bool done = false;
        for (const auto &[entity, character] : kSimple) {
            if (QStringView(text).mid(i, entity.size()).compare(entity, Qt::CaseInsensitive) == 0) {
                out += character;
                i += entity.size();
                done = true;
                break;
            }
        }
        if (done)
            continue;
        // The longest name has six letters.
        qsizetype semicolon = i + 1;
        while (semicolon < text.size() && semicolon - i <= 7 && text[semicolon] != u';')
            ++semicolon;
        if (semicolon < text.size() && text[semicolon] == u';' && semicolon > i + 1) {
            const auto named = latin1Names().constFind(text.mid(i + 1, semicolon - i - 1));
            if (named != latin1Names().cend()) {
                out += *named;
                i = semicolon + 1;
                continue;
            }
        }
        if (const qsizetype length = numericEntity(text, i, numeric)) {
            out += numeric;
            i += length;
            continue;
        }
        out += u'&';
        ++i;
    }
    return out;
}

} // namespace

QString HtmlToText(const QString &html)
{
    if (!html.contains(u'<') && !html.contains(u'&'))
        return html;
    QString text = html;
    if (text.contains(u'<'))
        text = replaceTags(replaceTags(text, true), false);
    if (text.contains(u'&'))
        text = decodeEntities(text);
    return text.simplified();
}

} // namespace cardtext
