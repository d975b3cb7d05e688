// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "chapterdocument.h"

#include <QAbstractTableModel>

class QUndoStack;

// The chapter's cards as a table: question, answer, note and the bytes a card
// still has of its record. Edits typed into the table go through the undo
// stack as commands; the commands change the model through the operations
// below. Cards that cannot be stored are marked, with the reason as a tip.
class ChapterModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { Question, Answer, Note, BytesLeftColumn, ColumnCount };

    ChapterModel(ChapterDocument &document, QObject *parent = nullptr);

    void SetUndoStack(QUndoStack *stack) { m_undo = stack; }
    ChapterDocument &Document() { return m_document; }
    // After the document was replaced (new, opened).
    void Reload();

    QString Text(int row, int column) const;
    korva::Entry CardAt(int row) const { return m_document.Card(row); }
    void ReplaceCard(int row, const korva::Entry &card);
    void InsertCards(int row, const std::vector<korva::Entry> &cards);
    std::vector<korva::Entry> RemoveCards(int row, int count);
    // Puts the cards in a new order: card i becomes the one that was at order[i].
    void Reorder(const std::vector<int> &order);
    void SetTitle(const QString &title);

    // Bytes the card's texts still have (negative when over; INT_MIN when a
    // text cannot be stored at all).
    int BytesLeft(int row) const;
    int ProblemCount() const;

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

Q_SIGNALS:
    void titleChanged(const QString &title);
    void cardsChanged();

private:
    ChapterDocument &m_document;
    QUndoStack *m_undo = nullptr;
};

// The card with one of its texts set: setting an answer makes it a text entry.
korva::Entry WithText(korva::Entry card, int column, const QString &text);
