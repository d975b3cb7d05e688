// SPDX-License-Identifier: GPL-3.0-or-later
#include "windows/cardarea.h"

#include <QAccessible>
#include <QAccessibleWidget>

using namespace Qt::Literals::StringLiterals;

namespace {

class CardAreaAccessible final : public QAccessibleWidget
{
public:
    explicit CardAreaAccessible(CardArea *area) : QAccessibleWidget(area, QAccessible::StaticText)
    {
    }

    QString text(QAccessible::Text t) const override
    {
        const auto *area = static_cast<const CardArea *>(widget());
        switch (t) {
        case QAccessible::Name:
            return u"Card"_s;
        case QAccessible::Value:
        case QAccessible::Description:
            return area->Description();
        default:
            return QAccessibleWidget::text(t);
        }
    }
};

QAccessibleInterface *cardAreaFactory(const QString &, QObject *object)
{
    if (auto *area = qobject_cast<CardArea *>(object))
        return new CardAreaAccessible(area);
    return nullptr;
}

} // namespace

CardArea::CardArea(QWidget *parent) : QWidget(parent)
{
    static const bool installed = (QAccessible::installFactory(cardAreaFactory), true);
    Q_UNUSED(installed);
    setObjectName(u"CardArea"_s);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAttribute(Qt::WA_NoSystemBackground);
    setFocusPolicy(Qt::NoFocus);
}

void CardArea::SetDescription(const QString &description)
{
    if (description == m_description)
        return;
    m_description = description;
    QAccessibleValueChangeEvent event(this, description);
    QAccessible::updateAccessibility(&event);
}
