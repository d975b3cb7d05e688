// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QRect>
#include <QString>

class cMemDC;

// Paints the splash picture: the card gradient, the program's name and
// version, a light sweeping across while the program starts, and the status
// line the log sets.
class zelSplashDraw
{
public:
    void SetStatusText(const QString &text) { m_status = text; }
    QString StatusText() const { return m_status; }
    // One animation step; the sweep goes round every 60 steps.
    void Advance() { m_step = (m_step + 1) % 60; }
    // Paints the part of the picture inside dirty (the whole of it when
    // dirty is empty). The parts never overlap, so a part painted alone is
    // pixel for pixel what a whole picture shows there.
    void Paint(cMemDC &dc, int width, int height, QRect dirty = QRect()) const;

    // Where the status line and the sweeping light are painted.
    static QRect StatusRect(int width, int height) { return {0, height - 46, width, 22}; }
    static QRect SweepRect(int width) { return {0, 118, width, 2}; }

private:
    QString m_status;
    int m_step = 0;
};
