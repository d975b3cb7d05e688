// SPDX-License-Identifier: GPL-3.0-or-later
#include "findreplace.h"

#include "chaptermodel.h"
#include "editcommands.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QUndoStack>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace findreplace {

namespace {

bool searched(const Options &o, int column)
{
    return (column == ChapterModel::Question && o.inQuestion)
            || (column == ChapterModel::Answer && o.inAnswer)
            || (column == ChapterModel::Note && o.inNote);
}

Qt::CaseSensitivity cs(const Options &o)
{
    return o.matchCase ? Qt::CaseSensitive : Qt::CaseInsensitive;
}

} // namespace

std::optional<Cell> FindNext(const ChapterModel &model, Cell from, const Options &options)
{
    const int rows = model.rowCount(), columns = ChapterModel::Note + 1;
    if (options.text.isEmpty() || rows == 0)
        return std::nullopt;
    const int start = from.row < 0 ? -1 : from.row * columns + from.column;
    const int cells = rows * columns;
    for (int step = 1; step <= cells; ++step) {
        const int at = ((start + step) % cells + cells) % cells;
        const int row = at / columns, column = at % columns;
        if (searched(options, column)
            && model.Text(row, column).contains(options.text, cs(options)))
            return Cell {row, column};
    }
    return std::nullopt;
}

int ReplaceAll(ChapterModel &model, QUndoStack &undo, const Options &options,
               const QString &replacement)
{
    if (options.text.isEmpty())
        return 0;
    int changed = 0;
    for (int row = 0; row < model.rowCount(); ++row) {
        for (int column = ChapterModel::Question; column <= ChapterModel::Note; ++column) {
            const QString before = model.Text(row, column);
            if (!searched(options, column) || !before.contains(options.text, cs(options)))
                continue;
            if (changed == 0)
                undo.beginMacro(u"Replace all"_s);
            QString after = before;
            after.replace(options.text, replacement, cs(options));
            undo.push(new EditCardCommand(&model, row, column, after));
            ++changed;
        }
    }
    if (changed > 0)
        undo.endMacro();
    return changed;
}

} // namespace findreplace

FindReplaceDialog::FindReplaceDialog(ChapterModel &model, QUndoStack &undo, QWidget *parent)
    : QDialog(parent)
    , findText(new QLineEdit(this))
    , replaceText(new QLineEdit(this))
    , matchCase(new QCheckBox(u"Match &case"_s, this))
    , inQuestion(new QCheckBox(u"&Questions"_s, this))
    , inAnswer(new QCheckBox(u"&Answers"_s, this))
    , inNote(new QCheckBox(u"&Notes"_s, this))
    , findNext(new QPushButton(u"&Find Next"_s, this))
    , replace(new QPushButton(u"&Replace"_s, this))
    , replaceAll(new QPushButton(u"Replace A&ll"_s, this))
    , result(new QLabel(this))
    , m_model(model)
    , m_undo(undo)
{
    setObjectName(u"FindReplaceDialog"_s);
    setWindowTitle(u"Find and Replace"_s);
    for (QCheckBox *c : {inQuestion, inAnswer, inNote})
        c->setChecked(true);
    auto *form = new QFormLayout;
    form->addRow(u"F&ind:"_s, findText);
    form->addRow(u"Replace &with:"_s, replaceText);
    auto *where = new QHBoxLayout;
    where->addWidget(new QLabel(u"Search in:"_s, this));
    where->addWidget(inQuestion);
    where->addWidget(inAnswer);
    where->addWidget(inNote);
    where->addStretch();
    where->addWidget(matchCase);
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(result, 1);
    buttons->addWidget(findNext);
    buttons->addWidget(replace);
    buttons->addWidget(replaceAll);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addLayout(where);
    layout->addLayout(buttons);
    findNext->setDefault(true);
    replace->setAutoDefault(false);
    replaceAll->setAutoDefault(false);
    setMinimumWidth(520);
    setTabOrder(inNote, matchCase); // as they stand, left to right

    connect(findNext, &QPushButton::clicked, this, &FindReplaceDialog::FindNext);
    connect(replace, &QPushButton::clicked, this, &FindReplaceDialog::ReplaceCurrent);
    connect(replaceAll, &QPushButton::clicked, this, &FindReplaceDialog::ReplaceEverywhere);
    connect(findText, &QLineEdit::textChanged, this, [this] { result->clear(); });
}

findreplace::Options FindReplaceDialog::CurrentOptions() const
{
    findreplace::Options o;
    o.text = findText->text();
    o.matchCase = matchCase->isChecked();
    o.inQuestion = inQuestion->isChecked();
    o.inAnswer = inAnswer->isChecked();
    o.inNote = inNote->isChecked();
    return o;
}

void FindReplaceDialog::FindNext()
{
    m_current = findreplace::FindNext(m_model, m_current.value_or(findreplace::Cell {-1, 0}),
                                      CurrentOptions());
    if (!m_current) {
        result->setText(u"Not found"_s);
        return;
    }
    result->setText(u"Card %1"_s.arg(m_current->row + 1));
    Q_EMIT found(m_current->row, m_current->column);
}

void FindReplaceDialog::ReplaceCurrent()
{
    const findreplace::Options o = CurrentOptions();
    if (m_current && m_current->row < m_model.rowCount()) {
        QString text = m_model.Text(m_current->row, m_current->column);
        if (text.contains(o.text, o.matchCase ? Qt::CaseSensitive : Qt::CaseInsensitive)) {
            text.replace(o.text, replaceText->text(),
                         o.matchCase ? Qt::CaseSensitive : Qt::CaseInsensitive);
            m_undo.push(new EditCardCommand(&m_model, m_current->row, m_current->column, text));
        }
    }
    FindNext();
}

void FindReplaceDialog::ReplaceEverywhere()
{
    const int changed =
            findreplace::ReplaceAll(m_model, m_undo, CurrentOptions(), replaceText->text());
    result->setText(changed == 1 ? u"1 text changed"_s : u"%1 texts changed"_s.arg(changed));
}
