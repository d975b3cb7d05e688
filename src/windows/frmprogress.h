// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "windows/forms.h"

#include <QWidget>

class QLabel;
class QProgressBar;

// A small window with a progress bar, shown while chapters load or the deck
// is shuffled.
class frmProgress : public QWidget, public forms::Unloadable
{
    Q_OBJECT

public:
    explicit frmProgress(QWidget *owner = nullptr);

    void SetCaption(const QString &caption);
    void SetRange(int minimum, int maximum);
    int Value() const;
    void SetValue(int value);
    int Maximum() const;

    void OnUnload() override {}

private:
    QLabel *m_label;
    QProgressBar *m_bar;
};
