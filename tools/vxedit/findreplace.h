// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>

#include <optional>

class ChapterModel;
class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QUndoStack;

// Finding and replacing text in the chapter's cards.
namespace findreplace {

struct Options
{
    QString text;
    bool matchCase = false;
    bool inQuestion = true;
    bool inAnswer = true;
    bool inNote = true;
};

struct Cell
{
    int row;
    int column;
};

// The next cell after `from` (in reading order, wrapping round) whose text
// holds the search text; from.row -1 starts at the top.
std::optional<Cell> FindNext(const ChapterModel &model, Cell from, const Options &options);
// Replaces the text everywhere it is found, as one undoable step; returns how
// many cells changed.
int ReplaceAll(ChapterModel &model, QUndoStack &undo, const Options &options,
               const QString &replacement);

} // namespace findreplace

class FindReplaceDialog : public QDialog
{
    Q_OBJECT

public:
    FindReplaceDialog(ChapterModel &model, QUndoStack &undo, QWidget *parent = nullptr);

    QLineEdit *findText;
    QLineEdit *replaceText;
    QCheckBox *matchCase;
    QCheckBox *inQuestion;
    QCheckBox *inAnswer;
    QCheckBox *inNote;
    QPushButton *findNext;
    QPushButton *replace;
    QPushButton *replaceAll;
    QLabel *result;

    findreplace::Options CurrentOptions() const;
    void FindNext();
    void ReplaceCurrent();
    void ReplaceEverywhere();

Q_SIGNALS:
    // The cell found, for the window to show it.
    void found(int row, int column);

private:
    ChapterModel &m_model;
    QUndoStack &m_undo;
    std::optional<findreplace::Cell> m_current;
};
