// SPDX-License-Identifier: GPL-3.0-or-later
#include "windows/windowplacement.h"

#include "core/programstate.h"
#include "core/rounding.h"
#include "korva/ikorvalite.h"
#include "settings/settingskeys.h"
#include "windows/forms.h"

#include <QEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QWidget>
#include <QWindow>

using namespace Qt::Literals::StringLiterals;

namespace modMain {

namespace {

// Refuses close requests from the title bar and the window manager; the
// program's own closing (unload) is not spontaneous and passes.
class CloseRefuser final : public QObject
{
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Close && event->spontaneous()) {
            event->ignore();
            return true;
        }
        return QObject::eventFilter(watched, event);
    }
};

void setStaysOnTop(QWidget *window, bool onTop)
{
    if (!window)
        return;
    if (QWindow *handle = window->windowHandle())
        handle->setFlag(Qt::WindowStaysOnTopHint, onTop);
    else
        window->setWindowFlag(Qt::WindowStaysOnTopHint, onTop);
}

} // namespace

void SetTopmost(QWidget *window)
{
    setStaysOnTop(window, true);
}

void ClearTopmost(QWidget *window)
{
    setStaysOnTop(window, false);
}

bool IsTopmost(const QWidget *window)
{
    if (!window)
        return false;
    if (const QWindow *handle = window->windowHandle())
        return handle->flags().testFlag(Qt::WindowStaysOnTopHint);
    return window->windowFlags().testFlag(Qt::WindowStaysOnTopHint);
}

void RemoveCloseCommand(QWidget *window)
{
    if (!window)
        return;
    window->setWindowFlags((window->windowFlags() | Qt::CustomizeWindowHint | Qt::WindowTitleHint)
                           & ~Qt::WindowCloseButtonHint);
    window->installEventFilter(new CloseRefuser(window));
}

namespace {

// Where a window stands centred on the screen, in twips.
QPoint centredTwips(QWidget *form)
{
    const QScreen *screen = QGuiApplication::primaryScreen();
    const QSize screenSize = screen ? screen->geometry().size() : QSize(1024, 768);
    const QSize formSize = form->frameGeometry().size();
    return {int(RoundHalfEven(screenSize.width() * kTwipsPerPixel / 2.0
                              - formSize.width() * kTwipsPerPixel / 2.0)),
            int(RoundHalfEven(screenSize.height() * kTwipsPerPixel / 2.0
                              - formSize.height() * kTwipsPerPixel / 2.0))};
}

} // namespace

void CentreOnScreen(QWidget *window)
{
    if (!window)
        return;
    window->adjustSize();
    const QPoint at = centredTwips(window);
    window->move(at.x() / kTwipsPerPixel, at.y() / kTwipsPerPixel);
}

void RestoreWindowPosition(QWidget *form)
{
    if (!form)
        return;
    const QPoint centred = centredTwips(form);
    const qint32 defaultLeft = centred.x(), defaultTop = centred.y();
    qint32 left = defaultLeft, top = defaultTop;
    if (g_MasterDb) {
        left = g_MasterDb->GetNumber(settings::WindowLeftKey(forms::Name(form)), defaultLeft).value;
        top = g_MasterDb->GetNumber(settings::WindowTopKey(forms::Name(form)), defaultTop).value;
    }
    // Where it was, even if that is off every screen now.
    form->move(left / kTwipsPerPixel, top / kTwipsPerPixel);
}

void SaveWindowPosition(QWidget *form, bool saveNow)
{
    if (!form || !g_MasterDb)
        return;
    const QPoint at = form->pos();
    g_MasterDb->SetValue(settings::WindowLeftKey(forms::Name(form)), QString(),
                         at.x() * kTwipsPerPixel, settings::kGroupMetrics);
    g_MasterDb->SetValue(settings::WindowTopKey(forms::Name(form)), QString(),
                         at.y() * kTwipsPerPixel, settings::kGroupMetrics);
    if (saveNow)
        g_MasterDb->Save();
}

void RequestMasterReset()
{
    g_DeleteMasterOnExit = true;
}

} // namespace modMain
