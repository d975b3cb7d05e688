// SPDX-License-Identifier: GPL-3.0-or-later
#include "cards/deck.h"

#include "core/log.h"
#include "core/programstate.h"
#include "core/prompter.h"
#include "korva/chapterformat.h"
#include "korva/ikorvalite.h"

using namespace Qt::Literals::StringLiterals;

Deck g_Deck;

namespace {

// Bytes a text takes in memory, two per character.
qint64 memoryBytes(const QString &text)
{
    return 2 * qint64(text.size());
}

void refuse(const QString &title, const QString &text)
{
    MsgBox(title, text, MsgIcon::Exclamation, MsgButtons::OK);
}

} // namespace

void Deck::SetLanguages(const QString &chapter, const ChapterLanguages &languages)
{
    if (languages.isEmpty())
        m_languages.remove(chapter);
    else
        m_languages.insert(chapter, languages);
}

void LoadChapterLanguages(const QString &path, const QString &chapterName)
{
    ChapterLanguages languages;
    QString error;
    if (!chapterlanguages::Read(path, languages, &error))
        Log(u" .. languages left out: "_s + error + u"/n"_s);
    g_Deck.SetLanguages(chapterName, languages);
}

void LoadChapterFile(const QString &path, const QString &chapterName)
{
    const QString loadFailed = u"The file '"_s + path + u"' can't be loaded!"_s;
    // A chapter that vanished since it was listed (or that is no file at all)
    // has no cards to load, and is not created anew by mounting it.
    if (!ikorvalite::FileExists(path)) {
        refuse(u"Can't load file"_s, loadFailed);
        return;
    }
    ikorvalite db;
    if (!db.Mount(path, false)) {
        refuse(u"Can't mount file"_s, u"The file '"_s + path + u"' couldn't be mounted!"_s);
        return;
    }

    const int first = db.FirstIndex();
    const int last = db.LastIndex();
    // Deliberately also refuses a chapter of exactly one entry.
    if (!(first < last)) {
        refuse(u"Can't load file"_s, loadFailed);
        return;
    }

    const int upper = g_Deck.UBound();
    if (qint64(upper) + last > Deck::kMaxCards) {
        refuse(u"Can't load file"_s,
               u"The file '"_s + path
                       + u"' can't be loaded: with its %1 cards the deck would hold "
                         "%2 cards, more than the %3 it can hold."_s.arg(last)
                                 .arg(qint64(upper) + last)
                                 .arg(Deck::kMaxCards));
        return;
    }

    // One growth per chapter; the deck's empty slot is overwritten by the
    // first card and a new one ends the deck.
    g_Deck.Resize(upper + last);
    qint64 bytes = 0;
    const std::vector<korva::Entry> &entries = db.Entries();
    for (int i = first, k = 0; i <= last; ++i, ++k) {
        const korva::Entry &entry = entries[size_t(i)];
        Card &card = g_Deck[upper + k];
        card.answer = entry.text;
        ReplaceUmlautEscapes(card.answer);
        card.question = entry.key;
        ReplaceUmlautEscapes(card.question);
        card.note = entry.note;
        bytes += memoryBytes(card.answer) + memoryBytes(card.note) + memoryBytes(card.question);
        card.trouble = g_TroubleDefaultCurrent ? kCardTrue : kCardFalse;
        card.timesViewed = 0;
        card.chapter = chapterName;
        card.spare.clear();
    }
    Log(u"file loaded; using "_s + QString::number(bytes) + u" bytes of memory/n"_s);
    LoadChapterLanguages(path, chapterName);
}

void FlushData(bool firstUse)
{
    Log(u"Entering FlushToZero mode/n"_s);
    if (firstUse) {
        Log(u"Initializing data system for first use/n"_s);
        g_Deck.Reset();
        Log(u" .. not flushing empty data set/n"_s);
        return;
    }

    const int lower = g_Deck.LBound(), upper = g_Deck.UBound();
    if (lower + 1 < upper) {
        qint64 bytes = 0;
        for (int i = lower + 1; i <= upper; ++i) {
            const Card &card = g_Deck[i];
            bytes += memoryBytes(card.note) + memoryBytes(card.answer) + memoryBytes(card.question);
        }
        Log(u" .. flushing "_s + QString::number(bytes) + u" bytes of data/n"_s);
        g_Deck.Reset();
        Log(u"All dynamic data flushed/n"_s);
    } else {
        Log(u" .. not flushing empty data set/n"_s);
    }
}
