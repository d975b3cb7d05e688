// SPDX-License-Identifier: GPL-3.0-or-later
#include "windows/frmsetup.h"

#include "core/programstate.h"
#include "korva/ikorvalite.h"
#include "settings/settingskeys.h"
#include "windows/programstyle.h"
#include "windows/windowplacement.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

frmSetup::frmSetup(QWidget *owner)
    : QDialog(owner)
    , Label1(new QLabel(u"Welcome to Vocabrix 2007"_s, this))
    , Label2(new QLabel(u"This wizard will help you customize the program to your preferences."_s,
                        this))
    , Frame1(new QGroupBox(
              u"Automatic Trouble Marking - You can modify these settings later in the options box."_s,
              this))
    , Option1(new QRadioButton(u"I &want the cards to be marked as trouble cards by default"_s,
                               Frame1))
    , Label3(new QLabel(
              u"Select this option if you normally don't get the answers right on the first try."_s,
              Frame1))
    , Option2(new QRadioButton(u"I do &NOT want the cards to be marked as trouble by default"_s,
                               Frame1))
    , Label4(new QLabel(
              u"Select this option if you normally get the answers right on the first try."_s,
              Frame1))
    , Check1(new QCheckBox(u"Show mouse &hover descriptions"_s, this))
    , Command1(new QPushButton(u"&Finished"_s, this))
{
    setObjectName(u"frmSetup"_s);
    setWindowTitle(u"Vocabrix 2007 Initial Setup"_s);
    setModal(true);

    QFont title = Label1->font();
    title.setPointSizeF(title.pointSizeF() * 1.6);
    title.setBold(true);
    Label1->setFont(title);
    Label2->setWordWrap(true);
    QFont frameTitle = Frame1->font();
    frameTitle.setBold(true);
    Frame1->setFont(frameTitle);

    // One exclusive group, with nothing chosen to begin with.
    auto *group = new QButtonGroup(this);
    group->addButton(Option1);
    group->addButton(Option2);
    Option1->setChecked(false);
    Option2->setChecked(false);
    QFont plain = font();
    plain.setBold(false);
    for (QWidget *inside : {static_cast<QWidget *>(Option1), static_cast<QWidget *>(Option2),
                            static_cast<QWidget *>(Label3), static_cast<QWidget *>(Label4)})
        inside->setFont(plain);
    for (QLabel *explain : {Label3, Label4}) {
        explain->setWordWrap(true);
        explain->setIndent(24);
        explain->setForegroundRole(QPalette::PlaceholderText);
    }
    auto *frame = new QVBoxLayout(Frame1);
    frame->setSpacing(4);
    frame->addWidget(Option1);
    frame->addWidget(Label3);
    frame->addSpacing(8);
    frame->addWidget(Option2);
    frame->addWidget(Label4);

    Check1->setChecked(true);
    Command1->setEnabled(false);
    Command1->setDefault(true);
    Command1->setMinimumWidth(110);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 20, 24, 18);
    layout->setSpacing(12);
    layout->addWidget(Label1);
    layout->addWidget(Label2);
    layout->addWidget(Frame1);
    layout->addWidget(Check1);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(Command1);
    layout->addLayout(buttons);
    setFixedWidth(700);

    connect(Option1, &QRadioButton::clicked, Command1, [this] { Command1->setEnabled(true); });
    connect(Option2, &QRadioButton::clicked, Command1, [this] { Command1->setEnabled(true); });
    connect(Command1, &QPushButton::clicked, this, &frmSetup::Finish);

    modMain::RemoveCloseCommand(this);
}

void frmSetup::Finish()
{
    if (g_MasterDb) {
        g_MasterDb->SetValue(settings::kTroubleByDefault, QString(),
                             settings::FlagValue(Option1->isChecked()), settings::kGroupNone);
        g_MasterDb->SetValue(settings::kShowMouseHover, QString(),
                             settings::FlagValue(Check1->isChecked()), settings::kGroupNone);
    }
    accept();
}
