#include "windows/frmsplash.h"

#include "core/programstate.h"
#include "drawing/cmemdc.h"

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
    connect(m_timer, &QTimer::timeout, this, [this] {
        m_draw.Advance();
        Redraw();
    });
    Redraw();
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
    Redraw();
    if (isVisible())
        repaint();
}

void frmSplash::OnUnload()
{
    StopRenderer();
    if (g_SplashOutlet == this)
        g_SplashOutlet = nullptr;
}

void frmSplash::Redraw()
{
    cMemDC dc;
    int w = width(), h = height();
    dc.Create(w, h, &m_surface);
    m_draw.Paint(dc, w, h);
    dc.Blit(&m_surface);
}

void frmSplash::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    m_surface.PaintOn(painter, event->rect());
}
