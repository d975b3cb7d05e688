// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringView>

// Texts in KORVA files, progress files and chapter files are 8-bit Windows-1252.
// Decoding is total: the five bytes that 1252 leaves undefined (0x81, 0x8D, 0x8F,
// 0x90, 0x9D) come back as the C1 control of the same number, as Windows does, so
// any file read and written back keeps its bytes. Encoding never guesses: a
// character that 1252 cannot hold is reported, not replaced.
namespace cp1252 {

QString decode(QByteArrayView bytes);

// The byte for one UTF-16 unit, or -1 when 1252 has no such character.
int encodeChar(char16_t ch);

// Length in bytes of the encoded text, or -1 when a character cannot be held.
qsizetype encodedLength(QStringView text);

// "'Ж' (U+0416)": how messages name the character at index (whole surrogate pairs).
QString describeChar(QStringView text, qsizetype index);

} // namespace cp1252
