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

Pairs Parse(QByteArrayView text)
{
    Pairs pairs;
    for (qsizetype start = 0; start < text.size();) {
        qsizetype end = text.indexOf('\n', start);
        if (end < 0)
            end = text.size();
        QByteArrayView line = text.sliced(start, end - start);
        start = end + 1;
        if (line.endsWith('\r'))
            line.chop(1);
        if (line.isEmpty() || line.startsWith('#'))
            continue;
        QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
        const QString decoded = utf8(line);
        const qsizetype equals = decoded.indexOf(u'=');
        if (utf8.hasError() || equals < 0)
            continue;
        const QString key = decoded.left(equals);
        QString value;
        if (!IsValidKey(key) || !unescape(QStringView(decoded).mid(equals + 1), value))
            continue;
        Set(pairs, key, value);
    }
    return pairs;
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
