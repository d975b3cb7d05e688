// SPDX-License-Identifier: GPL-3.0-or-later
#include "chaptermodel.h"

#include "chapterrules.h"
#include "editcommands.h"

#include <QApplication>
#include <QBrush>
#include <QFont>
#include <QStyle>
#include <QUndoStack>

#include <climits>

using namespace Qt::Literals::StringLiterals;

korva::Entry WithText(korva::Entry card, int column, const QString &text)
{
    switch (column) {
    case ChapterModel::Question:
        card.key = text;
        break;
    case ChapterModel::Answer:
        card.text = text;
        card.isText = korva::kTrue;
        card.number = 0;
        break;
    case ChapterModel::Note:
        card.note = text;
        break;
    default:
        break;
    }
    return card;
}

ChapterModel::ChapterModel(ChapterDocument &document, QObject *parent)
    : QAbstractTableModel(parent)
    , m_document(document)
{}

void ChapterModel::Reload()
{
    beginResetModel();
    endResetModel();
    Q_EMIT titleChanged(m_document.Title());
    Q_EMIT cardsChanged();
}

QString ChapterModel::Text(int row, int column) const
{
    const korva::Entry &card = m_document.Card(row);
    switch (column) {
    case Question:
        return card.key;
    case Answer:
        return card.text;
    case Note:
        return card.note;
    default:
        return {};
    }
}

void ChapterModel::ReplaceCard(int row, const korva::Entry &card)
{
    m_document.Cards()[size_t(row)] = card;
    Q_EMIT dataChanged(index(row, 0), index(row, ColumnCount - 1));
    Q_EMIT cardsChanged();
}

void ChapterModel::InsertCards(int row, const std::vector<korva::Entry> &cards)
{
    if (cards.empty())
        return;
    beginInsertRows({}, row, row + int(cards.size()) - 1);
    auto &all = m_document.Cards();
    all.insert(all.begin() + row, cards.begin(), cards.end());
    endInsertRows();
    Q_EMIT cardsChanged();
}

std::vector<korva::Entry> ChapterModel::RemoveCards(int row, int count)
{
    auto &all = m_document.Cards();
    std::vector<korva::Entry> removed(all.begin() + row, all.begin() + row + count);
    beginRemoveRows({}, row, row + count - 1);
    all.erase(all.begin() + row, all.begin() + row + count);
    endRemoveRows();
    Q_EMIT cardsChanged();
    return removed;
}

void ChapterModel::Reorder(const std::vector<int> &order)
{
    Q_EMIT layoutAboutToBeChanged();
    const std::vector<korva::Entry> before = m_document.Cards();
    auto &all = m_document.Cards();
    for (size_t i = 0; i < order.size(); ++i)
        all[i] = before[size_t(order[i])];
    // Keep the view's current and selected cards with their cards.
    std::vector<int> whereNow(order.size());
    for (size_t i = 0; i < order.size(); ++i)
        whereNow[size_t(order[i])] = int(i);
    const QModelIndexList from = persistentIndexList();
    QModelIndexList to;
    for (const QModelIndex &i : from)
        to << index(whereNow[size_t(i.row())], i.column());
    changePersistentIndexList(from, to);
    Q_EMIT layoutChanged();
    Q_EMIT cardsChanged();
}

void ChapterModel::SetTitle(const QString &title)
{
    m_document.SetTitle(title);
    Q_EMIT titleChanged(title);
}

int ChapterModel::BytesLeft(int row) const
{
    const korva::Entry &c = m_document.Card(row);
    const qsizetype size =
            chapterrules::CardRecordBytes(c.key, c.text, c.note, m_document.SaveEncoding());
    if (size < 0)
        return INT_MIN;
    return int(korva::kRecordLength - size);
}

int ChapterModel::ProblemCount() const
{
    int problems = 0;
    for (int row = 0; row < m_document.CardCount(); ++row)
        problems += m_document.CardProblem(row).isEmpty() ? 0 : 1;
    return problems;
}

int ChapterModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_document.CardCount();
}

int ChapterModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant ChapterModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const int row = index.row(), column = index.column();
    const korva::Entry &card = m_document.Card(row);
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        if (column == BytesLeftColumn) {
            const int left = BytesLeft(row);
            return role == Qt::EditRole ? QVariant(left)
                    : left == INT_MIN   ? QVariant(u"—"_s)
                                        : QVariant(left);
        }
        // A settings file opened for a look shows its number entries too.
        if (column == Answer && card.isText == korva::kFalse && card.text.isEmpty()
            && m_document.ReadOnly())
            return u"(number) %1"_s.arg(card.number);
        return Text(row, column);
    case Qt::ToolTipRole: {
        const QString problem = m_document.CardProblem(row);
        if (!problem.isEmpty())
            return u"Card %1 can't be saved: %2"_s.arg(row + 1).arg(problem);
        if (column == BytesLeftColumn)
            return u"Question, answer and note may have %1 bytes together%2"_s
                    .arg(chapterrules::kCardTextBytes)
                    .arg(m_document.SaveEncoding() == korva::Encoding::Utf8
                                 ? u" in UTF-8 (two bytes for a Cyrillic or Greek letter)"_s
                                 : QString());
        break;
    }
    case Qt::DecorationRole:
        if (column == Question && !m_document.CardProblem(row).isEmpty())
            return QApplication::style()->standardIcon(QStyle::SP_MessageBoxWarning);
        break;
    case Qt::BackgroundRole:
        if (!m_document.CardProblem(row).isEmpty())
            return QBrush(QColor(0xFF, 0xE4, 0xE1));
        break;
    case Qt::ForegroundRole:
        if (column == BytesLeftColumn && BytesLeft(row) < 0)
            return QBrush(QColor(0xC0, 0x10, 0x10));
        if (column == BytesLeftColumn)
            return QBrush(QColor(0x70, 0x70, 0x70));
        break;
    case Qt::TextAlignmentRole:
        if (column == BytesLeftColumn)
            return int(Qt::AlignRight | Qt::AlignVCenter);
        break;
    default:
        break;
    }
    return {};
}

bool ChapterModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::EditRole || !(flags(index) & Qt::ItemIsEditable))
        return false;
    const QString text = value.toString();
    if (text == Text(index.row(), index.column()))
        return false;
    if (m_undo)
        m_undo->push(new EditCardCommand(this, index.row(), index.column(), text));
    else
        ReplaceCard(index.row(), WithText(CardAt(index.row()), index.column(), text));
    return true;
}

Qt::ItemFlags ChapterModel::flags(const QModelIndex &index) const
{
    Qt::ItemFlags f = QAbstractTableModel::flags(index);
    if (index.isValid() && index.column() != BytesLeftColumn && !m_document.ReadOnly())
        f |= Qt::ItemIsEditable;
    return f;
}

QVariant ChapterModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole)
        return QAbstractTableModel::headerData(section, orientation, role);
    if (orientation == Qt::Vertical)
        return section + 1;
    switch (section) {
    case Question:
        return u"Question"_s;
    case Answer:
        return u"Answer"_s;
    case Note:
        return u"Note"_s;
    case BytesLeftColumn:
        return u"Bytes left"_s;
    }
    return {};
}
