#include "korva/korvaformat.h"

#include "korva/bytestream.h"

using namespace Qt::Literals::StringLiterals;

namespace korva {

namespace {

bool readHeader(QByteArrayView slot, Header &h)
{
    ByteReader r(slot);
    h.description = r.readText();
    h.format = r.readInt32();
    h.count = r.readInt16();
    h.title = r.readText();
    h.reserved = r.readText();
    return r.ok();
}

bool readEntry(QByteArrayView slot, Entry &e)
{
    ByteReader r(slot);
    e.key = r.readText();
    e.isText = r.readInt16();
    e.text = r.readText();
    e.number = r.readInt32();
    e.note = r.readText();
    return r.ok();
}

QString sizeError(const QString &what, qsizetype size)
{
    if (size < 0)
        return what + u" holds a text that cannot be stored"_s;
    return what
            + u" needs %1 bytes, more than the %2 bytes of a record"_s.arg(size).arg(kRecordLength);
}

QString entryName(qsizetype index, const Entry &e)
{
    return u"entry %1 ('%2')"_s.arg(index).arg(e.key);
}

} // namespace

qsizetype headerRecordSize(const Header &h)
{
    const qsizetype d = textFieldSize(h.description), t = textFieldSize(h.title),
                    r = textFieldSize(h.reserved);
    if (d < 0 || t < 0 || r < 0)
        return -1;
    return d + 4 + 2 + t + r;
}

qsizetype entryRecordSize(const Entry &e)
{
    const qsizetype k = textFieldSize(e.key), t = textFieldSize(e.text), n = textFieldSize(e.note);
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
    if (!readHeader(data.first(qMin<qsizetype>(data.size(), kRecordLength)), h))
        return fail(u"the header record is damaged"_s);
    if (h.count < 0)
        return fail(u"the header gives an entry count of %1"_s.arg(h.count));
    if (headerOnly) {
        header = h;
        return true;
    }

    // Entries 0 .. count follow the header; what comes after them is not
    // read. A file that ends right after the header of an empty database
    // lacks only its empty placeholder.
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
        if (!readEntry(slot, table[size_t(i)]))
            return fail(u"entry %1 is damaged"_s.arg(i));
    }
    header = h;
    entries = std::move(table);
    return true;
}

bool serializeFile(const Header &header, const std::vector<Entry> &entries, QByteArray &out,
                   QString *error)
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

    // Check every record before writing any, so a refused save writes nothing.
    const qsizetype hs = headerRecordSize(header);
    if (hs < 0 || hs > kRecordLength)
        return fail(sizeError(u"the header"_s, hs));
    for (size_t i = 0; i < entries.size(); ++i) {
        const qsizetype es = entryRecordSize(entries[i]);
        if (es < 0 || es > kRecordLength) {
            QByteArray scratch; // writing the texts names the character that cannot be stored

            ByteWriter w(scratch);
            const Entry &e = entries[i];
            if (es < 0 && !(w.writeText(e.key) && w.writeText(e.text) && w.writeText(e.note)))
                return fail(entryName(qsizetype(i), e) + u": "_s + w.error());
            return fail(sizeError(entryName(qsizetype(i), e), es));
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
        ByteWriter w(record);
        w.writeText(header.description);
        w.writeInt32(header.format);
        w.writeInt16(qint16(entries.size() - 1));
        w.writeText(header.title);
        w.writeText(header.reserved);
        place(0);
    }
    for (size_t i = 0; i < entries.size(); ++i) {
        const Entry &e = entries[i];
        ByteWriter w(record);
        w.writeText(e.key);
        w.writeInt16(e.isText);
        w.writeText(e.text);
        w.writeInt32(e.number);
        w.writeText(e.note);
        place(qsizetype(i) + 1);
    }
    out = std::move(image);
    return true;
}

} // namespace korva
