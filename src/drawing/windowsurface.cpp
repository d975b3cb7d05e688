// SPDX-License-Identifier: GPL-3.0-or-later
#include "drawing/windowsurface.h"

#include <QPainter>

#include <cmath>

QSize DeviceSize(const QSize &logical, qreal ratio)
{
    return {int(std::ceil(logical.width() * ratio - 1e-9)),
            int(std::ceil(logical.height() * ratio - 1e-9))};
}

WindowSurface::WindowSurface(QColor background, qreal devicePixelRatio)
    : m_background(background)
    , m_ratio(devicePixelRatio > 0 ? devicePixelRatio : 1.0)
{}

void WindowSurface::Resize(const QSize &size)
{
    if (size == m_size && !m_image.isNull())
        return;
    rebuild(size, m_ratio);
}

void WindowSurface::SetDevicePixelRatio(qreal ratio)
{
    if (ratio <= 0 || qFuzzyCompare(ratio, m_ratio))
        return;
    rebuild(m_size, ratio);
}

void WindowSurface::rebuild(const QSize &size, qreal ratio)
{
    const qreal oldRatio = m_ratio;
    m_size = size.isEmpty() ? QSize() : size;
    m_ratio = ratio;
    changed();
    if (m_size.isEmpty()) {
        m_image = QImage();
        return;
    }
    QImage grown(DeviceSize(m_size, m_ratio), QImage::Format_RGB32);
    grown.setDevicePixelRatio(m_ratio);
    grown.fill(m_background);
    if (!m_image.isNull()) {
        // What still fits stays, at the new scale when the ratio changed.
        QPainter p(&grown);
        if (qFuzzyCompare(oldRatio, m_ratio))
            p.drawImage(QPoint(0, 0), m_image);
        else
            p.drawImage(QRectF(QPointF(0, 0), QSizeF(m_image.size()) / oldRatio), m_image);
    }
    m_image = std::move(grown);
}

void WindowSurface::SetBackground(const QColor &color)
{
    m_background = color;
}

void WindowSurface::Changed(const QRect &rect)
{
    changed();
    if (m_repaint)
        m_repaint(rect);
}

void WindowSurface::changed()
{
    ++m_revision;
    if (m_watcher)
        m_watcher();
}

void WindowSurface::SetChangeWatcher(const void *key, std::function<void()> watcher)
{
    m_watcherKey = key;
    m_watcher = std::move(watcher);
}

void WindowSurface::ClearChangeWatcher(const void *key)
{
    if (m_watcherKey != key)
        return;
    m_watcherKey = nullptr;
    m_watcher = nullptr;
}

void WindowSurface::PaintOn(QPainter &painter, const QRect &exposed) const
{
    if (m_image.isNull())
        return;
    const QRectF source(exposed.x() * m_ratio, exposed.y() * m_ratio, exposed.width() * m_ratio,
                        exposed.height() * m_ratio);
    painter.drawImage(QRectF(exposed), m_image, source);
}
