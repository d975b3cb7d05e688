// SPDX-License-Identifier: GPL-3.0-or-later
#include "windows/cardlistmodel.h"

#include "cards/deck.h"
#include "core/programstate.h"

#include <QFont>
#include <QLocale>

using namespace Qt::Literals::StringLiterals;

CardListModel::CardListModel(Deck &deck, QObject *parent)
    : QAbstractTableModel(parent)
    , m_deck(deck)
{}

CardListModel::Row CardListModel::RowFor(int index, bool matchedQuestion, bool matchedAnswer) const
{
    const Card &card = m_deck[index];
    return {index,       matchedQuestion, matchedAnswer,    card.question,
            card.answer, card.chapter,    card.timesViewed, card.isTrouble()};
}

void CardListModel::SetRows(std::vector<Row> rows)
{
    beginResetModel();
    m_rows = std::move(rows);
    endResetModel();
}

int CardListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_rows.size());
}

int CardListModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant CardListModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const Row &row = m_rows[size_t(index.row())];
    switch (role) {
    case Qt::DisplayRole:
        switch (index.column()) {
        case Ordinal:
            return row.index + 1;
        case Question:
            return row.question;
        case Answer:
            return row.answer;
        case TimesViewed:
            return int(row.timesViewed);
        case Chapter:
            return row.chapter;
        }
        break;
    case Qt::CheckStateRole:
        if (index.column() == Ordinal)
            return row.trouble ? Qt::Checked : Qt::Unchecked;
        break;
    case Qt::FontRole:
        if ((index.column() == Question && row.matchedQuestion)
            || (index.column() == Answer && row.matchedAnswer)) {
            QFont bold;
            bold.setBold(true);
            return bold;
        }
        break;
    case Qt::TextAlignmentRole:
        if (index.column() == Ordinal || index.column() == TimesViewed)
            return int(Qt::AlignRight | Qt::AlignVCenter);
        break;
    default:
        break;
    }
    return {};
}

bool CardListModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)
        || index.column() != Ordinal || role != Qt::CheckStateRole || g_ShuffleRunning)
        return false;
    // The mark goes to the card with the row's ordinal, whichever it is now.
    Row &row = m_rows[size_t(index.row())];
    if (row.index < m_deck.LBound() || row.index > m_deck.UBound())
        return false;
    row.trouble = value.value<Qt::CheckState>() == Qt::Checked;
    m_deck[row.index].trouble = row.trouble ? kCardTrue : kCardFalse;
    Q_EMIT dataChanged(index, index, {Qt::CheckStateRole});
    return true;
}

Qt::ItemFlags CardListModel::flags(const QModelIndex &index) const
{
    Qt::ItemFlags f = QAbstractTableModel::flags(index);
    if (index.isValid() && index.column() == Ordinal)
        f |= Qt::ItemIsUserCheckable;
    return f;
}

QVariant CardListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QAbstractTableModel::headerData(section, orientation, role);
    switch (section) {
    case Ordinal:
        return u"Card"_s;
    case Question:
        return u"Question"_s;
    case Answer:
        return u"Answer"_s;
    case TimesViewed:
        return u"Times Viewed"_s;
    case Chapter:
        return u"Chapter"_s;
    }
    return {};
}

void MemoryListModel::SetBlocks(std::vector<Block> blocks)
{
    beginResetModel();
    m_blocks = std::move(blocks);
    endResetModel();
}

qint64 MemoryListModel::Total() const
{
    qint64 total = 0;
    for (const Block &b : m_blocks)
        total += b.width;
    return total;
}

int MemoryListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_blocks.size());
}

int MemoryListModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : 3;
}

QVariant MemoryListModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const Block &b = m_blocks[size_t(index.row())];
    if (role == Qt::DisplayRole) {
        switch (index.column()) {
        case 0:
            return u"0x"_s
                    + QString::number(b.address, 16)
                              .toUpper()
                              .rightJustified(int(2 * sizeof(void *)), u'0');
        case 1:
            return b.width;
        case 2:
            return b.what;
        }
    }
    if (role == Qt::TextAlignmentRole && index.column() == 1)
        return int(Qt::AlignRight | Qt::AlignVCenter);
    if (role == Qt::FontRole && index.column() == 0)
        return QFont(u"Monospace"_s);
    return {};
}

QVariant MemoryListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QAbstractTableModel::headerData(section, orientation, role);
    switch (section) {
    case 0:
        return u"Address"_s;
    case 1:
        return u"Width (bytes)"_s;
    case 2:
        return u"Holds"_s;
    }
    return {};
}

QString MemoryTotalText(qint64 total)
{
    const QString digits = QString::number(total).rightJustified(8, u'0');
    const QString separator = QLocale().groupSeparator();
    QString grouped;
    for (qsizetype i = 0; i < digits.size(); ++i) {
        if (i > 0 && (digits.size() - i) % 3 == 0)
            grouped += separator;
        grouped += digits[i];
    }
    return u"Total hunk memory usage: "_s + grouped + u" bytes"_s;
}
