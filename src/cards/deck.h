// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cards/card.h"
#include "cards/chapterlanguages.h"
#include "korva/chapterformat.h" // ReplaceUmlautEscapes: escapes are replaced as chapters load

#include <QHash>

#include <vector>

// The deck: every loaded card, indexed from 0, always ending in one empty
// slot. With k cards loaded it spans 0 .. k, the empty slot at k.
class Deck
{
public:
    // The most cards the deck takes: a card's index and the progress file's
    // count are 16-bit.
    static constexpr int kMaxCards = 32767;

    Deck() : m_cards(1) {}

    int LBound() const { return 0; }
    int UBound() const { return int(m_cards.size()) - 1; }
    int CardCount() const { return UBound() - LBound(); }

    Card &operator[](int index) { return m_cards[size_t(index)]; }
    const Card &operator[](int index) const { return m_cards[size_t(index)]; }

    // Makes the deck span 0 .. upper, keeping what fits.
    void Resize(int upper) { m_cards.resize(size_t(upper) + 1); }
    // One empty slot, 0 .. 0, and no chapter languages.
    void Reset()
    {
        m_cards.assign(1, Card());
        m_languages.clear();
    }

    std::vector<Card> &cards() { return m_cards; }
    const std::vector<Card> &cards() const { return m_cards; }

    // The languages of the loaded chapters that keep theirs, by chapter name.
    ChapterLanguages Languages(const QString &chapter) const { return m_languages.value(chapter); }
    void SetLanguages(const QString &chapter, const ChapterLanguages &languages);

private:
    std::vector<Card> m_cards;
    QHash<QString, ChapterLanguages> m_languages;
};

extern Deck g_Deck;

// Appends a chapter file's cards to the deck. Failures are told to the user in
// a message box and leave the deck as it was.
void LoadChapterFile(const QString &path, const QString &chapterName);

// Remembers the languages kept beside a chapter file for its cards; a damaged
// file is logged and left out (the options' languages apply).
void LoadChapterLanguages(const QString &path, const QString &chapterName);

// Empties the deck. See the log lines for the two deliberate quirks: a deck of
// one card is not flushed, and the first card is not counted.
void FlushData(bool firstUse);
