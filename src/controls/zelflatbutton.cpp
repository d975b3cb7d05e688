// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/zelflatbutton.h"

#include "controls/propertybag.h"
#include "drawing/cmemdc.h"

using namespace Qt::Literals::StringLiterals;

namespace {
constexpr int kCaptionFormat = 37; // centre, vertical centre, single line
}

zelFlatButton::zelFlatButton(QWidget *parent) : zelControl(parent)
{
    InitProperties();
}

void zelFlatButton::InitProperties()
{
    // Every other property starts at its member's own default.
    m_caption = objectName();
}

void zelFlatButton::ReadProperties(const PropertyBag &bag)
{
    ReadCommonProperties(bag);
    m_backcolorMouse = bag.ReadProperty(u"bcm"_s, 33023u).toUInt();
    m_backcolorDisabled = bag.ReadProperty(u"bcd"_s, 0u).toUInt();
    m_forecolorDisabled = bag.ReadProperty(u"fcd"_s, 0x808080u).toUInt();
}

void zelFlatButton::WriteProperties(PropertyBag &bag) const
{
    WriteCommonProperties(bag);
    bag.WriteProperty(u"bcm"_s, m_backcolorMouse, 33023u);
    bag.WriteProperty(u"bcd"_s, m_backcolorDisabled, 0u);
    bag.WriteProperty(u"fcd"_s, m_forecolorDisabled, 0x808080u);
}

void zelFlatButton::Paint(cMemDC &dc, const QRect &client)
{
    int l = client.left(), t = client.top(), r = client.left() + client.width(),
        b = client.top() + client.height();
    if (!m_enabled) {
        dc.Rectangle(l, t, r, b, m_forecolorDisabled, m_backcolorDisabled);
        dc.SetForeColor(m_forecolorDisabled);
        dc.DrawText(m_caption, l, t, r, b, kCaptionFormat);
        return;
    }
    const quint32 back = m_hover ? m_backcolorMouse : m_backcolor;
    const quint32 fore = m_hover ? m_forecolorMouse : m_forecolor;
    dc.Rectangle(l, t, r, b, fore, back);
    ++l, ++t, --r, --b;
    // The shadow: the fore colour at a quarter of its intensity, up and left.
    dc.SetForeColor(cMemDC::BlendColour(cMemDC::TranslateColor(fore), 0, 0.25));
    int sl = l - 1, st = t - 1, sr = r - 1, sb = b - 1;
    dc.DrawText(m_caption, sl, st, sr, sb, kCaptionFormat);
    dc.SetForeColor(fore);
    dc.DrawText(m_caption, l, t, r, b, kCaptionFormat);
}
