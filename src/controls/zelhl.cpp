// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/zelhl.h"

#include "controls/propertybag.h"
#include "drawing/cmemdc.h"

#include <QFontMetrics>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;

namespace {
constexpr int kCaptionFormat = 32; // single line
}

zelHL::zelHL(QWidget *parent) : zelControl(parent), m_timer(new QTimer(this))
{
    connect(m_timer, &QTimer::timeout, this, &zelHL::Redraw);
    InitProperties();
}

void zelHL::InitProperties()
{
    // Every other property starts at its member's own default.
    m_caption = objectName();
}

void zelHL::ReadProperties(const PropertyBag &bag)
{
    ReadCommonProperties(bag);
}

void zelHL::WriteProperties(PropertyBag &bag) const
{
    WriteCommonProperties(bag);
}

LogicalFont zelHL::CaptionFont() const
{
    return LogicalFont::fromQFont(font());
}

int zelHL::PreferredWidth() const
{
    // The control follows its text; its height stays as it is.
    return QFontMetrics(CaptionFont().toQFont()).horizontalAdvance(m_caption);
}

void zelHL::Paint(cMemDC &dc, const QRect &client)
{
    dc.FillRect(client.left(), client.top(), client.left() + client.width(),
                client.top() + client.height(), m_backcolor);

    LogicalFont font = CaptionFont();
    quint32 color;
    if (m_enabled) {
        font.underline = m_hover;
        color = m_hover ? m_forecolorMouse : m_forecolor;
    } else {
        font.underline = false;
        color = cMemDC::BlendColour(cMemDC::TranslateColor(m_forecolor),
                                    cMemDC::TranslateColor(m_backcolor), 0.25);
    }
    dc.SetFont(font);
    dc.SetForeColor(color);
    int l = client.left(), t = client.top(), r = client.left() + client.width(),
        b = client.top() + client.height();
    dc.DrawText(m_caption, l, t, r, b, kCaptionFormat);
}
