// SPDX-License-Identifier: GPL-3.0-or-later
#include "korva/korvaformat.h"

#include "korva/bytestream.h"

using namespace Qt::Literals::StringLiterals;

namespace korva {

namespace {

// The header's texts are decoded once its reserved text, the last of them,
// has told the encoding.
bool readHeader(QByteArrayView slot, Header &h, bool *badText)
{
    ByteReader r(slot);
    const QByteArrayView description = r.readBytes();
    h.format = r.readInt32();
    h.count = r.readInt16();
    const QByteArrayView title = r.readBytes();
    const QByteArrayView reserved = r.readBytes();
    if (!r.ok())
        return false;
    const Encoding encoding =
            reserved == QByteArrayView("utf-8") ? Encoding::Utf8 : Encoding::Cp1252;
    bool d = false, t = false, v = false;
    h.description = decodeText(description, encoding, &d);
    h.title = decodeText(title, encoding, &t);
    h.reserved = decodeText(reserved, encoding, &v);
    *badText = !(d && t && v);
    return !*badText;
}

bool readEntry(QByteArrayView slot, Encoding encoding, Entry &e, bool *badText)
{
    ByteReader r(slot, encoding);
    e.key = r.readText();
    e.isText = r.readInt16();
    e.text = r.readText();
    e.number = r.readInt32();
    e.note = r.readText();
    *badText = r.badText();
    return r.ok();
}

bool holds(const Entry &e, Encoding encoding)
{
    return encodedSize(e.key, encoding) >= 0 && encodedSize(e.text, encoding) >= 0
            && encodedSize(e.note, encoding) >= 0;
}

QString sizeError(const QString &what, qsizetype size, Encoding encoding)
{
    if (size < 0)
        return what + u" holds a text that cannot be stored"_s;
    return what
            + u" needs %1 bytes, more than the %2 bytes of a record"_s.arg(size).arg(kRecordLength)
            + (encoding == Encoding::Utf8 ? u" (its texts in UTF-8)"_s : QString());
}

QString entryName(qsizetype index, const Entry &e)
{
    return u"entry %1 ('%2')"_s.arg(index).arg(e.key);
}

} // namespace

Encoding encodingOf(const Header &header)
{
    return header.reserved == kUtf8Marker ? Encoding::Utf8 : Encoding::Cp1252;
}

Encoding saveEncoding(const Header &header, const std::vector<Entry> &entries)
{
    if (encodingOf(header) == Encoding::Utf8)
        return Encoding::Utf8;
    for (const QString *text : {&header.description, &header.title, &header.reserved}) {
        if (encodedSize(*text, Encoding::Cp1252) < 0)
            return Encoding::Utf8;
    }
    for (const Entry &e : entries) {
        if (!holds(e, Encoding::Cp1252))
            return Encoding::Utf8;
    }
    return Encoding::Cp1252;
}

qsizetype headerRecordSize(const Header &h, Encoding encoding)
{
    const qsizetype d = textFieldSize(h.description, encoding),
                    t = textFieldSize(h.title, encoding), r = textFieldSize(h.reserved, encoding);
    if (d < 0 || t < 0 || r < 0)
        return -1;
    return d + 4 + 2 + t + r;
}

qsizetype entryRecordSize(const Entry &e, Encoding encoding)
{
    const qsizetype k = textFieldSize(e.key, encoding), t = textFieldSize(e.text, encoding),
                    n = textFieldSize(e.note, encoding);
    if (k < 0 || t < 0 || n < 0)
        return -1;
    return k + 2 + t + 4 + n;
}

bool parseFile(QByteArrayView data, bool headerOnly, Header &header, std::vector<Entry> &entries,
               QString *error)
{
    auto fail = [error](const QString &why) {
        if (error)
            *error = why;
        return false;
    };
    if (data.size() > kMaxFileSize)
        return fail(u"the file is larger than any KORVA file can be"_s);

    Header h;
    if (data.isEmpty()) {
        header = h;
        if (!headerOnly)
            entries.assign(1, Entry());
        return true;
    }
    bool badText = false;
    if (!readHeader(data.first(qMin<qsizetype>(data.size(), kRecordLength)), h, &badText))
        return fail(badText ? u"the header holds a text that is not UTF-8, though the file says "
                              "its texts are"_s
                            : u"the header record is damaged"_s);
    if (h.count < 0)
        return fail(u"the header gives an entry count of %1"_s.arg(h.count));
    if (headerOnly) {
        header = h;
        return true;
    }

    // Entries 0 .. count follow the header; what comes after them is not
    // read. A file that ends right after the header of an empty database
    // lacks only its empty placeholder.
    const Encoding encoding = encodingOf(h);
    std::vector<Entry> table(size_t(h.count) + 1);
    for (int i = 0; i <= h.count; ++i) {
        const qsizetype offset = qsizetype(i + 1) * kRecordLength;
        if (offset >= data.size()) {
            if (h.count == 0)
                break;
            return fail(u"the file ends after %1 of its %2 entries"_s.arg(i).arg(h.count));
        }
        const QByteArrayView slot =
                data.sliced(offset, qMin<qsizetype>(kRecordLength, data.size() - offset));
        if (!readEntry(slot, encoding, table[size_t(i)], &badText))
            return fail(badText ? u"entry %1 holds a text that is not UTF-8, though the file "
                                  "says its texts are"_s.arg(i)
                                : u"entry %1 is damaged"_s.arg(i));
    }
    header = h;
    entries = std::move(table);
    return true;
}

bool serializeFile(const Header &header, const std::vector<Entry> &entries, QByteArray &out,
                   QString *error, Encoding *written)
{
    auto fail = [error](const QString &why) {
        if (error)
            *error = why;
        return false;
    };
    if (entries.empty() || entries.size() - 1 > size_t(kMaxEntries))
        return fail(u"it would hold %1 entries, more than the %2 a file can hold"_s
                            .arg(qsizetype(entries.size()) - 1)
                            .arg(kMaxEntries));

    // A file turned into UTF-8 says so in its header; the marker takes the
    // place of whatever reserved text it had.
    const Encoding encoding = saveEncoding(header, entries);
    Header h = header;
    if (encoding == Encoding::Utf8)
        h.reserved = kUtf8Marker;

    // Check every record before writing any, so a refused save writes nothing.
    const qsizetype hs = headerRecordSize(h, encoding);
    if (hs < 0 || hs > kRecordLength)
        return fail(sizeError(u"the header"_s, hs, encoding));
    for (size_t i = 0; i < entries.size(); ++i) {
        const qsizetype es = entryRecordSize(entries[i], encoding);
        if (es < 0 || es > kRecordLength) {
            QByteArray scratch; // writing the texts names the character that cannot be stored

            ByteWriter w(scratch, encoding);
            const Entry &e = entries[i];
            if (es < 0 && !(w.writeText(e.key) && w.writeText(e.text) && w.writeText(e.note)))
                return fail(entryName(qsizetype(i), e) + u": "_s + w.error());
            return fail(sizeError(entryName(qsizetype(i), e), es, encoding));
        }
    }

    QByteArray image(qsizetype(entries.size() + 1) * kRecordLength, '\0');
    QByteArray record;
    record.reserve(kRecordLength);
    auto place = [&](qsizetype slot) {
        memcpy(image.data() + slot * kRecordLength, record.constData(), size_t(record.size()));
        record.clear();
    };
    {
        ByteWriter w(record, encoding);
        w.writeText(h.description);
        w.writeInt32(h.format);
        w.writeInt16(qint16(entries.size() - 1));
        w.writeText(h.title);
        w.writeText(h.reserved);
        place(0);
    }
    for (size_t i = 0; i < entries.size(); ++i) {
        const Entry &e = entries[i];
        ByteWriter w(record, encoding);
        w.writeText(e.key);
        w.writeInt16(e.isText);
        w.writeText(e.text);
        w.writeInt32(e.number);
        w.writeText(e.note);
        place(qsizetype(i) + 1);
    }
    out = std::move(image);
    if (written)
        *written = encoding;
    return true;
}

} // namespace korva
