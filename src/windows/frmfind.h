// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "windows/forms.h"

#include <QDialog>

#include <functional>

class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QSlider;
class QStackedWidget;
class QTabBar;

// The find dialog: searches the deck's questions and answers and lists the
// cards found in the item viewer, or jumps to a card by its number.
class frmFind : public QDialog, public forms::Unloadable
{
    Q_OBJECT

public:
    static frmFind *Instance();
    static frmFind *Existing();

    QTabBar *ts;           // "Find Text" and "Go To Card"
    QLineEdit *Text2;      // what to search for
    QCheckBox *Check1;     // search in questions
    QCheckBox *Check2;     // search in answers
    QCheckBox *Check3;     // match case
    QLineEdit *Text1;      // a card number
    QLabel *Label1;        // the card numbers there are
    QSlider *Slider1;      // picks a card number too
    QPushButton *Command1; // close
    QPushButton *Command2; // view all cards
    QPushButton *Command3; // go to the card
    QPushButton *Command4; // clear the search
    QPushButton *Command5; // find

    void Search();
    void JumpToCard();
    // The card numbers follow the deck (call when it changes).
    void UpdateRange();

    void OnUnload() override;

    // What the hidden word "cause_mem_crash" does once confirmed; tests
    // put in their own.
    static void SetCrashHandler(std::function<void()> handler);

protected:
    void showEvent(QShowEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    frmFind();
    void CauseCrash();

    QStackedWidget *m_pages;
    bool m_placed = false;
};
