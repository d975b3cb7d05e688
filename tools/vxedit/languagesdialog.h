// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cards/chapterlanguages.h"

#include <QDialog>
#include <QUndoCommand>

#include <functional>

class QComboBox;

// Chooses the languages a chapter's question and answer sides are spoken in;
// either may be left to the study program's options.
class LanguagesDialog : public QDialog
{
    Q_OBJECT

public:
    explicit LanguagesDialog(const ChapterLanguages &languages, QWidget *parent = nullptr);

    QComboBox *QuestionLanguage;
    QComboBox *AnswerLanguage;

    ChapterLanguages Languages() const;
};

// Setting the chapter's languages, undoably.
class SetLanguagesCommand : public QUndoCommand
{
public:
    SetLanguagesCommand(ChapterLanguages before, ChapterLanguages after,
                        std::function<void(const ChapterLanguages &)> apply);
    void redo() override { m_apply(m_after); }
    void undo() override { m_apply(m_before); }

private:
    ChapterLanguages m_before, m_after;
    std::function<void(const ChapterLanguages &)> m_apply;
};
