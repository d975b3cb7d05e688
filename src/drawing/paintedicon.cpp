// SPDX-License-Identifier: GPL-3.0-or-later
#include "drawing/paintedicon.h"

#include <QHash>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

namespace {

class PaintedIconEngine final : public QIconEngine
{
public:
    explicit PaintedIconEngine(IconPainter paint) : m_paint(std::move(paint)) {}

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State) override
    {
        painter->save();
        painter->translate(rect.topLeft());
        if (mode == QIcon::Disabled)
            painter->setOpacity(0.4);
        painter->setRenderHint(QPainter::Antialiasing);
        m_paint(*painter, qMin(rect.width(), rect.height()));
        painter->restore();
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        const int side = qMax(1, qMin(size.width(), size.height()));
        const quint64 key = quint64(side) << 8 | quint64(mode);
        if (auto cached = m_pixmaps.find(key); cached != m_pixmaps.end())
            return *cached;
        QPixmap pixmap(side, side);
        pixmap.fill(Qt::transparent);
        QPainter p(&pixmap);
        paint(&p, pixmap.rect(), mode, state);
        p.end();
        m_pixmaps.insert(key, pixmap);
        return pixmap;
    }

    QList<QSize> availableSizes(QIcon::Mode, QIcon::State) override
    {
        return {QSize(16, 16), QSize(22, 22), QSize(32, 32), QSize(48, 48), QSize(64, 64),
                QSize(128, 128)};
    }

    QIconEngine *clone() const override { return new PaintedIconEngine(m_paint); }

private:
    IconPainter m_paint;
    QHash<quint64, QPixmap> m_pixmaps;
};

const QColor kBlue(0x49, 0x55, 0xDE);
const QColor kInk(0x30, 0x34, 0x50);

// A card outline on a 16-unit grid.
void card(QPainter &p, qreal u)
{
    p.setPen(QPen(kInk, qMax<qreal>(1.0, 1.2 * u)));
    QLinearGradient face(1 * u, 0, 13 * u, 0);
    face.setColorAt(0.0, QColor(0xDD, 0xE2, 0xFF));
    face.setColorAt(0.5, QColor(0xA9, 0xB2, 0xF4));
    face.setColorAt(1.0, QColor(0xDD, 0xE2, 0xFF));
    p.setBrush(face);
    p.drawRoundedRect(QRectF(1.5 * u, 2.5 * u, 11 * u, 8 * u), 1.5 * u, 1.5 * u);
}

// A round badge at the lower right with a mark in it.
void badge(QPainter &p, qreal u, const QColor &colour)
{
    p.setPen(Qt::NoPen);
    p.setBrush(colour);
    p.drawEllipse(QRectF(8 * u, 8 * u, 7.5 * u, 7.5 * u));
    p.setBrush(Qt::white);
}

} // namespace

QIcon PaintedIcon(IconPainter paint)
{
    return QIcon(new PaintedIconEngine(std::move(paint)));
}

QIcon CommandIconFor(CommandIcon command)
{
    return PaintedIcon([command](QPainter &p, int size) {
        const qreal u = size / 16.0;
        switch (command) {
        case CommandIcon::AddChapter:
            card(p, u);
            badge(p, u, QColor(0x2E, 0x9E, 0x4F));
            p.drawRect(QRectF(11 * u, 9.5 * u, 1.5 * u, 4.5 * u));
            p.drawRect(QRectF(9.5 * u, 11 * u, 4.5 * u, 1.5 * u));
            break;
        case CommandIcon::RemoveChapter:
            card(p, u);
            badge(p, u, QColor(0xC8, 0x3A, 0x3A));
            p.drawRect(QRectF(9.5 * u, 11 * u, 4.5 * u, 1.5 * u));
            break;
        case CommandIcon::Resume: {
            card(p, u);
            badge(p, u, kBlue);
            QPainterPath play;
            play.moveTo(10.7 * u, 9.8 * u);
            play.lineTo(13.6 * u, 11.75 * u);
            play.lineTo(10.7 * u, 13.7 * u);
            play.closeSubpath();
            p.drawPath(play);
            break;
        }
        case CommandIcon::ResumeSession: {
            card(p, u);
            badge(p, u, QColor(0xD0, 0x80, 0x20));
            p.setBrush(Qt::NoBrush);
            p.setPen(QPen(Qt::white, 1.2 * u, Qt::SolidLine, Qt::FlatCap));
            p.drawArc(QRectF(9.9 * u, 9.9 * u, 3.7 * u, 3.7 * u), 90 * 16, 270 * 16);
            p.setPen(Qt::NoPen);
            p.setBrush(Qt::white);
            QPainterPath head;
            head.moveTo(11.75 * u, 8.9 * u);
            head.lineTo(13.3 * u, 9.9 * u);
            head.lineTo(11.75 * u, 10.9 * u);
            head.closeSubpath();
            p.drawPath(head);
            break;
        }
        case CommandIcon::About:
            p.setPen(Qt::NoPen);
            p.setBrush(kBlue);
            p.drawEllipse(QRectF(1 * u, 1 * u, 14 * u, 14 * u));
            p.setBrush(Qt::white);
            p.drawEllipse(QRectF(7 * u, 3.5 * u, 2 * u, 2 * u));
            p.drawRoundedRect(QRectF(7 * u, 6.5 * u, 2 * u, 6.5 * u), 0.6 * u, 0.6 * u);
            break;
        }
    });
}
