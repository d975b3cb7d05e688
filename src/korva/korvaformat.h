#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QtGlobal>

#include <vector>

// The KORVA file layout: fixed records of 128 bytes. Record 1 is the header,
// records 2 .. count+2 hold entries 0 .. count, entry 0 being an always-present
// empty placeholder. Fields are packed without padding; the rest of a slot is
// zero filler.
namespace korva {

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

// Bytes a record needs, or -1 when one of its texts cannot be stored at all.
qsizetype headerRecordSize(const Header &header);
qsizetype entryRecordSize(const Entry &entry);

// Largest file that can be a KORVA file: a header and 32,768 entry records.
inline constexpr qint64 kMaxFileSize = qint64(kRecordLength) * (kMaxEntries + 2);

// Parses a file image. With headerOnly only record 1 is read. An empty image is
// an empty database (all header fields zero), and so is a header of count 0
// without its placeholder. Bytes after entry count are ignored; a record cut
// short is damage. On failure returns false with a reason in error and leaves
// header and entries untouched.
bool parseFile(QByteArrayView data, bool headerOnly, Header &header, std::vector<Entry> &entries,
               QString *error);

// Serializes header and entries 0 .. n-1 (the header's count is written as
// n-1). Checks every limit first; on failure returns false with a reason and
// out unchanged.
bool serializeFile(const Header &header, const std::vector<Entry> &entries, QByteArray &out,
                   QString *error);

} // namespace korva
