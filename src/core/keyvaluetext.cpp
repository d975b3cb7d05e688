// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/keyvaluetext.h"

#include <QStringDecoder>

using namespace Qt::Literals::StringLiterals;

namespace keyvalue {

namespace {

bool unescape(QStringView text, QString &out)
{
    out.clear();
    out.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] != u'\\') {
            out += text[i];
            continue;
        }
        if (++i == text.size())
            return false;
        switch (text[i].unicode()) {
        case u'\\':
            out += u'\\';
            break;
        case u'n':
            out += u'\n';
            break;
        case u'r':
            out += u'\r';
            break;
        default:
            return false;
        }
    }
    return true;
}

QString escape(const QString &value)
{
    QString out;
    out.reserve(value.size());
    for (QChar c : value) {
        if (c == u'\\')
            out += u"\\\\"_s;
        else if (c == u'\n')
            out += u"\\n"_s;
        else if (c == u'\r')
            out += u"\\r"_s;
        else
            out += c;
    }
    return out;
}

} // namespace

bool IsValidKey(const QString &key)
{
    if (key.isEmpty())
        return false;
    for (QChar c : key) {
        const char16_t u = c.unicode();
        const bool plain = (u >= u'a' && u <= u'z') || (u >= u'A' && u <= u'Z')
                || (u >= u'0' && u <= u'9') || u == u'.' || u == u'_' || u == u'-';
        if (!plain)
            return false;
    }
    return true;
}

const QString *Find(const Pairs &pairs, const QString &key)
{
    for (const auto &[k, v] : pairs) {
        if (k == key)
            return &v;
    }
    return nullptr;
}

void Set(Pairs &pairs, const QString &key, const QString &value)
{
    for (auto &[k, v] : pairs) {
        if (k == key) {
            v = value;
            return;
        }
    }
    pairs.append({key, value});
}

namespace {

// Each line in turn: the pair it holds, or nothing for a line that is none
// (told by the result; blank lines and comments are skipped unseen).
template<typename Visit> void eachLine(QByteArrayView text, Visit visit)
{
    qsizetype number = 0;
    for (qsizetype start = 0; start < text.size();) {
        qsizetype end = text.indexOf('\n', start);
        if (end < 0)
            end = text.size();
        QByteArrayView line = text.sliced(start, end - start);
        start = end + 1;
        ++number;
        if (line.endsWith('\r'))
            line.chop(1);
        if (line.isEmpty() || line.startsWith('#'))
            continue;
        QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
        const QString decoded = utf8(line);
        const qsizetype equals = decoded.indexOf(u'=');
        const QString key = decoded.left(equals).trimmed(); // hand-written "key = value" too
        QString value;
        const bool pair = !utf8.hasError() && equals >= 0 && IsValidKey(key)
                && unescape(QStringView(decoded).mid(equals + 1), value);
        if (!visit(number, pair, key, value))
            return;
    }
}

} // namespace

Pairs Parse(QByteArrayView text)
{
    Pairs pairs;
    eachLine(text, [&pairs](qsizetype, bool pair, const QString &key, const QString &value) {
        if (pair)
            Set(pairs, key, value);
        return true;
    });
    return pairs;
}

qsizetype FirstBadLine(QByteArrayView text)
{
    qsizetype bad = 0;
    eachLine(text, [&bad](qsizetype number, bool pair, const QString &, const QString &) {
        if (!pair)
            bad = number;
        return pair;
    });
    return bad;
}

QByteArray Format(const Pairs &pairs, const QString &comment)
{
    QString text;
    if (!comment.isEmpty())
        text += u"# "_s + comment + u'\n';
    for (const auto &[key, value] : pairs)
        text += key + u'=' + escape(value) + u'\n';
    return text.toUtf8();
}

} // namespace keyvalue
