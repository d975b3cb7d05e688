// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "windows/cardlistmodel.h"
#include "windows/forms.h"

#include <QWidget>

class QLabel;
class QTreeView;

// The item viewer: a list of cards (the search results or every loaded card)
// or the memory list. A click on a card's row shows that card in the study
// window; the row's check box is the card's trouble mark.
class frmViewer : public QWidget, public forms::Unloadable
{
    Q_OBJECT

public:
    // The viewer, made when first asked for.
    static frmViewer *Instance();
    static frmViewer *Existing();

    QTreeView *LV;

    // Lists every card of the deck.
    void FillItemViewer();
    // Shows these rows as search results under the given caption.
    void ShowResults(std::vector<CardListModel::Row> rows, const QString &caption);
    void ShowMemoryList();

    CardListModel *Cards() const { return m_cards; }
    MemoryListModel *Memory() const { return m_memory; }
    QString LoadingText() const;
    // What a click on a row of the card list does.
    void RowClicked(const QModelIndex &index);

    void OnUnload() override;

protected:
    void closeEvent(QCloseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    frmViewer();
    // Shows the card of a row in the study window, as a new view.
    void ShowRow(const QModelIndex &index);
    void Present();
    void UseCardList();

    CardListModel *m_cards;
    MemoryListModel *m_memory;
    QLabel *m_status;
    QPoint m_pressedAt {-1, -1}; // where the last click in the list began
    bool m_placed = false;
};

// What the program holds for its cards, colours and settings, block by block.
std::vector<MemoryListModel::Block> CollectMemoryBlocks();
