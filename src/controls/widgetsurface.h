// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "drawing/windowsurface.h"

#include <QPointer>

class QWidget;

// The picture of a widget: it starts at the widget's size, font and device
// pixel ratio, and repaints the widget where the picture changes.
class WidgetSurface : public WindowSurface
{
public:
    explicit WidgetSurface(QWidget *widget, QColor background = Qt::black);

    // Follows the widget to a screen of another scale; true when the ratio
    // changed and the owner should paint its picture anew.
    bool FollowScreen();

private:
    QPointer<QWidget> m_widget;
};
