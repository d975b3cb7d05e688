// SPDX-License-Identifier: GPL-3.0-or-later
// Progress files of both layouts on bytes and through the program's load and
// save.
//
// Properties: a file that reads is written back as cards that read the same;
// when the deck is written in the layout it came in (always for Windows-1252,
// and for UTF-8 when a text needs it) those are the bytes that were read (its
// count and cards; what follows the last card is not read). Loading it
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
    korva::Encoding layout = korva::Encoding::Cp1252;
    const bool read = ReadProgressImage(data, cards, &error, &used, &layout);
    QByteArray written;
    if (read) {
        Deck deck;
        deck.cards() = cards;
        fuzz::check(WriteProgressImage(deck, written, &error), "written");
        std::vector<Card> back;
        korva::Encoding backLayout = korva::Encoding::Cp1252;
        fuzz::check(ReadProgressImage(written, back, &error, nullptr, &backLayout)
                            && back.size() == cards.size(),
                    "reads back");
        for (size_t i = 0; i < back.size(); ++i) {
            const Card &a = back[i], &b = cards[i];
            fuzz::check(a.question == b.question && a.answer == b.answer && a.note == b.note
                                && a.spare == b.spare && a.trouble == b.trouble
                                && a.timesViewed == b.timesViewed && a.chapter == b.chapter,
                        "the same cards");
        }
        fuzz::check(layout == korva::Encoding::Utf8 || backLayout == korva::Encoding::Cp1252,
                    "Windows-1252 stays so");
        fuzz::check(backLayout != layout || written == data.first(used), "written back as read");
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
