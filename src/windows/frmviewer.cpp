// SPDX-License-Identifier: GPL-3.0-or-later
#include "windows/frmviewer.h"

#include "cards/deck.h"
#include "core/pause.h"
#include "core/programstate.h"
#include "korva/ikorvalite.h"
#include "settings/r_data.h"
#include "windows/modrender.h"
#include "windows/programstyle.h"
#include "windows/windowplacement.h"

#include <QCloseEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPointer>
#include <QStyle>
#include <QStyleOptionViewItem>
#include <QTreeView>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace {

QPointer<frmViewer> g_viewer;

void addText(std::vector<MemoryListModel::Block> &blocks, const QString &text, const QString &what)
{
    if (!text.isEmpty())
        blocks.push_back(
                {what, reinterpret_cast<quintptr>(text.constData()), qint64(text.size()) * 2});
}

// "1 card", "12 cards", with what follows.
QString cardsText(int count, const QString &tail)
{
    return QString::number(count) + (count == 1 ? u" card"_s : u" cards"_s) + tail;
}

} // namespace

std::vector<MemoryListModel::Block> CollectMemoryBlocks()
{
    std::vector<MemoryListModel::Block> blocks;
    for (int i = g_Deck.LBound(); i <= g_Deck.UBound(); ++i) {
        const Card &c = g_Deck[i];
        const QString card = u"card %1"_s.arg(i + 1);
        blocks.push_back({card, reinterpret_cast<quintptr>(&c), qint64(sizeof(Card))});
        addText(blocks, c.question, card + u" question"_s);
        addText(blocks, c.answer, card + u" answer"_s);
        addText(blocks, c.note, card + u" note"_s);
        addText(blocks, c.spare, card + u" spare"_s);
        addText(blocks, c.chapter, card + u" chapter"_s);
    }
    if (const r_data *metrics = modrender::Metrics()) {
        for (const r_data::ColorEntry &e : metrics->Colors()) {
            blocks.push_back(
                    {u"colour "_s + e.name, reinterpret_cast<quintptr>(&e), qint64(sizeof e)});
            addText(blocks, e.name, u"colour name "_s + e.name);
        }
    }
    if (g_MasterDb) {
        for (const korva::Entry &e : g_MasterDb->Entries()) {
            blocks.push_back(
                    {u"setting "_s + e.key, reinterpret_cast<quintptr>(&e), qint64(sizeof e)});
            addText(blocks, e.key, u"setting key "_s + e.key);
            addText(blocks, e.text, u"setting text "_s + e.key);
            addText(blocks, e.note, u"setting note "_s + e.key);
        }
    }
    return blocks;
}

frmViewer *frmViewer::Instance()
{
    if (!g_viewer)
        g_viewer = new frmViewer;
    return g_viewer;
}

frmViewer *frmViewer::Existing()
{
    return g_viewer;
}

frmViewer::frmViewer()
    : QWidget(nullptr, Qt::Window)
    , LV(new QTreeView(this))
    , m_cards(new CardListModel(g_Deck, this))
    , m_memory(new MemoryListModel(this))
    , m_status(new QLabel(this))
{
    setObjectName(u"frmViewer"_s);
    setWindowTitle(u"Item Viewer"_s);
    resize(760, 480);

    LV->setObjectName(u"LV"_s);
    LV->setRootIsDecorated(false);
    LV->setUniformRowHeights(true);
    LV->setAlternatingRowColors(true);
    LV->setModel(m_cards);
    LV->header()->setStretchLastSection(true);
    LV->setColumnWidth(CardListModel::Ordinal, 80);
    LV->setColumnWidth(CardListModel::Question, 220);
    LV->setColumnWidth(CardListModel::Answer, 220);
    LV->setColumnWidth(CardListModel::TimesViewed, 100);
    connect(LV, &QTreeView::clicked, this, &frmViewer::RowClicked);
    LV->viewport()->installEventFilter(this);
    LV->installEventFilter(this);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(8, 8, 8, 6);
    layout->addWidget(LV, 1);
    layout->addWidget(m_status);
    forms::Add(this);
}

QString frmViewer::LoadingText() const
{
    return m_status->text();
}

void frmViewer::Present()
{
    if (!m_placed) {
        modMain::RestoreWindowPosition(this);
        m_placed = true;
    }
    show();
    raise();
    activateWindow();
}

void frmViewer::UseCardList()
{
    if (LV->model() != m_cards) {
        LV->setModel(m_cards);
        LV->setColumnWidth(CardListModel::Ordinal, 80);
        LV->setColumnWidth(CardListModel::Question, 220);
        LV->setColumnWidth(CardListModel::Answer, 220);
    }
}

void frmViewer::FillItemViewer()
{
    setWindowTitle(u"Item Viewer - Items Loading .. Please Wait .."_s);
    m_status->setText(u"Loading List ..."_s);
    Present();
    DoEvents();

    LV->setUpdatesEnabled(false);
    UseCardList();
    std::vector<CardListModel::Row> rows;
    rows.reserve(size_t(g_Deck.UBound() - g_Deck.LBound() + 1));
    for (int i = g_Deck.LBound(); i <= g_Deck.UBound(); ++i)
        rows.push_back(m_cards->RowFor(i, false, false));
    m_cards->SetRows(std::move(rows));
    LV->setUpdatesEnabled(true);

    setWindowTitle(u"Item Viewer"_s);
    // The deck's empty last slot is listed but is no card.
    m_status->setText(cardsText(g_Deck.UBound() - g_Deck.LBound(), QString()));
}

void frmViewer::ShowResults(std::vector<CardListModel::Row> rows, const QString &caption)
{
    UseCardList();
    m_cards->SetRows(std::move(rows));
    setWindowTitle(caption);
    m_status->setText(cardsText(m_cards->rowCount(), u" found"_s));
    Present();
}

void frmViewer::ShowMemoryList()
{
    m_memory->SetBlocks(CollectMemoryBlocks());
    LV->setModel(m_memory);
    LV->setColumnWidth(0, 180);
    LV->setColumnWidth(1, 110);
    setWindowTitle(u"Item Viewer"_s);
    m_status->setText(MemoryTotalText(m_memory->Total()));
    Present();
}

void frmViewer::RowClicked(const QModelIndex &index)
{
    if (index.column() == CardListModel::Ordinal) {
        // A click on the check box marks the card; it does not show it.
        QStyleOptionViewItem option;
        option.initFrom(LV);
        option.rect = LV->visualRect(index);
        option.features |= QStyleOptionViewItem::HasCheckIndicator;
        const QRect box =
                LV->style()->subElementRect(QStyle::SE_ItemViewItemCheckIndicator, &option, LV);
        if (box.adjusted(-2, -2, 2, 2).contains(m_pressedAt))
            return;
    }
    ShowRow(index);
}

void frmViewer::ShowRow(const QModelIndex &index)
{
    // While a shuffle moves the cards about, the list stays a list.
    if (!index.isValid() || LV->model() != m_cards || g_ShuffleRunning)
        return;
    modrender::CurrentCard = qint16(m_cards->RowAt(index.row()).index);
    modrender::ShowCurrentCard();
}

bool frmViewer::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == LV->viewport() && event->type() == QEvent::MouseButtonPress)
        m_pressedAt = static_cast<QMouseEvent *>(event)->position().toPoint();
    // By keyboard: Return shows the current row's card as a click does
    // (Space marks it, as on its check box).
    if (watched == LV && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            ShowRow(LV->currentIndex());
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

void frmViewer::OnUnload()
{
    modMain::SaveWindowPosition(this, false);
}

void frmViewer::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape)
        close();
    else
        QWidget::keyPressEvent(event);
}

void frmViewer::closeEvent(QCloseEvent *)
{
    forms::Unload(this);
}
