// SPDX-License-Identifier: GPL-3.0-or-later
// Chapter files loaded into the deck, as the chapter window does.
//
// Properties: a chapter that mounts with at least two cards is appended whole
// (escapes replaced in question and answer, the note as it is) without a
// word; anything else gets one box and leaves the deck as it was. The file is
// never written.
#include "cards/deck.h"
#include "core/programstate.h"
#include "fuzzsupport.h"
#include "korva/korvaformat.h"
#include "recordingprompter.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *raw, size_t size)
{
    const QByteArrayView data(reinterpret_cast<const char *>(raw), qsizetype(size));
    static fuzz::RecordingPrompter prompter;
    SetPrompter(&prompter);
    prompter.boxes.clear();
    g_TroubleDefaultCurrent = size % 2 == 1;
    g_Deck.Reset();
    g_Deck.Resize(1);
    g_Deck[0].question = QStringLiteral("kept");

    const QString path = fuzz::scratch(QStringLiteral("c.zel"));
    fuzz::writeFile(path, data);
    LoadChapterFile(path, QStringLiteral("fuzz"));

    korva::Header header;
    std::vector<korva::Entry> entries;
    QString error;
    const bool parsed = korva::parseFile(data, false, header, entries, &error);
    const int last = parsed ? int(entries.size()) - 1 : 0;
    fuzz::check(g_Deck[0].question == QStringLiteral("kept"), "loaded cards come after");
    if (!parsed || last < 2 || 1 + last > Deck::kMaxCards) {
        fuzz::check(prompter.boxes.size() == 1, "one box");
        fuzz::check(g_Deck.UBound() == 1, "deck kept");
    } else {
        fuzz::check(prompter.boxes.isEmpty(), "no box");
        fuzz::check(g_Deck.UBound() == 1 + last, "every card");
        for (int i = 1; i <= last; ++i) {
            const Card &c = g_Deck[i];
            QString question = entries[size_t(i)].key, answer = entries[size_t(i)].text;
            ReplaceUmlautEscapes(question);
            ReplaceUmlautEscapes(answer);
            fuzz::check(c.question == question && c.answer == answer
                                && c.note == entries[size_t(i)].note
                                && c.chapter == QStringLiteral("fuzz") && c.timesViewed == 0
                                && c.trouble == (g_TroubleDefaultCurrent ? kCardTrue : kCardFalse),
                        "card as in the file");
        }
        fuzz::check(g_Deck[g_Deck.UBound()].question.isEmpty(), "empty slot last");
    }
    fuzz::check(fuzz::readFile(path) == data, "file not touched");
    return 0;
}
