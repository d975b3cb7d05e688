// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cards/deck.h"
#include "testsupport.h"

using namespace Qt::Literals::StringLiterals;

namespace {

// Every field of every card, "question|answer|note|spare|trouble|times|chapter".
QStringList deckRows()
{
    QStringList out;
    for (const Card &c : g_Deck.cards())
        out << QStringList({c.question, c.answer, c.note, c.spare, QString::number(c.trouble),
                            QString::number(c.timesViewed), c.chapter})
                        .join(u'|');
    return out;
}

void fillDeck(int cards)
{
    g_Deck.Resize(cards);
    for (int i = 0; i < cards; ++i) {
        g_Deck[i].question = u"q%1"_s.arg(i);
        g_Deck[i].answer = u"a%1"_s.arg(i);
        g_Deck[i].timesViewed = qint16(i % 7);
        g_Deck[i].trouble = i % 2 ? kCardTrue : kCardFalse;
        g_Deck[i].chapter = u"c"_s;
        g_Deck[i].spare = u"spare%1"_s.arg(i);
    }
}

} // namespace
