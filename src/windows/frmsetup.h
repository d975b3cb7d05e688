// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>

class QCheckBox;
class QGroupBox;
class QLabel;
class QPushButton;
class QRadioButton;

// The first-run setup: whether new cards start as trouble cards and whether
// mouse-hover descriptions are shown. It can only be left through
// "Finished", which stays unavailable until a trouble option is chosen.
class frmSetup : public QDialog
{
    Q_OBJECT

public:
    explicit frmSetup(QWidget *owner = nullptr);

    QLabel *Label1;
    QLabel *Label2;
    QGroupBox *Frame1;
    QRadioButton *Option1;
    QLabel *Label3;
    QRadioButton *Option2;
    QLabel *Label4;
    QCheckBox *Check1;
    QPushButton *Command1;

    // Writes both answers to the master database and closes the window.
    void Finish();

public Q_SLOTS:
    // Closing by Escape or the title bar is refused.
    void reject() override {}
};
