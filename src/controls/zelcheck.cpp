// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/zelcheck.h"

#include "controls/propertybag.h"
#include "drawing/cmemdc.h"

using namespace Qt::Literals::StringLiterals;

namespace {
constexpr int kCaptionFormat = 36; // vertical centre, single line: left-aligned
constexpr quint32 kWhite = 0xFFFFFF;
constexpr quint32 kGrey = 0x808080;
} // namespace

zelCheck::zelCheck(QWidget *parent) : zelControl(parent)
{
    InitProperties();
}

void zelCheck::InitProperties()
{
    // Every other property starts at its member's own default.
    m_caption = objectName();
}

void zelCheck::ReadProperties(const PropertyBag &bag)
{
    ReadCommonProperties(bag);
    m_checked = bag.ReadProperty(u"chk"_s, false).toBool();
}

void zelCheck::WriteProperties(PropertyBag &bag) const
{
    WriteCommonProperties(bag);
    bag.WriteProperty(u"chk"_s, m_checked, false);
}

void zelCheck::SetChecked(bool checked)
{
    m_checked = checked;
    Redraw();
}

void zelCheck::OnClick()
{
    // Flipped before Click is raised, so a handler reads the new state.
    m_checked = !m_checked;
    Redraw();
}

void zelCheck::Paint(cMemDC &dc, const QRect &client)
{
    const int left = client.left(), top = client.top();
    const int right = client.left() + client.width(), bottom = client.top() + client.height();
    dc.FillRect(left, top, right, bottom, m_backcolor);

    // The box's side follows the control's height.
    const int boxLeft = left + 2, boxTop = top + 2, boxRight = bottom - 2, boxBottom = bottom - 2;

    quint32 text;
    if (m_enabled) {
        text = m_hover ? m_forecolorMouse : m_forecolor;
        const quint32 tinted = m_hover ? m_forecolorMouse : m_backcolor;
        const quint32 outline = cMemDC::BlendColour(cMemDC::TranslateColor(tinted), kWhite, 0.75);
        dc.Rectangle(boxLeft, boxTop, boxRight, boxBottom, outline, m_backcolor);
    } else {
        text = cMemDC::BlendColour(cMemDC::TranslateColor(m_forecolor), kGrey, 0.4);
        dc.Rectangle(boxLeft, boxTop, boxRight, boxBottom, m_backcolor, m_backcolor);
    }

    dc.SetForeColor(text);
    int l = boxRight + 2, t = top, r = right, b = bottom;
    dc.DrawText(m_caption, l, t, r, b, kCaptionFormat);
    if (m_checked)
        DrawCross(dc, boxLeft, boxTop, boxRight, boxBottom, text);
}

void zelCheck::DrawCross(cMemDC &dc, int boxLeft, int boxTop, int boxRight, int boxBottom,
                         quint32 color)
{
    const int l = boxLeft + 3, t = boxTop + 3, r = boxRight - 3, b = boxBottom - 3;
    if (r <= l || b <= t)
        return;
    dc.Line(l, t, r - 1, b - 1, color, 2);
    dc.Line(r - 1, t, l, b - 1, color, 2);
}
