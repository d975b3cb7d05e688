// SPDX-License-Identifier: GPL-3.0-or-later
#include "drawing/colourcontrast.h"

#include "drawing/cmemdc.h"

#include <cmath>

namespace {

// Enough for small text to be read comfortably.
constexpr double kReadable = 4.5;

double luminance(quint32 color)
{
    const quint32 rgb = cMemDC::TranslateColor(color);
    auto channel = [](quint32 value) {
        const double s = (value & 0xFF) / 255.0;
        return s <= 0.03928 ? s / 12.92 : std::pow((s + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * channel(rgb) + 0.7152 * channel(rgb >> 8) + 0.0722 * channel(rgb >> 16);
}

} // namespace

double ContrastRatio(quint32 a, quint32 b)
{
    const double la = luminance(a), lb = luminance(b);
    return (qMax(la, lb) + 0.05) / (qMin(la, lb) + 0.05);
}

quint32 ReadableOn(quint32 preferred, quint32 background)
{
    if (ContrastRatio(preferred, background) >= kReadable)
        return cMemDC::TranslateColor(preferred);
    return ContrastRatio(0, background) >= ContrastRatio(0xFFFFFF, background) ? 0 : 0xFFFFFF;
}
