// SPDX-License-Identifier: GPL-3.0-or-later
#include "cardpreview.h"

#include "controls/widgetsurface.h"
#include "drawing/r_renderer.h"
#include "korva/chapterformat.h"
#include "settings/r_data.h"

#include <QHBoxLayout>
#include <QPaintEvent>
#include <QPainter>

using namespace Qt::Literals::StringLiterals;

class CardPreview::Face : public QWidget
{
public:
    Face(const QString &side, QWidget *parent)
        : QWidget(parent)
        , m_side(side)
        , m_surface(this, Qt::black)
    {
        setFixedSize(300, 110);
        setAttribute(Qt::WA_OpaquePaintEvent);
        m_surface.Resize(size());
        m_metrics.ColorDefaults();
        m_renderer.Initialize(this, &m_surface, &m_metrics, 50.0f, 0, 0, 0);
    }
    ~Face() override { m_renderer.Release(true); }

    void Show(QString text)
    {
        ReplaceUmlautEscapes(text);
        // An empty text draws nothing: show the side's name instead.
        m_metrics.SetMainText(text.isEmpty() ? u" "_s : text);
        m_metrics.SetCornerText(r_data::Corner::TopLeft, m_side);
        m_renderer.Draw(false);
        m_renderer.Draw(true);
        update();
    }
    const QImage &Image() const { return m_surface.image(); }

protected:
    void paintEvent(QPaintEvent *event) override
    {
        QPainter painter(this);
        m_surface.PaintOn(painter, event->rect());
    }

private:
    QString m_side;
    WidgetSurface m_surface;
    r_data m_metrics;
    r_renderer m_renderer;
};

CardPreview::CardPreview(QWidget *parent)
    : QWidget(parent)
    , m_front(new Face(u"Question"_s, this))
    , m_back(new Face(u"Answer"_s, this))
{
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_front);
    layout->addWidget(m_back);
    layout->addStretch();
    SetCard(QString(), QString());
}

CardPreview::~CardPreview() = default;

void CardPreview::SetCard(const QString &question, const QString &answer)
{
    m_front->Show(question);
    m_back->Show(answer);
}

QImage CardPreview::Front() const
{
    return m_front->Image();
}

QImage CardPreview::Back() const
{
    return m_back->Image();
}
