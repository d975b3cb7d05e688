// Feeds arbitrary bytes to the progress file reader. A file it accepts must
// write back byte for byte.
#include "cards/deck.h"
#include "cards/progressfile.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArrayView bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    std::vector<Card> cards;
    QString error;
    if (!ReadProgressImage(bytes, cards, &error))
        return 0;
    Deck deck;
    deck.cards() = std::move(cards);
    QByteArray written;
    if (!WriteProgressImage(deck, written, &error) || written != bytes)
        std::abort();
    return 0;
}
