// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>

// The About box: the program's name, version and notice, and the Qt it runs on.
class frmAbout : public QDialog
{
    Q_OBJECT

public:
    explicit frmAbout(QWidget *parent = nullptr);

    // Loads the box, shows it modally and unloads it.
    static void ShowAbout(QWidget *owner);

protected:
    void paintEvent(QPaintEvent *event) override;
};
