// SPDX-License-Identifier: GPL-3.0-or-later
#include "windows/forms.h"

#include <QPointer>
#include <QWidget>

namespace forms {

namespace {

QList<QPointer<QWidget>> &collection()
{
    static QList<QPointer<QWidget>> open;
    return open;
}

void prune()
{
    collection().removeAll(QPointer<QWidget>());
}

} // namespace

void Add(QWidget *form)
{
    if (!form || IsOpen(form))
        return;
    collection().append(form);
}

QList<QWidget *> Open()
{
    prune();
    QList<QWidget *> out;
    for (const QPointer<QWidget> &w : collection())
        out.append(w.data());
    return out;
}

bool IsOpen(const QWidget *form)
{
    for (const QPointer<QWidget> &w : collection()) {
        if (w.data() == form)
            return true;
    }
    return false;
}

void Unload(QWidget *form)
{
    if (!form || !IsOpen(form))
        return;
    collection().removeAll(QPointer<QWidget>(form));
    if (auto *unloadable = dynamic_cast<Unloadable *>(form))
        unloadable->OnUnload();
    form->hide();
    form->deleteLater();
}

QString Name(const QWidget *form)
{
    return form ? form->objectName() : QString();
}

} // namespace forms
