#include "windowsurface.h"

#include <QPainter>
#include <QWidget>

WindowSurface::WindowSurface(QWidget *window, QColor background)
    : m_window(window)
    , m_background(background)
{
    if (window) {
        font = LogicalFont::fromQFont(window->font());
        Resize(window->size());
    }
}

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
    if (m_window)
        m_window->update(rect);
}

void WindowSurface::PaintOn(QPainter &painter, const QRect &exposed) const
{
    if (m_image.isNull())
        return;
    painter.drawImage(exposed, m_image, exposed);
}
