// SPDX-License-Identifier: GPL-3.0-or-later
#include "drawing/zelsplashdraw.h"

#include "core/version.h"
#include "drawing/cmemdc.h"

using namespace Qt::Literals::StringLiterals;

namespace {
constexpr quint32 kBlack = 0;
constexpr quint32 kBlue = 14570825;
constexpr quint32 kWhite = 0xFFFFFF;
constexpr quint32 kPaleBlue = 0xF0C8B4; // pale blue, 0x00BBGGRR

void text(cMemDC &dc, const QString &s, int l, int t, int r, int b, int format, quint32 color,
          bool shadow)
{
    if (shadow) {
        int sl = l - 1, st = t - 1, sr = r - 1, sb = b - 1;
        dc.SetForeColor(kBlack);
        dc.DrawText(s, sl, st, sr, sb, format);
    }
    dc.SetForeColor(color);
    dc.DrawText(s, l, t, r, b, format);
}
} // namespace

void zelSplashDraw::Paint(cMemDC &dc, int width, int height, QRect dirty) const
{
    if (dirty.isEmpty())
        dirty = QRect(0, 0, width, height);
    dc.SetClip(dirty);
    auto needed = [&dirty](const QRect &part) { return dirty.intersects(part); };

    const int mid = width / 2;
    dc.Gradient(0, 0, mid, height, kBlack, kBlue);
    dc.Gradient(mid, 0, width, height, kBlue, kBlack);
    dc.FrameRect(0, 0, width, height, 0x6A5040);

    // A band of light sweeping along under the title while start-up runs.
    const int band = width / 5;
    const int x = -band + (width + band) * m_step / 60;
    if (needed(SweepRect(width))) {
        dc.Gradient(x, 118, x + band / 2, 120, kBlue, kWhite);
        dc.Gradient(x + band / 2, 118, x + band, 120, kWhite, kBlue);
    }

    LogicalFont font;
    font.bold = true;
    font.size = 30;
    if (needed(QRect(-1, 29, width, 71))) {
        dc.SetFont(font);
        text(dc, QString::fromUtf16(version::kProductName), 0, 30, width, 100,
             cMemDC::DT_CENTER | cMemDC::DT_VCENTER | cMemDC::DT_SINGLELINE, kWhite, true);
    }

    // One small size for every other line: each size is a font to load.
    font.size = 8;
    font.bold = false;
    if (needed(QRect(0, 92, width, 20))) {
        dc.SetFont(font);
        text(dc,
             u"Vocabulary flash cards  ·  Version %1.%2 build %3"_s.arg(version::kMajor)
                     .arg(version::kMinor)
                     .arg(version::kRevision),
             0, 92, width, 112, cMemDC::DT_CENTER | cMemDC::DT_SINGLELINE, kPaleBlue, false);
    }

    dc.SetFont(font);
    if (needed(StatusRect(width, height)))
        text(dc, m_status, 14, height - 44, width - 14, height - 26,
             cMemDC::DT_SINGLELINE | cMemDC::DT_VCENTER, kWhite, true);
    if (needed(QRect(14, height - 24, width - 28, 16)))
        text(dc, QString::fromUtf16(version::kNotice), 14, height - 24, width - 14, height - 8,
             cMemDC::DT_SINGLELINE | cMemDC::DT_VCENTER, kPaleBlue, false);
    dc.SetClip(QRect());
}
