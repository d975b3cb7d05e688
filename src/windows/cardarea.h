// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

// The card face as assistive tools see it: an invisible child laid over the
// card that carries what the card shows (main text, side, position) as its
// accessible value and tells screen readers when it changes. Mouse events go
// through it to the study window.
class CardArea : public QWidget
{
    Q_OBJECT

public:
    explicit CardArea(QWidget *parent);

    QString Description() const { return m_description; }
    void SetDescription(const QString &description);

private:
    QString m_description;
};
