// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

// How far apart two colours (0x00BBGGRR or system colours) stand as people
// see them: the ratio of their relative luminances, each plus 0.05, from 1
// (the same) to 21 (black and white).
double ContrastRatio(quint32 a, quint32 b);

// Text colours for any colour scheme: the preferred colour when it stands out
// enough from the background to be read, else black or white, whichever
// stands out more. The result is a plain 0x00BBGGRR colour.
quint32 ReadableOn(quint32 preferred, quint32 background);
