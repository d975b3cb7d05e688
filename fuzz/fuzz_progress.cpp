// Progress files on bytes and through the program's load and save.
//
// Properties: a file that reads is written back as the bytes that were read
// (its count and cards; what follows the last card is not read), loading it
// replaces the deck by its cards without a word, and saving that deck writes
// those bytes again. A file that does not read gets one box and leaves the
// deck as it was.
#include "cards/deck.h"
#include "cards/progressfile.h"
#include "core/programstate.h"
#include "fuzzsupport.h"
#include "recordingprompter.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *raw, size_t size)
{
    const QByteArrayView data(reinterpret_cast<const char *>(raw), qsizetype(size));
    std::vector<Card> cards;
    QString error;
    qsizetype used = 0;
    const bool read = ReadProgressImage(data, cards, &error, &used);
    QByteArray written;
    if (read) {
        Deck deck;
        deck.cards() = cards;
        fuzz::check(WriteProgressImage(deck, written, &error) && written == data.first(used),
                    "written back as read");
    }

    static fuzz::RecordingPrompter prompter;
    SetPrompter(&prompter);
    prompter.boxes.clear();
    g_Deck.Reset();
    g_Deck.Resize(1);
    g_Deck[0].question = QStringLiteral("kept");
    const QString path = fuzz::scratch(QStringLiteral("p.vxs"));
    fuzz::writeFile(path, data);
    prompter.fileAnswer = path;
    const bool loaded = modMain::LoadProgress();
    fuzz::check(loaded == read, "load and read agree");
    if (!loaded) {
        fuzz::check(prompter.boxes == QStringList(QStringLiteral("Damaged Progress File")), "told");
        fuzz::check(g_Deck.UBound() == 1 && g_Deck[0].question == QStringLiteral("kept"),
                    "deck kept");
    } else {
        fuzz::check(prompter.boxes.isEmpty(), "no box");
        fuzz::check(g_Deck.UBound() == int(cards.size()) - 1, "deck replaced");
        const QString again = fuzz::scratch(QStringLiteral("again.vxs"));
        prompter.fileAnswer = again;
        SaveProgress();
        fuzz::check(prompter.boxes.isEmpty() && fuzz::readFile(again) == written, "saved again");
    }
    fuzz::check(fuzz::readFile(path) == data, "file not touched");
    return 0;
}
