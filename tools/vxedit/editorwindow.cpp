// SPDX-License-Identifier: GPL-3.0-or-later
#include "editorwindow.h"

#include "cardpreview.h"
#include "cardtext.h"
#include "chaptermodel.h"
#include "chapterrules.h"
#include "core/modbrowser.h"
#include "core/prompter.h"
#include "core/version.h"
#include "editcommands.h"
#include "findreplace.h"
#include "windows/modrender.h"
#include "windows/screenfit.h"

#include <QAction>
#include <QCloseEvent>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QSettings>
#include <QStatusBar>
#include <QStyledItemDelegate>
#include <QTableView>
#include <QToolBar>
#include <QUndoStack>
#include <QVBoxLayout>

#include <climits>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString kTitleTooLong =
        u"Long: the card shows it over the help line at its bottom. The chapter window shows "
        "it whole."_s;

// Editors in the table tell the window about every keystroke, so the card's
// limits show while it is typed.
class CardDelegate : public QStyledItemDelegate
{
public:
    CardDelegate(EditorWindow *window) : QStyledItemDelegate(window), m_window(window) {}

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const override
    {
        QWidget *editor = QStyledItemDelegate::createEditor(parent, option, index);
        if (auto *line = qobject_cast<QLineEdit *>(editor)) {
            const int row = index.row(), column = index.column();
            QObject::connect(line, &QLineEdit::textEdited, line,
                             [this, row, column](const QString &text) {
                                 m_window->ShowTypingFeedback(row, column, text);
                             });
        }
        return editor;
    }

private:
    EditorWindow *m_window;
};

} // namespace

EditorWindow::EditorWindow(QWidget *parent)
    : QMainWindow(parent)
    , m_model(new ChapterModel(m_document, this))
    , m_undo(new QUndoStack(this))
    , m_table(new QTableView(this))
    , m_title(new QLineEdit(this))
    , m_titleBytes(new QLabel(this))
    , m_preview(new CardPreview(this))
    , m_count(new QLabel(this))
    , m_card(new QLabel(this))
    , m_problems(new QLabel(this))
    , m_encoding(new QLabel(this))
{
    setObjectName(u"EditorWindow"_s);
    m_model->SetUndoStack(m_undo);

    m_table->setModel(m_model);
    m_table->setItemDelegate(new CardDelegate(this));
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_table->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed
                             | QAbstractItemView::AnyKeyPressed);
    m_table->setAlternatingRowColors(true);
    m_table->verticalHeader()->setDefaultSectionSize(24);
    m_table->horizontalHeader()->setSectionResizeMode(QHeaderView::Interactive);
    m_table->horizontalHeader()->setStretchLastSection(false);
    m_table->horizontalHeader()->setSectionResizeMode(ChapterModel::Note, QHeaderView::Stretch);
    m_table->setColumnWidth(ChapterModel::Question, 260);
    m_table->setColumnWidth(ChapterModel::Answer, 260);
    m_table->setColumnWidth(ChapterModel::Note, 200);
    m_table->setColumnWidth(ChapterModel::BytesLeftColumn, 80);
    m_table->horizontalHeader()->setSortIndicatorShown(false);
    connect(m_table->horizontalHeader(), &QHeaderView::sectionClicked, this, [this](int column) {
        if (column != ChapterModel::BytesLeftColumn)
            SortBy(column);
    });

    m_title->setPlaceholderText(u"The name the chapter window shows (the file name when empty)"_s);
    connect(m_title, &QLineEdit::textEdited, this, [this](const QString &text) {
        m_undo->push(new SetTitleCommand(m_model, m_document.Title(), text));
    });
    connect(m_model, &ChapterModel::titleChanged, this, [this](const QString &title) {
        if (m_title->text() != title)
            m_title->setText(title);
        const QString problem =
                chapterrules::CheckTitle(title, m_document.SaveEncoding(), m_document.Reserved());
        if (!problem.isEmpty())
            m_titleBytes->setText(
                    u"<span style='color:#c01010'>%1</span>"_s.arg(problem.toHtmlEscaped()));
        else if (!modrender::ChapterCaptionFits(title))
            m_titleBytes->setText(
                    u"<span style='color:#a06000'>%1</span>"_s.arg(kTitleTooLong.toHtmlEscaped()));
        else
            m_titleBytes->clear();
        UpdateStatus();
    });
    connect(m_model, &ChapterModel::cardsChanged, this, [this] {
        UpdateStatus();
        UpdatePreview();
    });

    auto *central = new QWidget(this);
    auto *layout = new QVBoxLayout(central);
    auto *titleRow = new QHBoxLayout;
    titleRow->addWidget(new QLabel(u"Chapter &title:"_s, central));
    static_cast<QLabel *>(titleRow->itemAt(0)->widget())->setBuddy(m_title);
    titleRow->addWidget(m_title, 1);
    titleRow->addWidget(m_titleBytes);
    layout->addLayout(titleRow);
    layout->addWidget(m_table, 1);
    auto *previewRow = new QVBoxLayout;
    previewRow->addWidget(new QLabel(u"As Vocabrix shows the current card:"_s, central));
    previewRow->addWidget(m_preview);
    layout->addLayout(previewRow);
    setCentralWidget(central);

    statusBar()->addWidget(m_card, 1);
    statusBar()->addPermanentWidget(m_problems);
    statusBar()->addPermanentWidget(m_encoding);
    statusBar()->addPermanentWidget(m_count);

    BuildActions();
    connect(m_table->selectionModel(), &QItemSelectionModel::currentChanged, this, [this] {
        UpdateStatus();
        UpdatePreview();
        UpdateActions();
    });
    connect(m_table->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &EditorWindow::UpdateActions);
    connect(m_undo, &QUndoStack::cleanChanged, this, &EditorWindow::UpdateTitleBar);
    connect(m_undo, &QUndoStack::indexChanged, this, &EditorWindow::UpdateTitleBar);

    resize(900, 640);
    restoreGeometry(QSettings().value(u"geometry"_s).toByteArray());
    FitOnScreen(this);
    setAcceptDrops(true);
    NewChapter();
}

EditorWindow::~EditorWindow()
{
    // The table, the model and the undo stack outlive this part of the window
    // while it is taken apart: they must not call back into it.
    m_table->selectionModel()->disconnect(this);
    m_undo->disconnect(this);
    m_model->disconnect(this);
}

void EditorWindow::BuildActions()
{
    QMenu *file = menuBar()->addMenu(u"&File"_s);
    QAction *newAction =
            file->addAction(style()->standardIcon(QStyle::SP_FileIcon), u"&New"_s, this, [this] {
                if (MaybeSave())
                    NewChapter();
            });
    newAction->setShortcut(QKeySequence::New);
    QAction *open = file->addAction(style()->standardIcon(QStyle::SP_DialogOpenButton),
                                    u"&Open..."_s, this, &EditorWindow::OpenChapter);
    open->setShortcut(QKeySequence::Open);
    m_recent = file->addMenu(u"Open &Recent"_s);
    connect(m_recent, &QMenu::aboutToShow, this, &EditorWindow::FillRecentMenu);
    m_save = file->addAction(style()->standardIcon(QStyle::SP_DialogSaveButton), u"&Save"_s, this,
                             [this] { Save(); });
    m_save->setShortcut(QKeySequence::Save);
    m_saveAs = file->addAction(u"Save &As..."_s, this, [this] { SaveAs(); });
    m_saveAs->setShortcut(QKeySequence::SaveAs);
    file->addSeparator();
    m_import = file->addAction(u"&Import Cards..."_s, this, &EditorWindow::ImportCards);
    m_import->setShortcut(Qt::CTRL | Qt::Key_I);
    file->addAction(u"&Export Cards..."_s, this, &EditorWindow::ExportCards)
            ->setShortcut(Qt::CTRL | Qt::Key_E);
    file->addSeparator();
    file->addAction(u"&Quit"_s, this, &QWidget::close)->setShortcut(QKeySequence::Quit);

    QMenu *edit = menuBar()->addMenu(u"&Edit"_s);
    QAction *undo = m_undo->createUndoAction(this, u"&Undo"_s);
    undo->setShortcut(QKeySequence::Undo);
    QAction *redo = m_undo->createRedoAction(this, u"&Redo"_s);
    redo->setShortcut(QKeySequence::Redo);
    edit->addAction(undo);
    edit->addAction(redo);
    edit->addSeparator();
    m_add = edit->addAction(u"&Add Card"_s, this, &EditorWindow::AddCard);
    m_add->setShortcuts({QKeySequence(Qt::CTRL | Qt::Key_Return), QKeySequence(Qt::Key_Insert)});
    m_delete = edit->addAction(u"&Delete Cards"_s, this, &EditorWindow::DeleteCards);
    m_delete->setShortcut(QKeySequence::Delete);
    m_delete->setShortcutContext(Qt::WidgetShortcut);
    m_table->addAction(m_delete);
    m_moveUp = edit->addAction(u"Move &Up"_s, this, [this] { MoveCards(-1); });
    m_moveUp->setShortcut(Qt::CTRL | Qt::Key_Up);
    m_moveDown = edit->addAction(u"Move Do&wn"_s, this, [this] { MoveCards(+1); });
    m_moveDown->setShortcut(Qt::CTRL | Qt::Key_Down);
    edit->addSeparator();
    QMenu *sort = edit->addMenu(u"&Sort"_s);
    const QString names[] = {u"by &Question"_s, u"by &Answer"_s, u"by &Note"_s};
    for (int column = ChapterModel::Question; column <= ChapterModel::Note; ++column)
        m_sortActions << sort->addAction(names[column], this, [this, column] { SortBy(column); });
    edit->addSeparator();
    m_findReplace = edit->addAction(u"&Find and Replace..."_s, this, [this] {
        if (!m_find) {
            m_find = new FindReplaceDialog(*m_model, *m_undo, this);
            connect(m_find, &FindReplaceDialog::found, this, [this](int row, int column) {
                m_table->setCurrentIndex(m_model->index(row, column));
                m_table->scrollTo(m_model->index(row, column));
            });
        }
        m_find->show();
        m_find->raise();
        m_find->findText->setFocus();
    });
    m_findReplace->setShortcuts({QKeySequence::Find, QKeySequence(Qt::CTRL | Qt::Key_H)});
    m_nextProblem = edit->addAction(u"Go to Next &Problem"_s, this, &EditorWindow::GoToNextProblem);
    m_nextProblem->setShortcut(Qt::Key_F8);
    edit->addSeparator();
    m_languages = edit->addAction(u"Chapter &Languages..."_s, this, &EditorWindow::EditLanguages);

    QMenu *help = menuBar()->addMenu(u"&Help"_s);
    help->addAction(u"Vocabrix &Manual"_s, this, [] {
            modBrowser::OpenProductPage();
        })->setShortcut(QKeySequence::HelpContents);
    help->addAction(u"&About the Vocabrix Editor"_s, this, [this] {
        MsgBox(u"About the Vocabrix Editor"_s,
               u"Vocabrix Editor %1.%2 build %3\n\nMakes the chapter files that Vocabrix studies: "
               "type your "
               "own cards or import lists you already have.\n\n%4"_s.arg(version::kMajor)
                       .arg(version::kMinor)
                       .arg(version::kRevision)
                       .arg(QString::fromUtf16(version::kNotice)),
               MsgIcon::Information, MsgButtons::OK);
    });

    QToolBar *tools = addToolBar(u"Main"_s);
    tools->setObjectName(u"MainToolBar"_s);
    tools->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    tools->addAction(newAction);
    tools->addAction(open);
    tools->addAction(m_save);
    tools->addSeparator();
    m_add->setIcon(style()->standardIcon(QStyle::SP_FileDialogNewFolder));
    m_delete->setIcon(style()->standardIcon(QStyle::SP_TrashIcon));
    m_moveUp->setIcon(style()->standardIcon(QStyle::SP_ArrowUp));
    m_moveDown->setIcon(style()->standardIcon(QStyle::SP_ArrowDown));
    tools->addAction(m_add);
    tools->addAction(m_delete);
    tools->addAction(m_moveUp);
    tools->addAction(m_moveDown);
    tools->addSeparator();
    // The toolbar keeps short names; the menu tells what would be undone.
    QAction *undoTool = tools->addAction(style()->standardIcon(QStyle::SP_ArrowBack), u"Undo"_s,
                                         m_undo, &QUndoStack::undo);
    QAction *redoTool = tools->addAction(style()->standardIcon(QStyle::SP_ArrowForward), u"Redo"_s,
                                         m_undo, &QUndoStack::redo);
    undoTool->setEnabled(false);
    redoTool->setEnabled(false);
    connect(m_undo, &QUndoStack::canUndoChanged, undoTool, &QAction::setEnabled);
    connect(m_undo, &QUndoStack::canRedoChanged, redoTool, &QAction::setEnabled);
}

QList<int> EditorWindow::SelectedRows() const
{
    QList<int> rows;
    for (const QModelIndex &i : m_table->selectionModel()->selectedRows())
        rows << i.row();
    if (rows.isEmpty() && m_table->currentIndex().isValid())
        rows << m_table->currentIndex().row();
    std::sort(rows.begin(), rows.end());
    return rows;
}

void EditorWindow::AddCard()
{
    if (m_document.ReadOnly())
        return;
    if (m_document.CardCount() >= korva::kMaxEntries) {
        MsgBox(u"Chapter Full"_s, u"A chapter holds %1 cards at most."_s.arg(korva::kMaxEntries),
               MsgIcon::Information, MsgButtons::OK);
        return;
    }
    const QModelIndex current = m_table->currentIndex();
    const int row = current.isValid() ? current.row() + 1 : m_document.CardCount();
    m_undo->push(new InsertCardsCommand(m_model, row, {chapterrules::CardEntry({}, {}, {})},
                                        u"Add card"_s));
    const QModelIndex question = m_model->index(row, ChapterModel::Question);
    m_table->setCurrentIndex(question);
    m_table->edit(question);
}

void EditorWindow::DeleteCards()
{
    const QList<int> rows = SelectedRows();
    if (rows.isEmpty() || m_document.ReadOnly())
        return;
    m_undo->push(new RemoveCardsCommand(m_model, std::vector<int>(rows.begin(), rows.end())));
    if (m_model->rowCount() > 0)
        m_table->setCurrentIndex(m_model->index(qMin(rows.front(), m_model->rowCount() - 1), 0));
}

void EditorWindow::MoveCards(int delta)
{
    const QList<int> rows = SelectedRows();
    const std::vector<int> order =
            MoveOrder(m_model->rowCount(), std::vector<int>(rows.begin(), rows.end()), delta);
    if (order.empty() || m_document.ReadOnly())
        return;
    m_undo->push(
            new ReorderCardsCommand(m_model, order, delta < 0 ? u"Move up"_s : u"Move down"_s));
}

void EditorWindow::SortBy(int column)
{
    if (m_document.ReadOnly() || m_model->rowCount() < 2)
        return;
    // The same column again sorts the other way round.
    m_sortDescending = column == m_sortColumn && !m_sortDescending;
    m_sortColumn = column;
    static const char *const kNames[] = {"question", "answer", "note"};
    m_undo->push(new ReorderCardsCommand(m_model, SortOrder(*m_model, column, m_sortDescending),
                                         u"Sort by %1"_s.arg(QString::fromLatin1(kNames[column]))));
    m_table->horizontalHeader()->setSortIndicatorShown(true);
    m_table->horizontalHeader()->setSortIndicator(column,
                                                  m_sortDescending ? Qt::DescendingOrder
                                                                   : Qt::AscendingOrder);
}

void EditorWindow::GoToNextProblem()
{
    const int count = m_document.CardCount();
    const int start = m_table->currentIndex().isValid() ? m_table->currentIndex().row() : -1;
    for (int step = 1; step <= count; ++step) {
        const int row = (start + step) % count;
        if (!m_document.CardProblem(row).isEmpty()) {
            m_table->setCurrentIndex(m_model->index(row, 0));
            m_table->scrollTo(m_model->index(row, 0));
            return;
        }
    }
    statusBar()->showMessage(u"Every card can be saved."_s, 4000);
}

QString EditorWindow::LimitText() const
{
    return m_card->text();
}

void EditorWindow::ShowTypingFeedback(int row, int column, const QString &text)
{
    if (row < 0 || row >= m_document.CardCount())
        return;
    const korva::Entry card = WithText(m_document.Card(row), column, text);
    const korva::Encoding encoding = m_document.EncodingWith(row, card);
    const qsizetype bytes = chapterrules::CardRecordBytes(card.key, card.text, card.note, encoding);
    if (bytes < 0) {
        m_card->setText(u"<span style='color:#c01010'>Card %1: %2</span>"_s.arg(row + 1).arg(
                chapterrules::CheckTexts(card).toHtmlEscaped()));
        return;
    }
    const qsizetype left = korva::kRecordLength - bytes;
    const QString color = left < 0 ? u"#c01010"_s : left < 10 ? u"#a06000"_s : u"#404040"_s;
    m_card->setText(u"<span style='color:%1'>Card %2: %3%4</span>"_s.arg(color)
                            .arg(row + 1)
                            .arg(left < 0 ? u"%1 bytes too long"_s.arg(-left)
                                          : u"%1 bytes left"_s.arg(left))
                            .arg(encoding == korva::Encoding::Utf8 ? u" (UTF-8)"_s : QString()));
}

void EditorWindow::UpdateTitleBar()
{
    QString name = DisplayName();
    if (m_document.ReadOnly())
        name += u" (read-only)"_s;
    setWindowTitle(name + u"[*] - Vocabrix Editor"_s);
    setWindowModified(!m_undo->isClean());
}

void EditorWindow::UpdateStatus()
{
    if (m_document.SaveEncoding() == korva::Encoding::Utf8) {
        m_encoding->setText(u"Saved as UTF-8"_s);
        m_encoding->setToolTip(
                u"A text of this chapter is outside Windows-1252, so the file is written in "
                "UTF-8: a Cyrillic or Greek letter takes two of a card's %1 bytes, most other "
                "scripts three."_s.arg(chapterrules::kCardTextBytes));
    } else {
        m_encoding->setText(u"Saved as Windows-1252"_s);
        m_encoding->setToolTip(
                u"Every text of this chapter fits Windows-1252, so the file is written as every "
                "Vocabrix version reads it: one byte a letter."_s);
    }
    const int count = m_document.CardCount();
    m_count->setText(u"%1 of %2 cards"_s.arg(QLocale().toString(count),
                                             QLocale().toString(korva::kMaxEntries)));
    const int problems = m_model->ProblemCount();
    m_problems->setText(
            problems == 0 ? QString()
                          : u"<span style='color:#c01010'>%1 %2 can't be saved yet (F8)</span>"_s
                                    .arg(problems)
                                    .arg(problems == 1 ? u"card"_s : u"cards"_s));
    const QModelIndex current = m_table->currentIndex();
    if (!current.isValid() || current.row() >= count) {
        m_card->clear();
        return;
    }
    const int row = current.row();
    const QString problem = m_document.CardProblem(row);
    if (!problem.isEmpty()) {
        m_card->setText(u"<span style='color:#c01010'>Card %1: %2</span>"_s.arg(row + 1).arg(
                problem.toHtmlEscaped()));
        return;
    }
    const int left = m_model->BytesLeft(row);
    m_card->setText(u"Card %1: %2 bytes left%3"_s.arg(row + 1).arg(left).arg(
            m_document.SaveEncoding() == korva::Encoding::Utf8 ? u" (UTF-8)"_s : QString()));
}

void EditorWindow::UpdatePreview()
{
    const QModelIndex current = m_table->currentIndex();
    if (!current.isValid() || current.row() >= m_document.CardCount()) {
        m_preview->SetCard(QString(), QString());
        return;
    }
    const korva::Entry &card = m_document.Card(current.row());
    m_preview->SetCard(card.key, card.text);
}

void EditorWindow::UpdateActions()
{
    const bool editable = !m_document.ReadOnly();
    const bool selected = !SelectedRows().isEmpty();
    m_save->setEnabled(editable);
    m_saveAs->setEnabled(editable);
    m_import->setEnabled(editable);
    m_add->setEnabled(editable);
    m_delete->setEnabled(editable && selected);
    m_moveUp->setEnabled(editable && selected);
    m_moveDown->setEnabled(editable && selected);
    m_findReplace->setEnabled(editable);
    m_languages->setEnabled(editable);
    for (QAction *a : m_sortActions)
        a->setEnabled(editable);
    m_title->setReadOnly(!editable);
}

void EditorWindow::closeEvent(QCloseEvent *event)
{
    if (!MaybeSave()) {
        event->ignore();
        return;
    }
    QSettings().setValue(u"geometry"_s, saveGeometry());
    event->accept();
}

QString EditorWindow::DisplayName() const
{
    return m_document.Path().isEmpty() ? u"Untitled"_s : QFileInfo(m_document.Path()).fileName();
}
