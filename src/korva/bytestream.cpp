// SPDX-License-Identifier: GPL-3.0-or-later
#include "korva/bytestream.h"

#include "korva/cp1252.h"

#include <QStringDecoder>
#include <QtEndian>

using namespace Qt::Literals::StringLiterals;

namespace korva {

namespace {

constexpr qsizetype kMaxTextBytes = 0xFFFF;

// Bytes of the text in UTF-8, or the index of a surrogate without its other
// half as -(index + 1).
qsizetype utf8Size(QStringView text)
{
    qsizetype bytes = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t c = text[i].unicode();
        if (c < 0x80) {
            bytes += 1;
        } else if (c < 0x800) {
            bytes += 2;
        } else if (QChar::isHighSurrogate(c) && i + 1 < text.size()
                   && text[i + 1].isLowSurrogate()) {
            bytes += 4;
            ++i;
        } else if (QChar::isSurrogate(c)) {
            return -(i + 1);
        } else {
            bytes += 3;
        }
    }
    return bytes;
}

} // namespace

QString encodingName(Encoding encoding)
{
    return encoding == Encoding::Utf8 ? u"UTF-8"_s : u"Windows-1252"_s;
}

qsizetype encodedSize(QStringView text, Encoding encoding)
{
    if (encoding == Encoding::Cp1252)
        return cp1252::encodedLength(text);
    const qsizetype size = utf8Size(text);
    return size < 0 ? -1 : size;
}

QString decodeText(QByteArrayView bytes, Encoding encoding, bool *ok)
{
    if (encoding == Encoding::Cp1252) {
        *ok = true;
        return cp1252::decode(bytes);
    }
    // A byte-order mark at the start is a character of the text like any
    // other: it is kept, so the text is written back as it came.
    QStringDecoder decoder(QStringDecoder::Utf8,
                           QStringDecoder::Flag::Stateless
                                   | QStringDecoder::Flag::ConvertInitialBom);
    QString text = decoder.decode(bytes);
    *ok = !decoder.hasError();
    return *ok ? text : QString();
}

bool ByteReader::need(qsizetype bytes)
{
    if (!m_ok || remaining() < bytes) {
        m_ok = false;
        return false;
    }
    return true;
}

qint16 ByteReader::readInt16()
{
    if (!need(2))
        return 0;
    const qint16 v = qFromLittleEndian<qint16>(m_data.data() + m_pos);
    m_pos += 2;
    return v;
}

qint32 ByteReader::readInt32()
{
    if (!need(4))
        return 0;
    const qint32 v = qFromLittleEndian<qint32>(m_data.data() + m_pos);
    m_pos += 4;
    return v;
}

QByteArrayView ByteReader::readBytes()
{
    if (!need(2))
        return {};
    const quint16 len = qFromLittleEndian<quint16>(m_data.data() + m_pos);
    if (remaining() - 2 < len) {
        m_ok = false;
        return {};
    }
    m_pos += 2;
    const QByteArrayView bytes = m_data.sliced(m_pos, len);
    m_pos += len;
    return bytes;
}

QString ByteReader::readText()
{
    const QByteArrayView bytes = readBytes();
    if (!m_ok)
        return {};
    bool decoded = false;
    QString text = decodeText(bytes, m_encoding, &decoded);
    if (!decoded) {
        m_ok = false;
        m_badText = true;
    }
    return text;
}

void ByteWriter::writeInt16(qint16 value)
{
    char buf[2];
    qToLittleEndian(value, buf);
    m_out.append(buf, 2);
}

void ByteWriter::writeInt32(qint32 value)
{
    char buf[4];
    qToLittleEndian(value, buf);
    m_out.append(buf, 4);
}

bool ByteWriter::writeText(const QString &text)
{
    m_cannotHold = false;
    auto tooLong = [this](qsizetype bytes) {
        m_error = u"a text of %1 bytes is longer than the 65,535 bytes a text field holds"_s.arg(
                bytes);
        return false;
    };
    const qsizetype at = m_out.size();
    char length[2];
    if (m_encoding == Encoding::Utf8) {
        const qsizetype size = utf8Size(text);
        if (size < 0) {
            m_cannotHold = true;
            m_error = u"the text holds "_s + cp1252::describeChar(text, -size - 1)
                    + u", half of a character without its other half, which cannot be stored"_s;
            return false;
        }
        if (size > kMaxTextBytes)
            return tooLong(size);
        qToLittleEndian(quint16(size), length);
        m_out.append(length, 2);
        m_out.append(text.toUtf8());
        return true;
    }

    if (text.size() > kMaxTextBytes)
        return tooLong(text.size());
    // Encoded straight into place; taken back if a character cannot be held.
    m_out.resize(at + 2 + text.size());
    char *dst = m_out.data() + at;
    qToLittleEndian(quint16(text.size()), dst);
    dst += 2;
    const QChar *src = text.constData();
    for (qsizetype i = 0; i < text.size(); ++i) {
        const int b = cp1252::encodeChar(src[i].unicode());
        if (b < 0) {
            m_out.resize(at);
            m_cannotHold = true;
            m_error = u"the character "_s + cp1252::describeChar(text, i)
                    + u" cannot be stored in the file's 8-bit character set"_s;
            return false;
        }
        dst[i] = char(b);
    }
    return true;
}

qsizetype textFieldSize(const QString &text, Encoding encoding)
{
    const qsizetype len = encodedSize(text, encoding);
    if (len < 0 || len > kMaxTextBytes)
        return -1;
    return 2 + len;
}

} // namespace korva
