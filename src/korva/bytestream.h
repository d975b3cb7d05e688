// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringView>
#include <QtGlobal>

// Little-endian reading and writing of the program's file encodings: 16- and
// 32-bit two's complement integers, and texts as a 16-bit unsigned byte length
// followed by that many bytes. Shared by KORVA records and progress files.
namespace korva {

// How a file's texts are stored. Windows-1252 is what every file held before
// and what every file that it can hold is still written in; UTF-8 is for
// files with a text that 1252 cannot hold, and each format marks such a file.
enum class Encoding { Cp1252, Utf8 };

// "Windows-1252" or "UTF-8", for messages and the editor's status bar.
QString encodingName(Encoding encoding);

// Bytes the text takes in the encoding, or -1 when it cannot be held there:
// a character outside Windows-1252, or (in UTF-8) a surrogate without its
// other half.
qsizetype encodedSize(QStringView text, Encoding encoding);

// Decodes stored bytes. Windows-1252 decodes anything; in UTF-8 a byte
// sequence that is not UTF-8 sets ok to false. What decodes is encoded back
// to the same bytes.
QString decodeText(QByteArrayView bytes, Encoding encoding, bool *ok);

// Reads from a fixed span of memory. A read past the end, or a text that is
// not in the reader's encoding, fails, leaves the reader failed and returns
// zero or an empty text, so a parser can read a whole record and check ok()
// once.
class ByteReader
{
public:
    explicit ByteReader(QByteArrayView data, Encoding encoding = Encoding::Cp1252)
        : m_data(data)
        , m_encoding(encoding)
    {}

    qint16 readInt16();
    qint32 readInt32();
    QString readText();
    // A text field's bytes, not decoded.
    QByteArrayView readBytes();

    bool ok() const { return m_ok; }
    // The failure was a text that is not in the reader's encoding.
    bool badText() const { return m_badText; }
    qsizetype position() const { return m_pos; }
    qsizetype remaining() const { return m_data.size() - m_pos; }

private:
    bool need(qsizetype bytes);

    QByteArrayView m_data;
    Encoding m_encoding;
    qsizetype m_pos = 0;
    bool m_ok = true;
    bool m_badText = false;
};

// Appends to a byte array. A text that the encoding cannot hold, or that is
// longer than 65,535 bytes, is not written: writeText() returns false and
// error() says why.
class ByteWriter
{
public:
    explicit ByteWriter(QByteArray &out, Encoding encoding = Encoding::Cp1252)
        : m_out(out)
        , m_encoding(encoding)
    {}

    void writeInt16(qint16 value);
    void writeInt32(qint32 value);
    bool writeText(const QString &text);

    const QString &error() const { return m_error; }
    // The last refused text had a character the encoding cannot hold (rather
    // than too many bytes).
    bool cannotHold() const { return m_cannotHold; }

private:
    QByteArray &m_out;
    Encoding m_encoding;
    QString m_error;
    bool m_cannotHold = false;
};

// Bytes that writeText() would take for the text (2 + length), or -1 when it
// cannot be written.
qsizetype textFieldSize(const QString &text, Encoding encoding = Encoding::Cp1252);

} // namespace korva
