#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QtGlobal>

// Little-endian reading and writing of the program's file encodings: 16- and
// 32-bit two's complement integers, and texts as a 16-bit unsigned byte length
// followed by that many Windows-1252 bytes. Shared by KORVA records and
// progress files.
namespace korva {

// Reads from a fixed span of memory. A read past the end fails, leaves the
// reader failed and returns zero or an empty text, so a parser can read a whole
// record and check ok() once.
class ByteReader
{
public:
    explicit ByteReader(QByteArrayView data) : m_data(data) {}

    qint16 readInt16();
    qint32 readInt32();
    QString readText();

    bool ok() const { return m_ok; }
    qsizetype position() const { return m_pos; }
    qsizetype remaining() const { return m_data.size() - m_pos; }

private:
    bool need(qsizetype bytes);

    QByteArrayView m_data;
    qsizetype m_pos = 0;
    bool m_ok = true;
};

// Appends to a byte array. A text that 1252 cannot hold, or that is longer than
// 65,535 bytes, is not written: writeText() returns false and error() says why.
class ByteWriter
{
public:
    explicit ByteWriter(QByteArray &out) : m_out(out) {}

    void writeInt16(qint16 value);
    void writeInt32(qint32 value);
    bool writeText(const QString &text);

    const QString &error() const { return m_error; }

private:
    QByteArray &m_out;
    QString m_error;
};

// Bytes that writeText() would take for the text (2 + length), or -1 when it
// cannot be written.
qsizetype textFieldSize(const QString &text);

} // namespace korva
