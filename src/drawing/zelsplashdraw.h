#pragma once

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
    void Paint(cMemDC &dc, int width, int height) const;

private:
    QString m_status;
    int m_step = 0;
};
