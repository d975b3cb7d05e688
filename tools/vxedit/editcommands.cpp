// SPDX-License-Identifier: GPL-3.0-or-later
#include "editcommands.h"

#include "chaptermodel.h"

#include <QCollator>

#include <algorithm>
#include <numeric>

using namespace Qt::Literals::StringLiterals;

EditCardCommand::EditCardCommand(ChapterModel *model, int row, int column, const QString &text)
    : m_model(model)
    , m_row(row)
    , m_before(model->CardAt(row))
    , m_after(WithText(m_before, column, text))
{
    static const char *const kWhat[] = {"question", "answer", "note"};
    setText(u"Edit %1 of card %2"_s.arg(QString::fromLatin1(kWhat[qBound(0, column, 2)]))
                    .arg(row + 1));
}

void EditCardCommand::redo()
{
    m_model->ReplaceCard(m_row, m_after);
}

void EditCardCommand::undo()
{
    m_model->ReplaceCard(m_row, m_before);
}

InsertCardsCommand::InsertCardsCommand(ChapterModel *model, int row,
                                       std::vector<korva::Entry> cards, const QString &text)
    : m_model(model)
    , m_row(row)
    , m_cards(std::move(cards))
{
    setText(text);
}

void InsertCardsCommand::redo()
{
    m_model->InsertCards(m_row, m_cards);
}

void InsertCardsCommand::undo()
{
    m_model->RemoveCards(m_row, int(m_cards.size()));
}

RemoveCardsCommand::RemoveCardsCommand(ChapterModel *model, std::vector<int> rows)
    : m_model(model)
    , m_rows(std::move(rows))
{
    std::sort(m_rows.begin(), m_rows.end());
    m_rows.erase(std::unique(m_rows.begin(), m_rows.end()), m_rows.end());
    setText(m_rows.size() == 1 ? u"Delete card %1"_s.arg(m_rows.front() + 1)
                               : u"Delete %1 cards"_s.arg(m_rows.size()));
}

void RemoveCardsCommand::redo()
{
    m_removed.clear();
    for (auto it = m_rows.rbegin(); it != m_rows.rend(); ++it)
        m_removed.push_back(m_model->RemoveCards(*it, 1).front());
    std::reverse(m_removed.begin(), m_removed.end());
}

void RemoveCardsCommand::undo()
{
    for (size_t i = 0; i < m_rows.size(); ++i)
        m_model->InsertCards(m_rows[i], {m_removed[i]});
}

ReorderCardsCommand::ReorderCardsCommand(ChapterModel *model, std::vector<int> order,
                                         const QString &text)
    : m_model(model)
    , m_order(std::move(order))
{
    setText(text);
}

void ReorderCardsCommand::redo()
{
    m_model->Reorder(m_order);
}

void ReorderCardsCommand::undo()
{
    std::vector<int> inverse(m_order.size());
    for (size_t i = 0; i < m_order.size(); ++i)
        inverse[size_t(m_order[i])] = int(i);
    m_model->Reorder(inverse);
}

SetTitleCommand::SetTitleCommand(ChapterModel *model, const QString &before, const QString &after)
    : m_model(model)
    , m_before(before)
    , m_after(after)
{
    setText(u"Change title"_s);
}

void SetTitleCommand::redo()
{
    m_model->SetTitle(m_after);
}

void SetTitleCommand::undo()
{
    m_model->SetTitle(m_before);
}

bool SetTitleCommand::mergeWith(const QUndoCommand *other)
{
    m_after = static_cast<const SetTitleCommand *>(other)->m_after;
    return true;
}

std::vector<int> SortOrder(const ChapterModel &model, int column, bool descending)
{
    std::vector<int> order(size_t(model.rowCount()));
    std::iota(order.begin(), order.end(), 0);
    QCollator collator;
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    collator.setNumericMode(true);
    std::stable_sort(order.begin(), order.end(), [&](int a, int b) {
        const int c = collator.compare(model.Text(a, column), model.Text(b, column));
        return descending ? c > 0 : c < 0;
    });
    return order;
}

std::vector<int> MoveOrder(int cardCount, const std::vector<int> &rows, int delta)
{
    std::vector<int> sorted = rows;
    std::sort(sorted.begin(), sorted.end());
    if (sorted.empty() || (delta < 0 && sorted.front() == 0)
        || (delta > 0 && sorted.back() == cardCount - 1))
        return {};
    std::vector<int> order(static_cast<size_t>(cardCount));
    std::iota(order.begin(), order.end(), 0);
    if (delta < 0) {
        for (int r : sorted)
            std::swap(order[size_t(r)], order[size_t(r - 1)]);
    } else {
        for (auto it = sorted.rbegin(); it != sorted.rend(); ++it)
            std::swap(order[size_t(*it)], order[size_t(*it + 1)]);
    }
    return order;
}
