// SPDX-License-Identifier: GPL-3.0-or-later
#include "cards/shuffler.h"

#include "cards/deck.h"
#include "core/log.h"
#include "core/pause.h"
#include "core/programstate.h"
#include "core/prompter.h"
#include "core/rounding.h"

#include <QTime>

#include <cstring>
#include <random>

using namespace Qt::Literals::StringLiterals;

namespace {

class TimeSeededRandom final : public RandomSource
{
public:
    void Seed(double secondsSinceMidnight) override
    {
        quint64 bits = 0;
        static_assert(sizeof bits == sizeof secondsSinceMidnight);
        std::memcpy(&bits, &secondsSinceMidnight, sizeof bits);
        m_engine.seed(bits);
    }
    double Next() override { return std::generate_canonical<double, 53>(m_engine); }

private:
    std::mt19937_64 m_engine;
};

TimeSeededRandom g_timeSeeded;
RandomSource *g_random = nullptr;

RandomSource &randomSource()
{
    return g_random ? *g_random : g_timeSeeded;
}

// The spare text stays where it is: it is not carried by a shuffle.
void copyCard(const Card &from, Card &to)
{
    to.question = from.question;
    to.answer = from.answer;
    to.note = from.note;
    to.trouble = from.trouble;
    to.timesViewed = from.timesViewed;
    to.chapter = from.chapter;
}

// The bar moves only when it lags the placed cards by 50 or more, to keep its
// redraws rare.
void advanceBar(ShuffleHost &host, qint16 counter)
{
    if (host.ProgressValue() + 50 <= counter)
        host.SetProgressValue(counter);
}

} // namespace

void SetRandomSource(RandomSource *source)
{
    g_random = source;
}

RandomSource &ProgramRandomSource()
{
    return g_timeSeeded;
}

void RunShuffleCommand(ShuffleHost &host)
{
    const int cards = g_Deck.UBound() - g_Deck.LBound();
    if (cards > kMaxShuffleCards) {
        MsgBox(u"Shuffler"_s,
               u"The shuffler cannot work with a dataset greater than 9999. Reduce the number of "
               "cards to below this number to reenable shuffling."_s,
               MsgIcon::Exclamation, MsgButtons::OK);
        return;
    }
    g_ShuffleRunning = true;
    host.EnableCommands(false);
    host.StopCardDisplay();
    ShuffleDeck(host);
    host.StartCardDisplay();
    host.EnableCommands(true);
    g_ShuffleRunning = false;
}

void ShuffleDeck(ShuffleHost &host)
{
    randomSource().Seed(QTime::currentTime().msecsSinceStartOfDay() / 1000.0);

    const int lower = g_Deck.LBound(), upper = g_Deck.UBound();
    std::vector<Card> shuffled(size_t(upper - lower) + 1);
    host.ShowProgress(u"Randomizer Progress"_s, 0, 2 * (upper - lower));
    host.ShowCardTexts(u"Randomizing .. "_s, u"Pass 1 of 2"_s);

    qint16 counter = 0;
    if (!g_ShuttingDown) {
        // The empty last slot is not placed. A card is drawn again until it
        // hits a slot whose question is empty; a card with an empty question
        // so leaves its slot free for a later card, and is lost.
        for (int i = lower; i < upper; ++i) {
            bool placed = false;
            while (!placed) {
                const int slot = int(RoundHalfEven(randomSource().Next() * 10000) % upper);
                Card &target = shuffled[size_t(slot)];
                if (target.question.isEmpty()) {
                    copyCard(g_Deck[i], target);
                    advanceBar(host, counter);
                    ++counter;
                    placed = true;
                }
                DoEvents();
            }
        }
    }

    // The second pass goes on from where the bar stands, not from the count.
    counter = qint16(host.ProgressValue());

    if (g_ShuttingDown) {
        Log(u"system shutdown signal received: dropping out of shuffle/n"_s);
        return;
    }

    host.ShowCardTexts(u"Randomizing ..."_s, u"Pass 2 of 2"_s);
    for (int i = lower; i <= upper; ++i) {
        copyCard(shuffled[size_t(i - lower)], g_Deck[i]);
        advanceBar(host, counter);
        ++counter;
        DoEvents();
    }
    shuffled.clear();
    host.CloseProgress();
}
