// SPDX-License-Identifier: GPL-3.0-or-later
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
// what they had. It also carries the window's text state (text colour and
// font), which a drawing surface made compatible with it starts from.
//
// Sizes and coordinates are logical pixels; the image holds device pixels at
// the window's device pixel ratio, so text and edges stay sharp on screens
// that scale (at a ratio of 1 the two are the same).
class WindowSurface
{
public:
    explicit WindowSurface(QColor background = Qt::black, qreal devicePixelRatio = 1.0);

    // The picture in device pixels. Whoever paints into it directly calls
    // Changed() for what it painted.
    QImage &image() { return m_image; }
    const QImage &image() const { return m_image; }
    QSize size() const { return m_size; }
    qreal devicePixelRatio() const { return m_ratio; }

    // How the window that shows the picture is told that part of it changed.
    void SetRepaint(std::function<void(const QRect &)> repaint) { m_repaint = std::move(repaint); }
    // One more party told of every change (the renderer presenting into the
    // picture); it leaves by the key it came with.
    void SetChangeWatcher(const void *key, std::function<void()> watcher);
    void ClearChangeWatcher(const void *key);

    // Grows or shrinks with the window, keeping the pixels that still fit and
    // filling new ones with the background.
    void Resize(const QSize &size);
    // The window moved to a screen of another scale: the picture is scaled
    // until its owner paints it anew.
    void SetDevicePixelRatio(qreal ratio);
    void SetBackground(const QColor &color);
    // Tells the window that part of its picture changed (logical pixels).
    void Changed(const QRect &rect);
    // Goes up with every change, so a presenter can tell the picture is as it
    // left it.
    quint64 Revision() const { return m_revision; }
    // Paints the exposed part of the picture (logical pixels); for the
    // window's paint event.
    void PaintOn(QPainter &painter, const QRect &exposed) const;

    quintptr handle() const { return reinterpret_cast<quintptr>(this); }

    quint32 textColor = 0;
    LogicalFont font;

private:
    void rebuild(const QSize &size, qreal ratio);

    void changed();

    std::function<void(const QRect &)> m_repaint;
    const void *m_watcherKey = nullptr;
    std::function<void()> m_watcher;
    QColor m_background;
    QSize m_size;
    qreal m_ratio;
    QImage m_image;
    quint64 m_revision = 0;
};

// The device pixels that a logical size takes at a ratio.
QSize DeviceSize(const QSize &logical, qreal ratio);
