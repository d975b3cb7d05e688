// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/zelcontrol.h"

#include "controls/propertybag.h"
#include "core/keycodes.h"
#include "drawing/cmemdc.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleOptionFocusRect>
#include <QStylePainter>

using namespace Qt::Literals::StringLiterals;

zelControl::zelControl(QWidget *parent) : QWidget(parent), m_surface(this)
{
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void zelControl::SetCaption(const QString &caption)
{
    m_caption = caption;
    Redraw();
}

void zelControl::Redraw()
{
    if (m_redrawing)
        return;
    m_redrawing = true;
    const int preferred = PreferredWidth();
    if (preferred >= 0 && preferred != width())
        resize(preferred, height());
    m_surface.Resize(size());
    cMemDC dc;
    int width = this->width(), height = this->height();
    dc.Create(width, height, &m_surface);
    Paint(dc, QRect(0, 0, width, height));
    dc.Blit(&m_surface, 0, 0, 0, 0, 0, 0, cMemDC::SRCCOPY);
    m_redrawing = false;
}

void zelControl::HandleMouseMove(int x, int y)
{
    if (x < 0 || y < 0 || x > width() || y > height()) {
        if (RaisesHoverEvents())
            Q_EMIT MouseOut();
        m_hover = false;
        m_tracking = false;
        setCursor(Qt::ArrowCursor);
    } else {
        if (RaisesHoverEvents())
            Q_EMIT MouseOver();
        m_hover = true;
        m_tracking = true;
        setCursor(m_enabled ? Qt::PointingHandCursor : Qt::ArrowCursor);
    }
    Redraw();
}

void zelControl::ReadCommonProperties(const PropertyBag &bag)
{
    m_backcolor = bag.ReadProperty(u"bc"_s, 0xFF0000u).toUInt();
    m_caption = bag.ReadProperty(u"c"_s, objectName()).toString();
    m_enabled = bag.ReadProperty(u"e"_s, true).toBool();
    m_forecolor = bag.ReadProperty(u"fc"_s, 0u).toUInt();
    m_forecolorMouse = bag.ReadProperty(u"fcm"_s, 0u).toUInt();
    m_hover = false;
}

void zelControl::WriteCommonProperties(PropertyBag &bag) const
{
    bag.WriteProperty(u"bc"_s, m_backcolor, 0xFF0000u);
    bag.WriteProperty(u"c"_s, m_caption, objectName());
    bag.WriteProperty(u"e"_s, m_enabled, true);
    bag.WriteProperty(u"fc"_s, m_forecolor, 0u);
    bag.WriteProperty(u"fcm"_s, m_forecolorMouse, 0u);
}

void zelControl::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    m_surface.PaintOn(painter, event->rect());
    if (hasFocus()) {
        // Keyboard users see which control has the focus.
        QStyleOptionFocusRect option;
        option.initFrom(this);
        option.rect = rect().adjusted(2, 2, -2, -2);
        style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
    }
}

void zelControl::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    Redraw();
}

void zelControl::mouseMoveEvent(QMouseEvent *event)
{
    const QPoint p = event->position().toPoint();
    HandleMouseMove(p.x(), p.y());
}

void zelControl::leaveEvent(QEvent *event)
{
    QWidget::leaveEvent(event);
    // The first move outside: the pointer has left, also when a click has
    // just cleared the hover flag.
    if (m_tracking)
        HandleMouseMove(-1, -1);
}

void zelControl::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        m_pressed = true;
    else
        QWidget::mousePressEvent(event); // the window's menu on the right button
}

void zelControl::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton || !m_pressed) {
        QWidget::mouseReleaseEvent(event);
        return;
    }
    m_pressed = false;
    if (rect().contains(event->position().toPoint()))
        Press();
}

void zelControl::Press()
{
    if (!m_enabled)
        return;
    OnClick();
    Q_EMIT Click();
    m_hover = false;
}

void zelControl::keyPressEvent(QKeyEvent *event)
{
    // Keys mean nothing to the control itself; they go on to the window.
    Q_EMIT KeyDown(keycodes::ToVirtualKey(event->key()),
                   keycodes::ToShiftState(event->modifiers()));
}

