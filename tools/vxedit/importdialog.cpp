// SPDX-License-Identifier: GPL-3.0-or-later
#include "importdialog.h"

#include "chapterrules.h"
#include "headerrow.h"
#include "windows/screenfit.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileInfo>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace {

const QList<std::pair<QString, QChar>> kDelimiters {
        {u"Tab"_s, u'\t'},     {u"Comma"_s, u','}, {u"Semicolon"_s, u';'},
        {u"Pipe (|)"_s, u'|'}, {u"Space"_s, u' '},
};

constexpr int kPreviewRows = 10;

} // namespace

ImportDialog::ImportDialog(const QByteArray &content, const QString &path, QWidget *parent)
    : QDialog(parent)
    , delimiter(new QComboBox(this))
    , quoted(new QCheckBox(u"Fields may be in \"&quotes\""_s, this))
    , html(new QCheckBox(u"Fields hold &HTML"_s, this))
    , headerRow(new QCheckBox(u"The first line holds column &names"_s, this))
    , questionColumn(new QComboBox(this))
    , answerColumn(new QComboBox(this))
    , noteColumn(new QComboBox(this))
    , preview(new QTableWidget(this))
    , summary(new QLabel(this))
    , m_data(content)
    , m_layout(cardtext::DetectLayout(content, path))
{
    setObjectName(u"ImportDialog"_s);
    setWindowTitle(u"Import Cards from %1"_s.arg(QFileInfo(path).fileName()));

    for (const auto &[name, c] : kDelimiters)
        delimiter->addItem(name, QVariant(c));
    int at = delimiter->findData(QVariant(m_layout.delimiter));
    if (at < 0) {
        delimiter->addItem(u"'%1'"_s.arg(m_layout.delimiter), QVariant(m_layout.delimiter));
        at = delimiter->count() - 1;
    }
    delimiter->setCurrentIndex(at);
    quoted->setChecked(m_layout.quoted);
    html->setChecked(m_layout.html);
    headerRow->setToolTip(u"Checked when the first line reads like column names (such as "
                          "Question and Answer); that line is then not added as a card."_s);

    auto *reading = new QGroupBox(m_layout.fromHeader ? u"Reading (as the file's header says)"_s
                                                      : u"Reading (detected)"_s,
                                  this);
    auto *readingForm = new QFormLayout(reading);
    readingForm->addRow(u"Fields &separated by:"_s, delimiter);
    readingForm->addRow(QString(), quoted);
    readingForm->addRow(QString(), html);
    readingForm->addRow(QString(), headerRow);

    auto *mapping = new QGroupBox(u"Columns"_s, this);
    auto *mappingForm = new QFormLayout(mapping);
    mappingForm->addRow(u"Q&uestion from:"_s, questionColumn);
    mappingForm->addRow(u"&Answer from:"_s, answerColumn);
    mappingForm->addRow(u"N&ote from:"_s, noteColumn);

    auto *top = new QHBoxLayout;
    top->addWidget(reading);
    top->addWidget(mapping);

    preview->setColumnCount(4);
    preview->setHorizontalHeaderLabels({u"Question"_s, u"Answer"_s, u"Note"_s, u"Problem"_s});
    preview->horizontalHeader()->setSectionResizeMode(0, QHeaderView::Stretch);
    preview->horizontalHeader()->setSectionResizeMode(1, QHeaderView::Stretch);
    preview->horizontalHeader()->setSectionResizeMode(2, QHeaderView::Interactive);
    preview->horizontalHeader()->setSectionResizeMode(3, QHeaderView::Stretch);
    preview->setWordWrap(false);
    preview->verticalHeader()->setDefaultSectionSize(24);
    preview->setEditTriggers(QAbstractItemView::NoEditTriggers);
    preview->setMinimumHeight(220);

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Ok)->setText(u"&Import"_s);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto *layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addWidget(new QLabel(u"The first cards as they will be added:"_s, this));
    layout->addWidget(preview, 1);
    layout->addWidget(summary);
    layout->addWidget(buttons);
    resize(760, 520);
    FitOnScreen(this);

    for (QComboBox *box : {delimiter})
        connect(box, &QComboBox::currentIndexChanged, this, &ImportDialog::Reparse);
    for (QCheckBox *box : {quoted, html})
        connect(box, &QCheckBox::toggled, this, &ImportDialog::Reparse);
    connect(headerRow, &QCheckBox::toggled, this, [this] {
        m_headerChosen = true;
        FillColumns();
        UpdatePreview();
    });
    for (QComboBox *box : {questionColumn, answerColumn, noteColumn})
        connect(box, &QComboBox::currentIndexChanged, this, &ImportDialog::UpdatePreview);
    Reparse();
}

void ImportDialog::Reparse()
{
    m_layout.delimiter = delimiter->currentData().value<QChar>();
    m_layout.quoted = quoted->isChecked();
    m_layout.html = html->isChecked();
    m_error.clear();
    if (!cardtext::Parse(m_data, m_layout, m_rows, &m_error))
        m_rows.clear();
    m_columns = 0;
    for (const cardtext::Row &row : m_rows)
        m_columns = qMax(m_columns, int(row.fields.size()));
    // Until the person decides, each new reading of the file guesses anew.
    if (!m_headerChosen) {
        const QSignalBlocker blocker(headerRow);
        headerRow->setChecked(!m_rows.empty()
                              && headerrow::Detect(m_rows.front().fields, m_layout));
    }
    FillColumns();
    UpdatePreview();
}

void ImportDialog::SetChapterEncoding(korva::Encoding encoding)
{
    m_chapterEncoding = encoding;
    UpdatePreview();
}

void ImportDialog::FillColumns()
{
    const QSignalBlocker a(questionColumn), b(answerColumn), c(noteColumn);
    for (QComboBox *box : {questionColumn, answerColumn, noteColumn})
        box->clear();
    noteColumn->addItem(u"(none)"_s, -1);
    QList<int> cardColumns;
    for (int i = 0; i < m_columns; ++i) {
        QString name = m_layout.columnNames.value(i);
        if (name.isEmpty() && headerRow->isChecked() && !m_rows.empty())
            name = m_rows.front().fields.value(i);
        if (name.isEmpty() && !m_rows.empty())
            name = m_rows.front().fields.value(i).left(24);
        const QString label =
                u"Column %1"_s.arg(i + 1) + (name.isEmpty() ? QString() : u": "_s + name);
        for (QComboBox *box : {questionColumn, answerColumn, noteColumn})
            box->addItem(label, i);
        if (!m_layout.metaColumns.contains(i))
            cardColumns << i;
    }
    // The first columns that are not bookkeeping hold question, answer, note.
    questionColumn->setCurrentIndex(qMax(0, questionColumn->findData(cardColumns.value(0, 0))));
    answerColumn->setCurrentIndex(qMax(0, answerColumn->findData(cardColumns.value(1, 1))));
    noteColumn->setCurrentIndex(cardColumns.size() > 2 ? noteColumn->findData(cardColumns[2]) : 0);
}

std::vector<korva::Entry> ImportDialog::Cards() const
{
    std::vector<korva::Entry> cards;
    const int q = questionColumn->currentData().toInt(), a = answerColumn->currentData().toInt();
    const int n = noteColumn->currentData().toInt();
    const size_t first = headerRow->isChecked() ? 1 : 0;
    for (size_t i = first; i < m_rows.size(); ++i) {
        const QStringList &f = m_rows[i].fields;
        cards.push_back(
                chapterrules::CardEntry(f.value(q), f.value(a), n >= 0 ? f.value(n) : QString()));
    }
    return cards;
}

void ImportDialog::UpdatePreview()
{
    const std::vector<korva::Entry> cards = Cards();
    // One card that Windows-1252 cannot hold makes the whole chapter UTF-8.
    korva::Encoding encoding = m_chapterEncoding;
    for (const korva::Entry &c : cards)
        encoding = chapterrules::CardEncoding(c, encoding);
    preview->setRowCount(int(qMin<size_t>(cards.size(), kPreviewRows)));
    int problems = 0;
    for (size_t i = 0; i < cards.size(); ++i) {
        const korva::Entry &c = cards[i];
        const QString problem = chapterrules::CheckCard(c.key, c.text, c.note, encoding);
        problems += problem.isEmpty() ? 0 : 1;
        if (i >= size_t(kPreviewRows))
            continue;
        const QStringList cells {c.key, c.text, c.note, problem};
        for (int col = 0; col < 4; ++col) {
            auto *item = new QTableWidgetItem(cells[col]);
            if (!problem.isEmpty())
                item->setBackground(QColor(0xFF, 0xE4, 0xE1));
            preview->setItem(int(i), col, item);
        }
    }
    const QString turns = encoding != m_chapterEncoding
            ? u" The chapter will be saved in UTF-8, as some of them are outside Windows-1252."_s
            : QString();
    const QString namesNote = headerRow->isChecked() && !m_rows.empty()
            ? u" The first line gives the column names and is left out."_s
            : QString();
    const QString added = cards.size() == 1 ? u"1 card will be added"_s
                                            : u"%1 cards will be added"_s.arg(cards.size());
    if (!m_error.isEmpty())
        summary->setText(u"The file can't be read: "_s + m_error);
    else if (problems == 0)
        summary->setText(added + u'.' + namesNote + turns);
    else
        summary->setText(
                added
                + u"; %1 of them can't be stored as they are and are marked for you to mend "
                  "before saving."_s.arg(problems)
                + namesNote + turns);
}
