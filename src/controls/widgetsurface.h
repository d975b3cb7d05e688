#pragma once

#include "drawing/windowsurface.h"

class QWidget;

// The picture of a widget: it starts at the widget's size with its font, and
// repaints the widget where the picture changes.
class WidgetSurface : public WindowSurface
{
public:
    explicit WidgetSurface(QWidget *widget, QColor background = Qt::black);
};
