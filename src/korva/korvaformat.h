// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "korva/bytestream.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QtGlobal>

#include <vector>

// The KORVA file layout: fixed records of 128 bytes. Record 1 is the header,
// records 2 .. count+2 hold entries 0 .. count, entry 0 being an always-present
// empty placeholder. Fields are packed without padding; the rest of a slot is
// zero filler.
//
// Texts are Windows-1252, unless the header's reserved text is exactly
// "utf-8": then every text of the file (description, title, reserved, keys,
// values and notes) is UTF-8. Lengths are byte lengths in either encoding.
namespace korva {

using namespace Qt::Literals::StringLiterals;

inline constexpr int kRecordLength = 128;
inline constexpr int kMaxEntries = 32767; // the count is a 16-bit signed field
inline constexpr qint16 kTrue = -1;       // 16-bit booleans, as stored
inline constexpr qint16 kFalse = 0;

struct Header
{
    QString description;
    qint32 format = 0;
    int count = 0; // stored as 16 bits
    QString title;
    QString reserved;
};

struct Entry
{
    QString key;
    qint16 isText = kFalse; // raw flag: -1 text entry, 0 number entry
    QString text;
    qint32 number = 0;
    QString note;

    bool operator==(const Entry &o) const
    {
        return key == o.key && isText == o.isText && text == o.text && number == o.number
                && note == o.note;
    }
};

// The header's reserved text that marks a file whose texts are UTF-8.
inline const QString kUtf8Marker = u"utf-8"_s;

// The encoding the file's texts are in, by its marker.
Encoding encodingOf(const Header &header);

// The encoding a save writes in: the marker's when the header has it (a
// UTF-8 file stays one), else Windows-1252 when it holds every text, else
// UTF-8, with the marker then written in place of the reserved text.
Encoding saveEncoding(const Header &header, const std::vector<Entry> &entries);

// Bytes a record needs in the encoding, or -1 when one of its texts cannot be
// stored at all.
qsizetype headerRecordSize(const Header &header, Encoding encoding);
qsizetype entryRecordSize(const Entry &entry, Encoding encoding);

// Largest file that can be a KORVA file: a header and 32,768 entry records.
inline constexpr qint64 kMaxFileSize = qint64(kRecordLength) * (kMaxEntries + 2);

// Parses a file image. With headerOnly only record 1 is read. An empty image is
// an empty database (all header fields zero), and so is a header of count 0
// without its placeholder. Bytes after entry count are ignored; a record cut
// short is damage, and so is a text that is not UTF-8 in a file marked as
// UTF-8. On failure returns false with a reason in error and leaves header
// and entries untouched.
bool parseFile(QByteArrayView data, bool headerOnly, Header &header, std::vector<Entry> &entries,
               QString *error);

// Serializes header and entries 0 .. n-1 (the header's count is written as
// n-1) in the encoding saveEncoding() chooses, which goes to written. Checks
// every limit first, in bytes of that encoding; on failure returns false with
// a reason and out unchanged.
bool serializeFile(const Header &header, const std::vector<Entry> &entries, QByteArray &out,
                   QString *error, Encoding *written = nullptr);

} // namespace korva
