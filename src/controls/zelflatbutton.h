// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/zelcontrol.h"

// A flat push button: a one-pixel border and a centred caption with a soft
// shadow, in one colour pair normally, another under the mouse and a third
// when disabled.
class zelFlatButton : public zelControl
{
    Q_OBJECT

public:
    explicit zelFlatButton(QWidget *parent = nullptr);

    quint32 BackcolorMouse() const { return m_backcolorMouse; }
    void SetBackcolorMouse(quint32 color) { m_backcolorMouse = color; }
    quint32 BackcolorDisabled() const { return m_backcolorDisabled; }
    void SetBackcolorDisabled(quint32 color) { m_backcolorDisabled = color; }
    quint32 ForecolorDisabled() const { return m_forecolorDisabled; }
    void SetForecolorDisabled(quint32 color) { m_forecolorDisabled = color; }

    void InitProperties() override;
    void ReadProperties(const PropertyBag &bag) override;
    void WriteProperties(PropertyBag &bag) const override;

protected:
    void Paint(cMemDC &dc, const QRect &client) override;

private:
    quint32 m_backcolorMouse = 33023; // orange
    quint32 m_backcolorDisabled = 0;
    quint32 m_forecolorDisabled = 0x808080;
};
