// SPDX-License-Identifier: GPL-3.0-or-later
// The KORVA reader on bytes and on a real file, in both encodings.
//
// Properties: mounting a file and parsing its bytes agree; a file that mounts
// is written back in its own encoding as exactly what was read: each of its
// count + 2 records keeps its field bytes where they were, padded with zeros
// to its slot, and nothing after the last counted record is kept; so a file
// in that form (as every save writes them) comes back byte for byte. A file
// that does not mount is left as it was. A Windows-1252 file that gets a
// text 1252 cannot hold is written as UTF-8 with the marker and reads back
// the same.
#include "fuzzsupport.h"
#include "korva/ikorvalite.h"
#include "korva/korvahooks.h"

#include <cstdint>

namespace {

// The bytes a save of what parses from data must write.
QByteArray expectedImage(QByteArrayView data, const korva::Header &header,
                         const std::vector<korva::Entry> &entries)
{
    const qsizetype slots = qsizetype(entries.size()) + 1;
    const korva::Encoding encoding = korva::encodingOf(header);
    QByteArray image(slots * korva::kRecordLength, '\0');
    for (qsizetype k = 0; k < slots; ++k) {
        const qsizetype used = k == 0 ? korva::headerRecordSize(header, encoding)
                                      : korva::entryRecordSize(entries[size_t(k - 1)], encoding);
        const qsizetype at = k * korva::kRecordLength;
        if (at < data.size())
            memcpy(image.data() + at, data.data() + at, size_t(qMin(used, data.size() - at)));
    }
    return image;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *raw, size_t size)
{
    const QByteArrayView data(reinterpret_cast<const char *>(raw), qsizetype(size));
    korva::setHooks({});

    korva::Header header;
    std::vector<korva::Entry> entries;
    QString error;
    const bool parsed = korva::parseFile(data, false, header, entries, &error);
    QByteArray written;
    korva::Encoding encoding = korva::Encoding::Cp1252;
    const bool fits = parsed && korva::serializeFile(header, entries, written, &error, &encoding);
    if (fits) {
        fuzz::check(encoding == korva::encodingOf(header), "kept in its encoding");
        fuzz::check(written == expectedImage(data, header, entries),
                    "image keeps the records read");
        korva::Header again;
        std::vector<korva::Entry> reread;
        fuzz::check(korva::parseFile(written, false, again, reread, &error) && reread == entries,
                    "image reads back the same");
    }
    if (parsed && entries.size() > 1) {
        // A word in another script turns the file into UTF-8, whole.
        std::vector<korva::Entry> turned = entries;
        turned.back().note += QStringLiteral("\u0416");
        QByteArray image;
        korva::Header again;
        std::vector<korva::Entry> reread;
        if (korva::serializeFile(header, turned, image, &error, &encoding)) {
            fuzz::check(encoding == korva::Encoding::Utf8, "turned into UTF-8");
            fuzz::check(korva::parseFile(image, false, again, reread, &error) && reread == turned
                                && again.reserved == korva::kUtf8Marker
                                && again.title == header.title
                                && again.description == header.description,
                        "UTF-8 image reads back the same, marked");
        }
    }

    const QString path = fuzz::scratch(QStringLiteral("f.zel"));
    fuzz::writeFile(path, data);
    {
        ikorvalite db;
        const bool mounted = db.Mount(path, false);
        fuzz::check(mounted == parsed, "mount and parse agree");
        if (mounted) {
            fuzz::check(db.Count() == db.LastIndex(), "count");
            const bool saved = db.Save();
            fuzz::check(saved == fits, "save and serialize agree");
            fuzz::check(fuzz::readFile(path) == (saved ? written : data.toByteArray()),
                        "saved as read, or not touched");
        } else {
            fuzz::check(fuzz::readFile(path) == data, "refused file not touched");
        }
    }
    {
        ikorvalite db;
        const bool mounted = db.Mount(path, true);
        korva::Header h;
        std::vector<korva::Entry> e;
        const bool headerParsed = korva::parseFile(fuzz::readFile(path), true, h, e, &error);
        fuzz::check(mounted == headerParsed, "header-only mount and parse agree");
        fuzz::check(!mounted || (db.Title() == h.title && db.Count() == h.count), "header read");
    }
    return 0;
}
