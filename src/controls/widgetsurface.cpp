// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/widgetsurface.h"

#include <QWidget>

WidgetSurface::WidgetSurface(QWidget *widget, QColor background)
    : WindowSurface(background, widget->devicePixelRatioF())
    , m_widget(widget)
{
    font = LogicalFont::fromQFont(widget->font());
    Resize(widget->size());
    SetRepaint([window = QPointer<QWidget>(widget)](const QRect &rect) {
        if (window)
            window->update(rect);
    });
}

bool WidgetSurface::FollowScreen()
{
    if (!m_widget || qFuzzyCompare(m_widget->devicePixelRatioF(), devicePixelRatio()))
        return false;
    SetDevicePixelRatio(m_widget->devicePixelRatioF());
    return true;
}
