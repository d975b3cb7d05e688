#pragma once

#include "drawing/logicalfont.h"

#include <QImage>
#include <QRect>

#include <functional>

class QPainter;

// A window's own drawing area: a persistent image of the window that drawing
// surfaces copy and blend into, and that the window paints itself from. The
// window keeps what it showed until something paints over it, so repeated
// constant-alpha copies fade a new picture in, and rows nobody paints keep
// what they had. It also carries the window's text state (colours, background
// mode, font), which a drawing surface made compatible with it starts from.
class WindowSurface
{
public:
    explicit WindowSurface(QColor background = Qt::black);

    QImage &image() { return m_image; }
    const QImage &image() const { return m_image; }
    QSize size() const { return m_image.size(); }

    // How the window that shows the picture is told that part of it changed.
    void SetRepaint(std::function<void(const QRect &)> repaint) { m_repaint = std::move(repaint); }

    // Grows or shrinks with the window, keeping the pixels that still fit and
    // filling new ones with the background.
    void Resize(const QSize &size);
    void SetBackground(const QColor &color);
    // Tells the window that part of its picture changed.
    void Changed(const QRect &rect);
    // Paints the exposed part of the picture; for the window's paint event.
    void PaintOn(QPainter &painter, const QRect &exposed) const;

    quintptr handle() const { return reinterpret_cast<quintptr>(this); }

    quint32 textColor = 0;
    quint32 backColor = 0xFFFFFF;
    bool transparentText = true;
    LogicalFont font;

private:
    std::function<void(const QRect &)> m_repaint;
    QColor m_background;
    QImage m_image;
};
