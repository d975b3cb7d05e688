// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "drawing/logicalfont.h"

#include <QImage>
#include <QString>

class QPainter;
class WindowSurface;

// An off-screen drawing surface: an image the program paints on with
// gradients, filled rectangles and text, then copies or blends onto a window
// in one step so nothing flickers. Every operation first checks IsValid() and
// does nothing on a surface that was never created.
//
// Colours are 0x00BBGGRR (red in the low byte) or, with the high bit set, a
// system colour that is resolved through the application palette.
// Rectangles take their right and bottom edges as exclusive, as the platform's
// drawing calls did.
class cMemDC
{
public:
    // DrawText flags.
    static constexpr int DT_CENTER = 1;
    static constexpr int DT_RIGHT = 2;
    static constexpr int DT_VCENTER = 4;
    static constexpr int DT_BOTTOM = 8;
    static constexpr int DT_WORDBREAK = 16;
    static constexpr int DT_SINGLELINE = 32;

    static constexpr quint32 SRCCOPY = 13369376;

    cMemDC() = default;
    ~cMemDC();
    cMemDC(const cMemDC &) = delete;
    cMemDC &operator=(const cMemDC &) = delete;

    // Makes a drawing area of width x height, compatible with a window (its
    // text state is copied; nullptr stands for the screen), or adopts the
    // window's own picture as the drawing area when existing is given.
    void Create(int &width, int &height, WindowSurface *compatible = nullptr,
                WindowSurface *existing = nullptr);
    void Destroy();
    bool IsValid() const { return m_valid; }

    // Logical pixels; the picture holds DevicePixelRatio() device pixels for
    // each of them.
    int Width() const { return m_width; }
    int Height() const { return m_height; }
    qreal DevicePixelRatio() const { return m_ratio; }
    // The picture drawn so far, in device pixels (the window's own when one
    // was adopted).
    const QImage &Image() const;
    WindowSurface *Target() const { return m_target; }

    LogicalFont Font() const { return m_font; }
    void SetFont(const LogicalFont &font);

    void SetForeColor(quint32 color);
    static quint32 TranslateColor(quint32 color);

    void FillRect(int x1, int y1, int x2, int y2, quint32 color);
    // Left to right, colour1 to colour2.
    void Gradient(int x1, int y1, int x2, int y2, quint32 color1, quint32 color2);
    static quint32 BlendColour(quint32 color1, quint32 color2, double t);

    // Draws the text in the rectangle. Returns the text's height.
    int DrawText(const QString &text, int left, int top, int right, int bottom, int format);
    int TextWidth(const QString &text) const;
    int TextHeight(const QString &text) const;

    // Copies (SRCCOPY) or blends with a constant alpha the surface onto a
    // window picture; nullptr is the window the surface was made for, and a
    // width or height of 0 the surface's own.
    void Blit(WindowSurface *destination = nullptr, int x = 0, int y = 0, int width = 0,
              int height = 0, int sourceX = 0, int sourceY = 0, quint32 rop = SRCCOPY);
    void AlphaBlit(WindowSurface *destination, int x, int y, int width, int height, int sourceX,
                   int sourceY, int alpha);

    // An outlined and filled rectangle; a one-pixel outline; a line.
    void Rectangle(int x1, int y1, int x2, int y2, quint32 penColor, quint32 brushColor,
                   int penWidth = 1);
    void FrameRect(int x1, int y1, int x2, int y2, quint32 color);
    void Line(int x1, int y1, int x2, int y2, quint32 color, int penWidth = 1);

    // Restricts every drawing operation to a rectangle; an empty one lifts it.
    void SetClip(const QRect &clip);

    // major x 100 + minor of the operating system, read once per surface.
    qint32 OsVersionCode();

private:
    QImage &canvas();
    bool drawable() const;
    // Starts a painter on the picture, inside the clip.
    void begin(QPainter &painter);

    bool m_valid = false;
    int m_width = 0;
    int m_height = 0;
    qreal m_ratio = 1.0;
    QRect m_clip;
    QImage m_own;
    WindowSurface *m_adopted = nullptr;
    WindowSurface *m_target = nullptr;
    LogicalFont m_font;
    QFont m_createdFont = LogicalFont().toQFont();
    quint32 m_foreColor = 0;
    qint32 m_osVersionCode = 0;
};
