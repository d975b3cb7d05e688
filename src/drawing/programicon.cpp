// SPDX-License-Identifier: GPL-3.0-or-later
#include "drawing/programicon.h"

#include "drawing/paintedicon.h"

#include <QCoreApplication>
#include <QIcon>
#include <QLinearGradient>
#include <QPainter>
#include <QPointer>

namespace {

// Two flash cards, the front one a card face, painted into a square of side
// `size` at the painter's origin.
void paintCards(QPainter &p, int size)
{
    const qreal s = size / 64.0;
    // The card behind.
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(0x9F, 0xA8, 0xF0));
    p.save();
    p.translate(34 * s, 30 * s);
    p.rotate(12);
    p.drawRoundedRect(QRectF(-24 * s, -17 * s, 48 * s, 34 * s), 5 * s, 5 * s);
    p.restore();
    // The card face in front.
    QLinearGradient face(4 * s, 0, 52 * s, 0);
    face.setColorAt(0.0, Qt::black);
    face.setColorAt(0.5, QColor(0x49, 0x55, 0xDE));
    face.setColorAt(1.0, Qt::black);
    const QRectF front(4 * s, 20 * s, 48 * s, 34 * s);
    p.setBrush(face);
    p.setPen(QPen(QColor(0xDD, 0xE2, 0xFF), qMax<qreal>(1.0, 1.2 * s)));
    p.drawRoundedRect(front, 5 * s, 5 * s);
    QFont font(QStringLiteral("Tahoma"));
    font.setBold(true);
    font.setPixelSize(qMax(6, int(24 * s)));
    p.setFont(font);
    p.setPen(Qt::white);
    p.drawText(front, Qt::AlignCenter, QStringLiteral("V"));
}

// Every window asks for the icon; one is made and lives as long as the
// application, which frees it while the graphics system is still there.
class IconCache : public QObject
{
public:
    using QObject::QObject;
    QIcon icon = PaintedIcon(paintCards);
};

} // namespace

QIcon ProgramIcon()
{
    static QPointer<IconCache> cache;
    if (!cache) {
        if (!QCoreApplication::instance())
            return PaintedIcon(paintCards);
        cache = new IconCache(QCoreApplication::instance());
    }
    return cache->icon;
}
