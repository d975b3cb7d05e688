// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <QtEndian>

// Builds file bytes by hand, field by field, so that file formats are checked
// against layouts written out in the tests rather than against the code's own
// writer.
namespace bytes {

inline QByteArray i16(qint16 v)
{
    char b[2];
    qToLittleEndian(v, b);
    return QByteArray(b, 2);
}

inline QByteArray i32(qint32 v)
{
    char b[4];
    qToLittleEndian(v, b);
    return QByteArray(b, 4);
}

// A text field from Latin-1 bytes (the same as Windows-1252 below 0x80 and
// from 0xA0 up).
inline QByteArray text(const QByteArray &latin1)
{
    return i16(qint16(latin1.size())) + latin1;
}

// Pads one record to its 128-byte slot with zeros.
inline QByteArray record(const QByteArray &fields)
{
    QByteArray r = fields;
    r.append(QByteArray(qMax<qsizetype>(0, 128 - r.size()), '\0'));
    return r;
}

inline QByteArray header(const QByteArray &description, qint32 format, qint16 count, const QByteArray &title = {},
                         const QByteArray &reserved = {})
{
    return record(text(description) + i32(format) + i16(count) + text(title) + text(reserved));
}

inline QByteArray entry(const QByteArray &key, qint16 isText, const QByteArray &textValue, qint32 number,
                        const QByteArray &note)
{
    return record(text(key) + i16(isText) + text(textValue) + i32(number) + text(note));
}

inline QByteArray placeholder()
{
    return entry({}, 0, {}, 0, {});
}

} // namespace bytes
