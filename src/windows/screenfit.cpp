// SPDX-License-Identifier: GPL-3.0-or-later
#include "windows/screenfit.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

void FitOnScreen(QWidget *window)
{
    QScreen *screen = window->screen() ? window->screen() : QGuiApplication::primaryScreen();
    if (screen)
        FitInto(window, screen->availableGeometry());
}

void FitInto(QWidget *window, const QRect &available)
{
    const int width = qMax(window->minimumWidth(), available.width() - 2 * kFrameSides);
    const int height =
            qMax(window->minimumHeight(), available.height() - kFrameTop - kFrameSides);
    window->resize(qMin(window->width(), width), qMin(window->height(), height));
    QPoint at = window->pos();
    at.setX(qBound(available.left() + kFrameSides, at.x(),
                   qMax(available.left() + kFrameSides,
                        available.right() - kFrameSides - window->width() + 1)));
    at.setY(qBound(available.top() + kFrameTop, at.y(),
                   qMax(available.top() + kFrameTop,
                        available.bottom() - kFrameSides - window->height() + 1)));
    window->move(at);
}
