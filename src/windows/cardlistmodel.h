// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractTableModel>

#include <vector>

class Deck;

// The item viewer's rows: cards of the deck by index, each with whether the
// search matched in its question and in its answer. Column 0 is the card's
// ordinal (index + 1) with its trouble mark as a check box; then question
// and answer (bold where matched), times viewed and chapter. A row holds the
// card as it was when the list was filled or searched: a later shuffle or
// view does not change what the list says.
class CardListModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { Ordinal, Question, Answer, TimesViewed, Chapter, ColumnCount };

    struct Row
    {
        int index; // in the deck
        bool matchedQuestion;
        bool matchedAnswer;
        QString question, answer, chapter;
        qint16 timesViewed = 0;
        bool trouble = false;
    };

    explicit CardListModel(Deck &deck, QObject *parent = nullptr);

    // A row for the card at this index of the deck, as it is now.
    Row RowFor(int index, bool matchedQuestion, bool matchedAnswer) const;

    // Replaces every row at once.
    void SetRows(std::vector<Row> rows);
    const Row &RowAt(int row) const { return m_rows[size_t(row)]; }

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    Deck &m_deck;
    std::vector<Row> m_rows;
};

// The memory list of the hidden word "show_mem_usage": one row per block the
// program holds for its cards, colours and settings, with its address and
// width in bytes.
class MemoryListModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    struct Block
    {
        QString what;
        quintptr address;
        qint64 width;
    };

    explicit MemoryListModel(QObject *parent = nullptr) : QAbstractTableModel(parent) {}

    void SetBlocks(std::vector<Block> blocks);
    qint64 Total() const;
    const std::vector<Block> &Blocks() const { return m_blocks; }

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    std::vector<Block> m_blocks;
};

// "Total hunk memory usage: 00,012,345 bytes": the total with eight digits,
// grouped by thousands.
QString MemoryTotalText(qint64 total);
