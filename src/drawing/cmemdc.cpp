// SPDX-License-Identifier: GPL-3.0-or-later
#include "drawing/cmemdc.h"

#include "core/osversion.h"
#include "core/rounding.h"
#include "drawing/windowsurface.h"

#include <QFontMetrics>
#include <QGuiApplication>
#include <QPainter>
#include <QPalette>

#include <cmath>

namespace {

QColor toQColor(quint32 rgb)
{
    return QColor(int(rgb & 0xFF), int((rgb >> 8) & 0xFF), int((rgb >> 16) & 0xFF));
}

quint32 fromQColor(const QColor &c)
{
    return quint32(c.red()) | (quint32(c.green()) << 8) | (quint32(c.blue()) << 16);
}

// The system colour indices of the platform and the palette colours that stand
// for them here.
QColor systemColor(int index)
{
    const QPalette palette = qGuiApp ? QGuiApplication::palette() : QPalette();
    switch (index) {
    case 0:  // scroll bar
    case 15: // button face
    case 22: // 3-D light
        return palette.color(QPalette::Button);
    case 1:  // desktop
    case 12: // application workspace
        return palette.color(QPalette::Dark);
    case 2:  // active caption
    case 13: // highlight
    case 26: // hot-tracked item
    case 27: // active caption gradient
        return palette.color(QPalette::Highlight);
    case 3: // inactive caption
    case 28:
        return palette.color(QPalette::Inactive, QPalette::Highlight);
    case 4:  // menu
    case 5:  // window
    case 30: // menu bar
        return palette.color(QPalette::Base);
    case 6:  // window frame
    case 10: // active border
    case 11: // inactive border
        return palette.color(QPalette::Mid);
    case 7: // menu text
    case 8: // window text
        return palette.color(QPalette::Text);
    case 9:  // caption text
    case 14: // highlighted text
        return palette.color(QPalette::HighlightedText);
    case 16: // button shadow
        return palette.color(QPalette::Shadow);
    case 17: // grey text
    case 19: // inactive caption text
        return palette.color(QPalette::Disabled, QPalette::Text);
    case 18: // button text
        return palette.color(QPalette::ButtonText);
    case 20: // button highlight
        return palette.color(QPalette::Light);
    case 21: // 3-D dark shadow
        return palette.color(QPalette::Shadow);
    case 23: // tooltip text
        return palette.color(QPalette::ToolTipText);
    case 24: // tooltip background
        return palette.color(QPalette::ToolTipBase);
    case 29: // menu highlight
        return palette.color(QPalette::Highlight);
    default:
        return Qt::black;
    }
}

Qt::Alignment alignmentFor(int format)
{
    Qt::Alignment a = Qt::AlignLeft;
    if (format & cMemDC::DT_CENTER)
        a = Qt::AlignHCenter;
    else if (format & cMemDC::DT_RIGHT)
        a = Qt::AlignRight;
    // Vertical placement only exists for single lines.
    if ((format & cMemDC::DT_SINGLELINE) && (format & cMemDC::DT_VCENTER))
        a |= Qt::AlignVCenter;
    else if ((format & cMemDC::DT_SINGLELINE) && (format & cMemDC::DT_BOTTOM))
        a |= Qt::AlignBottom;
    else
        a |= Qt::AlignTop;
    return a;
}

int textFlags(int format)
{
    int flags = int(alignmentFor(format));
    if (format & cMemDC::DT_SINGLELINE)
        flags |= Qt::TextSingleLine;
    else if (format & cMemDC::DT_WORDBREAK)
        flags |= Qt::TextWordWrap;
    return flags;
}

} // namespace

cMemDC::~cMemDC()
{
    Destroy();
}

void cMemDC::Create(int &width, int &height, WindowSurface *compatible, WindowSurface *existing)
{
    if (m_valid)
        Destroy();
    m_width = qMax(0, width);
    m_height = qMax(0, height);
    m_target = compatible;
    // The surface draws at the scale of the window it is made for, so it
    // copies onto that window pixel for pixel.
    m_ratio = existing ? existing->devicePixelRatio()
                       : (compatible ? compatible->devicePixelRatio() : 1.0);
    if (existing) {
        m_adopted = existing;
    } else if (m_width > 0 && m_height > 0) {
        m_own = QImage(DeviceSize(QSize(m_width, m_height), m_ratio), QImage::Format_RGB32);
        m_own.setDevicePixelRatio(m_ratio);
        m_own.fill(Qt::black);
    }
    m_valid = true;
    if (compatible) {
        m_foreColor = compatible->textColor;
        SetFont(compatible->font);
    }
}

void cMemDC::Destroy()
{
    m_own = QImage();
    m_adopted = nullptr;
    m_target = nullptr;
    m_clip = QRect();
    m_valid = false;
}

void cMemDC::SetClip(const QRect &clip)
{
    if (m_valid)
        m_clip = clip;
}

void cMemDC::begin(QPainter &painter)
{
    painter.begin(&canvas());
    if (!m_clip.isNull())
        painter.setClipRect(m_clip);
}

const QImage &cMemDC::Image() const
{
    return m_adopted ? m_adopted->image() : m_own;
}

QImage &cMemDC::canvas()
{
    return m_adopted ? m_adopted->image() : m_own;
}

bool cMemDC::drawable() const
{
    return m_valid && !Image().isNull();
}

void cMemDC::SetFont(const LogicalFont &font)
{
    if (!m_valid)
        return;
    m_font = font;
    m_createdFont = font.toQFont();
}

void cMemDC::SetForeColor(quint32 color)
{
    if (m_valid)
        m_foreColor = TranslateColor(color);
}

quint32 cMemDC::TranslateColor(quint32 color)
{
    if (color & 0x80000000u)
        return fromQColor(systemColor(int(color & 0xFF)));
    return color & 0x00FFFFFFu;
}

void cMemDC::FillRect(int x1, int y1, int x2, int y2, quint32 color)
{
    if (!drawable() || x2 <= x1 || y2 <= y1)
        return;
    QPainter p;
    begin(p);
    p.fillRect(QRect(x1, y1, x2 - x1, y2 - y1), toQColor(TranslateColor(color)));
}

void cMemDC::Gradient(int x1, int y1, int x2, int y2, quint32 color1, quint32 color2)
{
    if (!m_valid)
        return;
    const quint32 c1 = TranslateColor(color1), c2 = TranslateColor(color2);
    const int start = x1, end = x2;

    if (OsVersionCode() >= 411) {
        // The system fill: colour1 at the start edge, running linearly towards
        // colour2 at the (exclusive) end edge, computed for every device pixel.
        QImage &img = canvas();
        if (!drawable() || end <= start)
            return;
        const qreal ratio = img.devicePixelRatio();
        auto device = [ratio](int logical) { return int(std::lround(logical * ratio)); };
        QRect area = QRect(QPoint(device(x1), device(y1)), QPoint(device(x2) - 1, device(y2) - 1))
                             .intersected(img.rect());
        if (!m_clip.isNull())
            area &= QRect(QPoint(device(m_clip.left()), device(m_clip.top())),
                          QPoint(device(m_clip.left() + m_clip.width()) - 1,
                                 device(m_clip.top() + m_clip.height()) - 1));
        if (area.isEmpty())
            return;
        const qint64 first = device(start), span = device(end) - first;
        if (span <= 0)
            return;
        auto at = [&](int i) {
            const qint64 d = i - first;
            quint32 out = 0;
            for (int shift = 0; shift <= 16; shift += 8) {
                const qint64 a = (c1 >> shift) & 0xFF, b = (c2 >> shift) & 0xFF;
                out |= quint32((a * (span - d) + b * d + span / 2) / span) << shift;
            }
            return qRgb(int(out & 0xFF), int((out >> 8) & 0xFF), int((out >> 16) & 0xFF));
        };
        QRgb *firstLine = reinterpret_cast<QRgb *>(img.scanLine(area.top()));
        for (int x = area.left(); x <= area.right(); ++x)
            firstLine[x] = at(x);
        for (int y = area.top() + 1; y <= area.bottom(); ++y)
            std::copy(firstLine + area.left(), firstLine + area.right() + 1,
                      reinterpret_cast<QRgb *>(img.scanLine(y)) + area.left());
        return;
    }

    // Older systems: one stripe per pixel, both ends included. The blend runs
    // from colour2 at the start to colour1 at the end, the mirror image of the
    // system fill, and is kept so.
    if (end == start) {
        FillRect(start, y1, start + 1, y2, BlendColour(c1, c2, 0.0));
        return;
    }
    for (int i = start; i <= end; ++i)
        FillRect(i, y1, i + 1, y2, BlendColour(c1, c2, double(i - start) / double(end - start)));
}

quint32 cMemDC::BlendColour(quint32 color1, quint32 color2, double t)
{
    quint32 out = 0;
    for (int shift = 0; shift <= 16; shift += 8) {
        const double a = (color1 >> shift) & 0xFF, b = (color2 >> shift) & 0xFF;
        const qint64 v = qBound(qint64(0), RoundHalfEven((1.0 - t) * b + t * a), qint64(255));
        out |= quint32(v) << shift;
    }
    return out;
}

int cMemDC::DrawText(const QString &text, int left, int top, int right, int bottom, int format)
{
    if (!m_valid)
        return 0;
    const int flags = textFlags(format);
    if (!drawable())
        return 0;
    const QRect box(left, top, right - left, bottom - top);
    QPainter p;
    begin(p);
    p.setFont(m_createdFont);
    QRect used; // text goes over what is there, never on a box of its own
    p.setPen(toQColor(m_foreColor));
    p.drawText(box, flags, text, &used); // cut off at the box's edges
    return used.height();
}

int cMemDC::TextWidth(const QString &text) const
{
    if (!m_valid)
        return 0;
    return QFontMetrics(m_createdFont).horizontalAdvance(text);
}

int cMemDC::TextHeight(const QString &text) const
{
    Q_UNUSED(text);
    if (!m_valid)
        return 0;
    return QFontMetrics(m_createdFont).height();
}

void cMemDC::Blit(WindowSurface *destination, int x, int y, int width, int height, int sourceX,
                  int sourceY, quint32 rop)
{
    WindowSurface *dest = destination ? destination : m_target;
    if (!drawable() || !dest || dest->image().isNull() || rop != SRCCOPY)
        return;
    const int w = width ? width : m_width, h = height ? height : m_height;
    QImage &to = dest->image();
    if (&to == &Image())
        return; // the surface is the window's own picture
    QPainter p(&to);
    p.setCompositionMode(QPainter::CompositionMode_Source);
    p.drawImage(QRectF(x, y, w, h), Image(),
                QRectF(sourceX * m_ratio, sourceY * m_ratio, w * m_ratio, h * m_ratio));
    dest->Changed(QRect(x, y, w, h));
}

void cMemDC::AlphaBlit(WindowSurface *destination, int x, int y, int width, int height, int sourceX,
                       int sourceY, int alpha)
{
    WindowSurface *dest = destination ? destination : m_target;
    if (!drawable() || !dest || dest->image().isNull())
        return;
    Q_UNUSED(sourceX);
    Q_UNUSED(sourceY);
    const int w = width ? width : m_width, h = height ? height : m_height;
    const int a = qBound(0, alpha, 255);
    if (a == 0)
        return;
    QImage &to = dest->image();
    if (&to == &Image())
        return;
    // The whole surface, scaled to the destination rectangle, over what the
    // window shows, with one alpha for every pixel.
    QPainter p(&to);
    p.setOpacity(a / 255.0);
    p.drawImage(QRectF(x, y, w, h), Image(), QRectF(0, 0, m_width * m_ratio, m_height * m_ratio));
    dest->Changed(QRect(x, y, w, h));
}

void cMemDC::Rectangle(int x1, int y1, int x2, int y2, quint32 penColor, quint32 brushColor,
                       int penWidth)
{
    if (!drawable() || x2 <= x1 || y2 <= y1)
        return;
    FillRect(x1, y1, x2, y2, brushColor);
    for (int i = 0; i < penWidth && x1 + i < x2 - i && y1 + i < y2 - i; ++i)
        FrameRect(x1 + i, y1 + i, x2 - i, y2 - i, penColor);
}

void cMemDC::FrameRect(int x1, int y1, int x2, int y2, quint32 color)
{
    if (!drawable() || x2 <= x1 || y2 <= y1)
        return;
    FillRect(x1, y1, x2, y1 + 1, color);
    FillRect(x1, y2 - 1, x2, y2, color);
    FillRect(x1, y1, x1 + 1, y2, color);
    FillRect(x2 - 1, y1, x2, y2, color);
}

void cMemDC::Line(int x1, int y1, int x2, int y2, quint32 color, int penWidth)
{
    if (!drawable())
        return;
    QPainter p;
    begin(p);
    QPen pen(toQColor(TranslateColor(color)));
    pen.setWidth(qMax(1, penWidth));
    pen.setCapStyle(Qt::FlatCap);
    p.setPen(pen);
    p.drawLine(x1, y1, x2, y2);
}

qint32 cMemDC::OsVersionCode()
{
    if (m_osVersionCode == 0) {
        if (const std::optional<OsVersion> v = QueryOsVersion())
            m_osVersionCode = v->code();
    }
    return m_osVersionCode;
}
