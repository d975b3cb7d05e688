// The KORVA reader on bytes and on a real file.
//
// Properties: mounting a file and parsing its bytes agree; a file that mounts
// is written back as exactly what was read: each of its count + 2 records
// keeps its field bytes where they were, padded with zeros to its slot, and
// nothing after the last counted record is kept; so a file in that form (as
// every save writes them) comes back byte for byte. A file that does not
// mount is left as it was.
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
    QByteArray image(slots * korva::kRecordLength, '\0');
    for (qsizetype k = 0; k < slots; ++k) {
        const qsizetype used = k == 0 ? korva::headerRecordSize(header)
                                      : korva::entryRecordSize(entries[size_t(k - 1)]);
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
    const bool fits = parsed && korva::serializeFile(header, entries, written, &error);
    if (fits) {
        fuzz::check(written == expectedImage(data, header, entries),
                    "image keeps the records read");
        korva::Header again;
        std::vector<korva::Entry> reread;
        fuzz::check(korva::parseFile(written, false, again, reread, &error) && reread == entries,
                    "image reads back the same");
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
