// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

// What a shuffle needs of the study window: its commands, its card display and
// a progress form.
class ShuffleHost
{
public:
    virtual ~ShuffleHost() = default;
    virtual void EnableCommands(bool enabled) = 0;
    virtual void StopCardDisplay() = 0;
    virtual void StartCardDisplay() = 0;
    // Puts two texts on the card (what is happening, which pass) and redraws.
    virtual void ShowCardTexts(const QString &text, const QString &pass) = 0;
    // Loads the progress form and shows it modeless over the study window.
    virtual void ShowProgress(const QString &caption, int minimum, int maximum) = 0;
    virtual int ProgressValue() const = 0;
    virtual void SetProgressValue(int value) = 0;
    virtual void CloseProgress() = 0;
};

// Uniform numbers in [0, 1), seeded once per shuffle from the time of day.
class RandomSource
{
public:
    virtual ~RandomSource() = default;
    virtual void Seed(double secondsSinceMidnight) = 0;
    virtual double Next() = 0;
};

// Installs a random source (not owned); nullptr goes back to the program's own.
void SetRandomSource(RandomSource *source);
// The program's own source: a 64-bit Mersenne Twister seeded with the bits of
// the time of day.
RandomSource &ProgramRandomSource();

inline constexpr int kMaxShuffleCards = 9999;

// The shuffle command: refuses decks of more than 9,999 cards, else runs
// ShuffleDeck with g_ShuffleRunning set and the study window's commands and
// card display stopped.
void RunShuffleCommand(ShuffleHost &host);

// Two passes: every card is placed into a random free slot of a temporary
// deck, which is then copied back. The user interface keeps running between
// steps; a shutdown requested before either pass drops out, before the second
// leaving the deck as it was.
void ShuffleDeck(ShuffleHost &host);
