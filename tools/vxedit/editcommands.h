// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "korva/korvaformat.h"

#include <QUndoCommand>

#include <vector>

class ChapterModel;

// The editor's changes, each undoable.

class EditCardCommand : public QUndoCommand
{
public:
    EditCardCommand(ChapterModel *model, int row, int column, const QString &text);
    void redo() override;
    void undo() override;

private:
    ChapterModel *m_model;
    int m_row;
    korva::Entry m_before;
    korva::Entry m_after;
};

class InsertCardsCommand : public QUndoCommand
{
public:
    InsertCardsCommand(ChapterModel *model, int row, std::vector<korva::Entry> cards,
                       const QString &text);
    void redo() override;
    void undo() override;

private:
    ChapterModel *m_model;
    int m_row;
    std::vector<korva::Entry> m_cards;
};

// Removes the cards at the given rows (any order).
class RemoveCardsCommand : public QUndoCommand
{
public:
    RemoveCardsCommand(ChapterModel *model, std::vector<int> rows);
    void redo() override;
    void undo() override;

private:
    ChapterModel *m_model;
    std::vector<int> m_rows; // ascending
    std::vector<korva::Entry> m_removed;
};

// Puts the cards in a new order (moving, sorting).
class ReorderCardsCommand : public QUndoCommand
{
public:
    ReorderCardsCommand(ChapterModel *model, std::vector<int> order, const QString &text);
    void redo() override;
    void undo() override;

private:
    ChapterModel *m_model;
    std::vector<int> m_order;
};

// Typing in the title field: one step per burst of typing.
class SetTitleCommand : public QUndoCommand
{
public:
    SetTitleCommand(ChapterModel *model, const QString &before, const QString &after);
    void redo() override;
    void undo() override;
    int id() const override { return 1; }
    bool mergeWith(const QUndoCommand *other) override;

private:
    ChapterModel *m_model;
    QString m_before;
    QString m_after;
};

// The order that sorts the cards by a column (stable; equal cards keep their
// order), descending when asked.
std::vector<int> SortOrder(const ChapterModel &model, int column, bool descending);
// The order that moves the cards at these rows one place up (-1) or down (+1);
// empty when they cannot move.
std::vector<int> MoveOrder(int cardCount, const std::vector<int> &rows, int delta);
