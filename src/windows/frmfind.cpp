// SPDX-License-Identifier: GPL-3.0-or-later
#include "windows/frmfind.h"

#include "cards/deck.h"
#include "core/clstimer.h"
#include "core/log.h"
#include "core/programstate.h"
#include "core/prompter.h"
#include "windows/frmviewer.h"
#include "windows/modrender.h"
#include "windows/programstyle.h"
#include "windows/windowplacement.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QSlider>
#include <QStackedWidget>
#include <QTabBar>
#include <QVBoxLayout>

#include <cstdlib>

using namespace Qt::Literals::StringLiterals;

namespace {

QPointer<frmFind> g_find;

std::function<void()> &crashHandler()
{
    static std::function<void()> handler = [] { std::abort(); };
    return handler;
}

} // namespace

frmFind *frmFind::Instance()
{
    if (!g_find)
        g_find = new frmFind;
    return g_find;
}

frmFind *frmFind::Existing()
{
    return g_find;
}

void frmFind::SetCrashHandler(std::function<void()> handler)
{
    crashHandler() = handler ? std::move(handler) : [] { std::abort(); };
}

frmFind::frmFind()
    : QDialog(nullptr)
    , ts(new QTabBar(this))
    , Text2(new QLineEdit(this))
    , Check1(new QCheckBox(u"Search in &questions"_s, this))
    , Check2(new QCheckBox(u"Search in &answers"_s, this))
    , Check3(new QCheckBox(u"&Match case"_s, this))
    , Text1(new QLineEdit(this))
    , Label1(new QLabel(this))
    , Slider1(new QSlider(Qt::Horizontal, this))
    , Command1(new QPushButton(u"Cl&ose"_s, this))
    , Command2(new QPushButton(u"&View All Cards"_s, this))
    , Command3(new QPushButton(u"&Go"_s, this))
    , Command4(new QPushButton(u"C&lear"_s, this))
    , Command5(new QPushButton(u"&Find"_s, this))
    , m_pages(new QStackedWidget(this))
{
    setObjectName(u"frmFind"_s);
    setWindowTitle(u"Find Card"_s);
    setModal(false);

    ts->setObjectName(u"ts"_s);
    ts->addTab(u"Find Text"_s);
    ts->addTab(u"Go To Card"_s);
    ts->setExpanding(false);

    auto *findPage = new QWidget;
    auto *findLayout = new QVBoxLayout(findPage);
    findLayout->setContentsMargins(0, 8, 0, 0);
    Text2->setPlaceholderText(u"A word, part of a word, or * for every card"_s);
    Text2->setClearButtonEnabled(true);
    findLayout->addWidget(Text2);
    Check1->setChecked(true);
    Check2->setChecked(true);
    auto *boxes = new QHBoxLayout;
    boxes->addWidget(Check1);
    boxes->addWidget(Check2);
    boxes->addWidget(Check3);
    boxes->addStretch();
    findLayout->addLayout(boxes);
    auto *findButtons = new QHBoxLayout;
    findButtons->addWidget(Command2);
    findButtons->addWidget(Command4);
    findButtons->addStretch();
    findButtons->addWidget(Command5);
    findLayout->addLayout(findButtons);

    auto *goPage = new QWidget;
    auto *goLayout = new QVBoxLayout(goPage);
    goLayout->setContentsMargins(0, 8, 0, 0);
    auto *numberRow = new QHBoxLayout;
    auto *numberLabel = new QLabel(u"Card &number:"_s, goPage);
    numberLabel->setBuddy(Text1);
    numberRow->addWidget(numberLabel);
    Text1->setMaximumWidth(90);
    numberRow->addWidget(Text1);
    numberRow->addWidget(Label1);
    numberRow->addStretch();
    numberRow->addWidget(Command3);
    goLayout->addLayout(numberRow);
    goLayout->addWidget(Slider1);
    goLayout->addStretch();

    m_pages->addWidget(findPage);
    m_pages->addWidget(goPage);
    connect(ts, &QTabBar::currentChanged, m_pages, &QStackedWidget::setCurrentIndex);
    connect(ts, &QTabBar::currentChanged, this, [this](int tab) {
        (tab == 0 ? Command5 : Command3)->setDefault(true);
        (tab == 0 ? static_cast<QWidget *>(Text2) : Text1)->setFocus();
    });

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(ts);
    layout->addWidget(m_pages);
    auto *bottom = new QHBoxLayout;
    bottom->addStretch();
    bottom->addWidget(Command1);
    layout->addLayout(bottom);
    setMinimumWidth(460);

    Command5->setDefault(true);
    for (QPushButton *b : {Command1, Command2, Command3, Command4})
        b->setAutoDefault(false);
    connect(Command5, &QPushButton::clicked, this, &frmFind::Search);
    connect(Command3, &QPushButton::clicked, this, &frmFind::JumpToCard);
    connect(Command1, &QPushButton::clicked, this, &QDialog::close);
    connect(Command2, &QPushButton::clicked, this, [] { frmViewer::Instance()->FillItemViewer(); });
    connect(Command4, &QPushButton::clicked, this, [this] {
        Text2->clear();
        if (frmViewer *viewer = frmViewer::Existing())
            viewer->ShowResults({}, u"Item Viewer"_s);
        Text2->setFocus();
    });
    connect(Slider1, &QSlider::valueChanged, Text1,
            [this](int v) { Text1->setText(QString::number(v)); });
    // Tab in reading order, page by page, then Close.
    const QList<QWidget *> order {ts,       Text2,    Check1, Check2,  Check3,   Command2,
                                  Command4, Command5, Text1,  Slider1, Command3, Command1};
    for (qsizetype i = 1; i < order.size(); ++i)
        setTabOrder(order[i - 1], order[i]);
    // Return in the card number goes to the default button (Go) alone.
    UpdateRange();
    forms::Add(this);
}

void frmFind::UpdateRange()
{
    // Cards are numbered as the status line counts them: 1 to the deck's
    // upper bound.
    const int last = qMax(1, g_Deck.UBound());
    Label1->setText(u"(1 - %1)"_s.arg(last));
    Slider1->setRange(1, last);
}

void frmFind::showEvent(QShowEvent *event)
{
    if (!m_placed) {
        modMain::RestoreWindowPosition(this);
        m_placed = true;
    }
    UpdateRange();
    QDialog::showEvent(event);
    Text2->setFocus();
    Text2->selectAll();
}

void frmFind::Search()
{
    const QString text = Text2->text().trimmed();
    Text2->setText(text);
    if (text.isEmpty() || text == u"*"_s) {
        frmViewer::Instance()->FillItemViewer();
        return;
    }
    if (text == u"show_mem_usage"_s) {
        frmViewer::Instance()->ShowMemoryList();
        return;
    }
    if (text == u"cause_mem_crash"_s) {
        CauseCrash();
        return;
    }

    const Qt::CaseSensitivity cs = Check3->isChecked() ? Qt::CaseSensitive : Qt::CaseInsensitive;
    const bool inQuestions = Check1->isChecked(), inAnswers = Check2->isChecked();
    frmViewer *viewer = frmViewer::Instance();
    clsTimer timer;
    timer.Start();
    std::vector<CardListModel::Row> rows;
    for (int i = g_Deck.LBound(); i <= g_Deck.UBound(); ++i) {
        const Card &card = g_Deck[i];
        const bool q = inQuestions && card.question.contains(text, cs);
        const bool a = inAnswers && card.answer.contains(text, cs);
        if (q || a)
            rows.push_back(viewer->Cards()->RowFor(i, q, a));
    }
    timer.Stop();
    const QString hits = QString::number(rows.size());
    viewer->ShowResults(std::move(rows),
                        timer.strElapsed(u"Item Viewer - [found "_s + hits
                                         + u" items in %t seconds]"_s));
    Log(timer.strElapsedMs(u" .. search took %t msec to find "_s + hits + u" hits/n"_s));
}

void frmFind::JumpToCard()
{
    if (g_ShuffleRunning)
        return;
    bool numeric = false;
    const int number = Text1->text().trimmed().toInt(&numeric);
    if (!numeric || number < Slider1->minimum() || number > Slider1->maximum())
        return; // anything else is ignored in silence
    modrender::CurrentCard = qint16(number - 1);
    modrender::ShowCurrentCard();
}

void frmFind::CauseCrash()
{
    const MsgResult answer = MsgBox(
            u"Vocabrix"_s,
            u"Warning: this causes a very hard crash and should only be used for testing purposes. "
            "Are you sure you want to continue?"_s,
            MsgIcon::Exclamation, MsgButtons::YesNo);
    if (answer != MsgResult::No)
        crashHandler()();
}

void frmFind::OnUnload()
{
    modMain::SaveWindowPosition(this, false);
}

void frmFind::closeEvent(QCloseEvent *)
{
    forms::Unload(this);
}
