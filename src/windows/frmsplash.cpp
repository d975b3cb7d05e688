// SPDX-License-Identifier: GPL-3.0-or-later
#include "windows/frmsplash.h"

#include "core/programstate.h"

#include <QPaintEvent>
#include <QPainter>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;

frmSplash::frmSplash(QWidget *parent)
    : QWidget(parent, Qt::SplashScreen | Qt::FramelessWindowHint)
    , m_surface(this)
    , m_timer(new QTimer(this))
{
    setObjectName(u"frmSplash"_s);
    setWindowTitle(u"Vocabrix"_s);
    setFixedSize(460, 260);
    setAttribute(Qt::WA_OpaquePaintEvent);
    m_surface.Resize(size());
    int w = width(), h = height();
    m_frame.Create(w, h, &m_surface);
    connect(m_timer, &QTimer::timeout, this, [this] {
        m_draw.Advance();
        Redraw(zelSplashDraw::SweepRect(width()));
    });
    Redraw(rect());
    forms::Add(this);
    g_SplashOutlet = this;
}

frmSplash::~frmSplash()
{
    if (g_SplashOutlet == this)
        g_SplashOutlet = nullptr;
}

void frmSplash::StartRenderer()
{
    m_timer->start(45);
}

void frmSplash::StopRenderer()
{
    m_timer->stop();
}

bool frmSplash::RendererRunning() const
{
    return m_timer->isActive();
}

void frmSplash::SetStatusText(const QString &text)
{
    m_draw.SetStatusText(text);
    const QRect status = zelSplashDraw::StatusRect(width(), height());
    Redraw(status);
    if (isVisible())
        repaint(status);
}

void frmSplash::OnUnload()
{
    StopRenderer();
    if (g_SplashOutlet == this)
        g_SplashOutlet = nullptr;
}

void frmSplash::Redraw(const QRect &dirty)
{
    m_draw.Paint(m_frame, width(), height(), dirty);
    m_frame.Blit(&m_surface, dirty.x(), dirty.y(), dirty.width(), dirty.height(), dirty.x(),
                 dirty.y());
}

void frmSplash::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    m_surface.PaintOn(painter, event->rect());
}
