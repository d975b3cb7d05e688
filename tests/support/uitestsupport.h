// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What the tests of the program's windows share: the windows' headers, the
// widgets they reach into, and helpers to set a study session up and tear
// it down.
#include "app/modmain.h"
#include "cards/deck.h"
#include "controls/zelcheck.h"
#include "controls/zelflatbutton.h"
#include "controls/zelhl.h"
#include "core/programstate.h"
#include "drawing/logicalfont.h"
#include "drawing/r_renderer.h"
#include "korva/ikorvalite.h"
#include "screens.h"
#include "settings/r_data.h"
#include "testsupport.h"
#include "windows/forms.h"
#include "windows/frmmain.h"
#include "windows/modrender.h"

#include <QAction>
#include <QCheckBox>
#include <QDir>
#include <QFileInfo>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>

#include <memory>

// Deletes the windows that were unloaded (they go once control returns to
// the event loop).
void FlushDeletes();
// Unloads every window and drops the study window's renderer.
void UnloadAllForms();
// Ends a test of the study window: its menu closed, every window unloaded,
// and the renderer, random source, side coin and browser a test may have set
// back to the program's own.
void ResetStudyWindow();
// A deck of these (question, answer) cards from the chapter "Kapitel", the
// given indices marked as trouble cards, on show in the study window.
void StudyDeck(const std::vector<std::pair<QString, QString>> &cards, const QList<int> &trouble = {});
// A deck of n cards "q0".."q{n-1}" / "a0".. the same way.
void StudyDeck(int n, const QList<int> &trouble = {});

// Fails the running test unless Tab visits every control of the window that
// is on show, in reading order (toolbar buttons may have keys instead).
void checkTabOrder(QWidget *window);
// Fails the running test when two controls on show in the window answer to
// the same Alt+letter (buttons, boxes, tabs, labels of a field).
void checkMnemonics(QWidget *window);

// The window as text, one line per widget, menu entry and list row: where it
// stands and what a person reads, sets or presses there (captions, tips,
// keys, states, fonts and colours that differ from the parent's; paths under
// the home folder read "~"). Fails the running test when that text differs
// from the layout recorded as tests/windows/layouts/<name>.txt, naming the
// first lines that differ. With VOCABRIX_RECORD_LAYOUTS=1 it records the
// layout instead.
void checkLayout(QWidget *window, const QString &name);
