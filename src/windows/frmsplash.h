// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/widgetsurface.h"
#include "core/log.h"
#include "drawing/cmemdc.h"
#include "drawing/zelsplashdraw.h"
#include "windows/forms.h"

#include <QWidget>

class QTimer;

// The splash window of start-up: it shows every log line as its status text
// while it is up, and its renderer redraws it every 45 ms to keep it alive.
class frmSplash : public QWidget, public SplashStatusOutlet, public forms::Unloadable
{
    Q_OBJECT

public:
    explicit frmSplash(QWidget *parent = nullptr);
    ~frmSplash() override;

    void StartRenderer();
    void StopRenderer();
    bool RendererRunning() const;

    void SetStatusText(const QString &text) override;
    QString StatusText() const { return m_draw.StatusText(); }

    void OnUnload() override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    // Paints what changed into the picture and shows it.
    void Redraw(const QRect &dirty);

    WidgetSurface m_surface;
    cMemDC m_frame; // the whole picture, kept between redraws
    zelSplashDraw m_draw;
    QTimer *m_timer;
};
