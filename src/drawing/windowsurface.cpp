#include "drawing/windowsurface.h"

#include <QPainter>

WindowSurface::WindowSurface(QColor background) : m_background(background) {}

void WindowSurface::Resize(const QSize &size)
{
    if (size == m_image.size())
        return;
    if (size.isEmpty()) {
        m_image = QImage();
        return;
    }
    QImage grown(size, QImage::Format_RGB32);
    grown.fill(m_background);
    if (!m_image.isNull()) {
        QPainter p(&grown);
        p.drawImage(0, 0, m_image);
    }
    m_image = std::move(grown);
}

void WindowSurface::SetBackground(const QColor &color)
{
    m_background = color;
}

void WindowSurface::Changed(const QRect &rect)
{
    if (m_repaint)
        m_repaint(rect);
}

void WindowSurface::PaintOn(QPainter &painter, const QRect &exposed) const
{
    if (m_image.isNull())
        return;
    painter.drawImage(exposed, m_image, exposed);
}
