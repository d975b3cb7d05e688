// Feeds arbitrary bytes to the card list reader of the editor's import, as a
// .txt (layout sniffed) and as a .csv.
#include "cardtext.h"

#include <QString>

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    for (const QString name : {QStringLiteral("cards.txt"), QStringLiteral("cards.csv")}) {
        cardtext::Layout layout = cardtext::DetectLayout(bytes, name);
        layout.html = true;
        std::vector<cardtext::Row> rows;
        QString error;
        cardtext::Parse(bytes, layout, rows, &error);
    }
    return 0;
}
