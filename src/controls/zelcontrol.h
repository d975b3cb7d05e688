// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/widgetsurface.h"

#include <QWidget>

class cMemDC;
class PropertyBag;

// What the owner-drawn controls share: painting through an off-screen
// surface into the control's own picture, hover tracking with the hand cursor,
// the enabled state of their own (a disabled control still tracks the mouse
// and still passes keys on, it only ignores clicks and paints greyed), and
// the events Click, MouseOver, MouseOut and KeyDown.
//
// The control repaints on resize, on every mouse move and when its caption
// changes; other property changes show at the next of those, as designed
// (the link repaints at every change).
class zelControl : public QWidget
{
    Q_OBJECT

public:
    explicit zelControl(QWidget *parent = nullptr);

    quint32 Backcolor() const { return m_backcolor; }
    void SetBackcolor(quint32 color)
    {
        m_backcolor = color;
        PropertyChanged();
    }
    quint32 Forecolor() const { return m_forecolor; }
    void SetForecolor(quint32 color)
    {
        m_forecolor = color;
        PropertyChanged();
    }
    quint32 ForecolorMouse() const { return m_forecolorMouse; }
    void SetForecolorMouse(quint32 color)
    {
        m_forecolorMouse = color;
        PropertyChanged();
    }
    QString Caption() const { return m_caption; }
    void SetCaption(const QString &caption);
    bool Enabled() const { return m_enabled; }
    void SetEnabled(bool enabled)
    {
        m_enabled = enabled;
        PropertyChanged();
    }
    bool Hovering() const { return m_hover; }

    // A mouse move at (x, y) in the control's coordinates. A point exactly on
    // the width or height still counts as inside.
    void HandleMouseMove(int x, int y);
    // Paints the control into its picture now.
    void Redraw();
    // What a click does, for keyboards and assistive tools: nothing when
    // disabled, else the control's own step and Click.
    void Press();

    // The design-time properties: a new control's defaults, and reading and
    // writing them by their short keys (a value at its default is not stored).
    virtual void InitProperties() = 0;
    virtual void ReadProperties(const PropertyBag &bag) = 0;
    virtual void WriteProperties(PropertyBag &bag) const = 0;

    const WindowSurface &surface() const { return m_surface; }

Q_SIGNALS:
    void Click();
    void MouseOver();
    void MouseOut();
    void KeyDown(int keyCode, int shift);

protected:
    virtual void Paint(cMemDC &dc, const QRect &client) = 0;
    // What a click does before Click is raised (the check box flips itself).
    virtual void OnClick() {}
    // Whether the control raises MouseOver and MouseOut (the link does not).
    virtual bool RaisesHoverEvents() const { return true; }
    // The width the control takes for itself, or -1 to keep the one it has.
    virtual int PreferredWidth() const { return -1; }
    // After a colour or the enabled state was set.
    virtual void PropertyChanged() {}

    void ReadCommonProperties(const PropertyBag &bag);
    void WriteCommonProperties(PropertyBag &bag) const;

    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

    quint32 m_backcolor = 0xFF0000;
    quint32 m_forecolor = 0;
    quint32 m_forecolorMouse = 0;
    QString m_caption;
    bool m_enabled = true;
    bool m_hover = false;

private:
    WidgetSurface m_surface;
    bool m_pressed = false;
    bool m_redrawing = false;
    bool m_tracking = false; // the pointer was last seen inside
};
