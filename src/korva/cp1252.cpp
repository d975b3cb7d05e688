// SPDX-License-Identifier: GPL-3.0-or-later
#include "korva/cp1252.h"

#include <array>

using namespace Qt::Literals::StringLiterals;

namespace cp1252 {

namespace {

// Unicode for the bytes 0x80..0x9F; undefined bytes map to their C1 control.
constexpr std::array<char16_t, 32> kHighControls = {
        0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
        0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
        0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

} // namespace

QString decode(QByteArrayView bytes)
{
    QString out(bytes.size(), Qt::Uninitialized);
    char16_t *dst = reinterpret_cast<char16_t *>(out.data());
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        const auto b = static_cast<unsigned char>(bytes[i]);
        dst[i] = (b >= 0x80 && b <= 0x9F) ? kHighControls[b - 0x80] : char16_t(b);
    }
    return out;
}

int encodeChar(char16_t ch)
{
    if (ch < 0x80 || (ch >= 0xA0 && ch <= 0xFF))
        return ch;
    for (int i = 0; i < int(kHighControls.size()); ++i) {
        if (kHighControls[i] == ch)
            return 0x80 + i;
    }
    return -1;
}

qsizetype encodedLength(QStringView text)
{
    for (const QChar c : text) {
        if (encodeChar(c.unicode()) < 0)
            return -1;
    }
    return text.size();
}

QString describeChar(QStringView text, qsizetype index)
{
    if (index < 0 || index >= text.size())
        return {};
    char32_t code = text[index].unicode();
    qsizetype len = 1;
    if (text[index].isHighSurrogate() && index + 1 < text.size()
        && text[index + 1].isLowSurrogate()) {
        code = QChar::surrogateToUcs4(text[index], text[index + 1]);
        len = 2;
    }
    const QString hex = QString::number(uint(code), 16).toUpper().rightJustified(4, u'0');
    const QString shown = QChar::isPrint(code) ? text.mid(index, len).toString() : QString();
    if (shown.isEmpty())
        return u"U+"_s + hex;
    return u"'"_s + shown + u"' (U+"_s + hex + u")"_s;
}

} // namespace cp1252
