// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

// One card of the deck. Flags are 16-bit -1/0 as in the progress files, so a
// file read and written back keeps its bytes.
struct Card
{
    QString question;
    QString answer;
    QString note;
    QString spare; // carried along, never read
    qint16 trouble = 0;
    qint16 timesViewed = 0;
    QString chapter;

    bool isTrouble() const { return trouble != 0; }
};

inline constexpr qint16 kCardTrue = -1;
inline constexpr qint16 kCardFalse = 0;
