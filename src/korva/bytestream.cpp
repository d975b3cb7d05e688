#include "korva/bytestream.h"

#include "korva/cp1252.h"

#include <QtEndian>

using namespace Qt::Literals::StringLiterals;

namespace korva {

namespace {
constexpr qsizetype kMaxTextBytes = 0xFFFF;
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

QString ByteReader::readText()
{
    if (!need(2))
        return {};
    const quint16 len = qFromLittleEndian<quint16>(m_data.data() + m_pos);
    if (remaining() - 2 < len) {
        m_ok = false;
        return {};
    }
    m_pos += 2;
    const QString text = cp1252::decode(m_data.sliced(m_pos, len));
    m_pos += len;
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
    if (text.size() > kMaxTextBytes) {
        m_error = u"a text of %1 bytes is longer than the 65,535 bytes a text field holds"_s.arg(
                text.size());
        return false;
    }
    // Encoded straight into place; taken back if a character cannot be held.
    const qsizetype at = m_out.size();
    m_out.resize(at + 2 + text.size());
    char *dst = m_out.data() + at;
    qToLittleEndian(quint16(text.size()), dst);
    dst += 2;
    const QChar *src = text.constData();
    for (qsizetype i = 0; i < text.size(); ++i) {
        const int b = cp1252::encodeChar(src[i].unicode());
        if (b < 0) {
            m_out.resize(at);
            m_error = u"the character "_s + cp1252::describeChar(text, i)
                    + u" cannot be stored in the file's 8-bit character set"_s;
            return false;
        }
        dst[i] = char(b);
    }
    return true;
}

qsizetype textFieldSize(const QString &text)
{
    const qsizetype len = cp1252::encodedLength(text);
    if (len < 0 || len > kMaxTextBytes)
        return -1;
    return 2 + len;
}

} // namespace korva
