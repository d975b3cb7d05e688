// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

#include <cmath>

// Rounds to the nearest integer with halves to even (2.5 -> 2, 3.5 -> 4), the
// rounding the program's layout and random-slot arithmetic is defined with.
inline qint64 RoundHalfEven(double value)
{
    return qint64(std::nearbyint(value)); // the default rounding mode is to-nearest-even
}
