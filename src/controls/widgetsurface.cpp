#include "controls/widgetsurface.h"

#include <QPointer>
#include <QWidget>

WidgetSurface::WidgetSurface(QWidget *widget, QColor background) : WindowSurface(background)
{
    font = LogicalFont::fromQFont(widget->font());
    Resize(widget->size());
    SetRepaint([window = QPointer<QWidget>(widget)](const QRect &rect) {
        if (window)
            window->update(rect);
    });
}
