// Feeds arbitrary bytes to the KORVA file reader. Whatever it accepts must
// write back to the very same entries, and nothing may crash or run away.
#include "korva/korvaformat.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArrayView bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    for (bool headerOnly : {false, true}) {
        korva::Header header;
        std::vector<korva::Entry> entries;
        QString error;
        if (!korva::parseFile(bytes, headerOnly, header, entries, &error) || headerOnly)
            continue;
        QByteArray written;
        if (!korva::serializeFile(header, entries, written, &error))
            continue; // a record too long for its slot is refused, not written
        korva::Header again;
        std::vector<korva::Entry> reread;
        if (!korva::parseFile(written, false, again, reread, &error) || reread != entries)
            std::abort();
    }
    return 0;
}
