// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/zelaccessible.h"

#include "controls/zelcheck.h"
#include "controls/zelcontrol.h"
#include "controls/zelflatbutton.h"
#include "controls/zelhl.h"

#include <QAccessible>
#include <QAccessibleWidget>

namespace {

class ControlAccessible final : public QAccessibleWidget
{
public:
    explicit ControlAccessible(zelControl *control) : QAccessibleWidget(control, roleOf(control))
    {
        addControllingSignal(QStringLiteral("Click()"));
    }

    QString text(QAccessible::Text t) const override
    {
        if (t == QAccessible::Name)
            return control()->Caption();
        return QAccessibleWidget::text(t);
    }

    QAccessible::State state() const override
    {
        QAccessible::State s = QAccessibleWidget::state();
        s.disabled = !control()->Enabled();
        s.hotTracked = control()->Hovering();
        if (auto *check = qobject_cast<zelCheck *>(control())) {
            s.checkable = true;
            s.checked = check->Checked();
        }
        return s;
    }

    QStringList actionNames() const override
    {
        if (!control()->Enabled())
            return {};
        return {qobject_cast<zelCheck *>(control()) ? toggleAction() : pressAction()};
    }

    void doAction(const QString &name) override
    {
        if (actionNames().contains(name))
            control()->Press();
    }

private:
    zelControl *control() const { return static_cast<zelControl *>(widget()); }

    static QAccessible::Role roleOf(zelControl *control)
    {
        if (qobject_cast<zelCheck *>(control))
            return QAccessible::CheckBox;
        if (qobject_cast<zelHL *>(control))
            return QAccessible::Link;
        return QAccessible::Button;
    }
};

QAccessibleInterface *controlFactory(const QString &className, QObject *object)
{
    Q_UNUSED(className);
    if (auto *control = qobject_cast<zelControl *>(object))
        return new ControlAccessible(control);
    return nullptr;
}

} // namespace

void InstallControlAccessibility()
{
    QAccessible::installFactory(controlFactory);
}
