// SPDX-License-Identifier: GPL-3.0-or-later
#include "korvajson.h"

#include "korva/ikorvalite.h"

using namespace Qt::Literals::StringLiterals;

namespace {

QString jsonString(const QString &text)
{
    QString out;
    out.reserve(text.size() + 2);
    out += u'"';
    for (const QChar c : text) {
        switch (c.unicode()) {
        case u'"':
            out += u"\\\""_s;
            break;
        case u'\\':
            out += u"\\\\"_s;
            break;
        case u'\n':
            out += u"\\n"_s;
            break;
        case u'\r':
            out += u"\\r"_s;
            break;
        case u'\t':
            out += u"\\t"_s;
            break;
        default:
            if (c.unicode() < 0x20 || (c.unicode() >= 0x7F && c.unicode() < 0xA0))
                out += u"\\u"_s + QString::number(c.unicode(), 16).rightJustified(4, u'0');
            else
                out += c;
        }
    }
    out += u'"';
    return out;
}

} // namespace

QByteArray KorvaToJson(const ikorvalite &db)
{
    const korva::Header &h = db.Header();
    QString out;
    out += u"{\n"_s;
    out += u"  \"description\": "_s + jsonString(h.description) + u",\n"_s;
    out += u"  \"format\": "_s + QString::number(h.format) + u",\n"_s;
    out += u"  \"count\": "_s + QString::number(h.count) + u",\n"_s;
    out += u"  \"title\": "_s + jsonString(h.title) + u",\n"_s;
    out += u"  \"reserved\": "_s + jsonString(h.reserved) + u",\n"_s;
    out += u"  \"encoding\": "_s + jsonString(korva::encodingName(db.Encoding())) + u",\n"_s;
    out += u"  \"entries\": ["_s;
    const auto &entries = db.Entries();
    for (size_t i = 0; i < entries.size(); ++i) {
        const korva::Entry &e = entries[i];
        out += i == 0 ? u"\n    "_s : u",\n    "_s;
        out += u"{\"key\": "_s + jsonString(e.key) + u", \"is_text\": "_s
                + QString::number(e.isText) + u", \"text\": "_s + jsonString(e.text)
                + u", \"number\": "_s + QString::number(e.number) + u", \"note\": "_s
                + jsonString(e.note) + u'}';
    }
    out += u"\n  ]\n}\n"_s;
    return out.toUtf8();
}
