// SPDX-License-Identifier: GPL-3.0-or-later
#include "windows/frmmain.h"

#include "controls/zelcheck.h"
#include "controls/zelflatbutton.h"
#include "controls/zelhl.h"
#include "core/keycodes.h"
#include "core/modbrowser.h"
#include "core/programstate.h"
#include "drawing/cmemdc.h"
#include "drawing/colourcontrast.h"
#include "drawing/r_renderer.h"
#include "settings/r_data.h"
#include "windows/cardarea.h"
#include "windows/frmprogress.h"
#include "windows/lifecycle.h"
#include "windows/modrender.h"
#include "windows/programstyle.h"
#include "windows/typedanswer.h"
#include "windows/windowplacement.h"

#include <QCloseEvent>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;

namespace {

QPointer<frmMain> g_instance;

QColor toQColor(quint32 ole)
{
    return QColor(int(ole & 0xFF), int((ole >> 8) & 0xFF), int((ole >> 16) & 0xFF));
}

} // namespace

frmMain *frmMain::Instance()
{
    if (!g_instance) {
        g_instance = new frmMain;
        g_instance->Load();
    }
    return g_instance;
}

frmMain *frmMain::Existing()
{
    return g_instance;
}

frmMain *frmMain::Ensure()
{
    if (!g_instance)
        return Instance();
    if (!g_instance->isVisible())
        g_instance->Load();
    return g_instance;
}

frmMain::frmMain() : QWidget(nullptr), m_surface(this, Qt::black), m_strip(new QWidget(this))
{
    setObjectName(u"frmMain"_s);
    setWindowTitle(u"Vocabrix"_s);
    setFixedSize(kCardWidth, kCardHeight);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setFocusPolicy(Qt::StrongFocus);
    m_surface.Resize(size());

    Timer1 = new QTimer(this);
    connect(Timer1, &QTimer::timeout, this, &frmMain::HoverTick);
    BuildControls();
    BuildMenu();
    ApplyColors(0, 14570825, 0xFFFFFF);
    forms::Add(this);
}

frmMain::~frmMain() = default;

void frmMain::BuildControls()
{
    Card = new CardArea(this);
    Card->setGeometry(0, 0, kCardWidth, kCardHeight - kControlRows);
    // The card's one-pixel separator row stays in sight above the strip.
    m_strip->setGeometry(0, kCardHeight - kControlRows + 1, kCardWidth, kControlRows - 1);
    m_strip->setAutoFillBackground(true);

    auto place = [this](auto *control, const QString &name, const QString &caption, QRect at) {
        control->setObjectName(name);
        control->InitProperties();
        control->SetCaption(caption);
        control->setGeometry(at);
        return control;
    };
    Check1 = place(new zelCheck(m_strip), u"Check1"_s, u"I had trouble with this card"_s,
                   {10, 8, 250, 20});
    Check2 = place(new zelCheck(m_strip), u"Check2"_s, u"Show only trouble cards"_s,
                   {10, 32, 250, 20});
    zelFlatButton1 =
            place(new zelFlatButton(m_strip), u"zelFlatButton1"_s, u"Menu"_s, {290, 8, 76, 26});
    zelFlatButton3 =
            place(new zelFlatButton(m_strip), u"zelFlatButton3"_s, u"<<"_s, {372, 8, 76, 26});
    zelFlatButton4 =
            place(new zelFlatButton(m_strip), u"zelFlatButton4"_s, u"Answer"_s, {454, 8, 90, 26});
    zelFlatButton2 =
            place(new zelFlatButton(m_strip), u"zelFlatButton2"_s, u">>"_s, {550, 8, 76, 26});
    zelHL1 = place(new zelHL(m_strip), u"zelHL1"_s, u"Vocabrix Help"_s, {540, 39, 86, 17});
    zelHL1->move(626 - zelHL1->width(), 39);
    zelHL1->setToolTip(u"Open the Vocabrix manual (F1)"_s);

    // Tab goes through the controls in reading order.
    const QList<QWidget *> order {Check1,         Check2,         zelFlatButton1, zelFlatButton3,
                                  zelFlatButton4, zelFlatButton2, zelHL1};
    for (qsizetype i = 1; i < order.size(); ++i)
        setTabOrder(order[i - 1], order[i]);

    const QStringList &texts = HoverHelpTexts();
    const std::pair<zelControl *, QString> help[] = {
            {Check1, texts[0]},         {Check2, texts[1]},         {zelFlatButton1, texts[2]},
            {zelFlatButton2, texts[3]}, {zelFlatButton3, texts[4]}, {zelFlatButton4, texts[5]},
    };
    for (const auto &[control, text] : help) {
        const QString helpText = text;
        connect(control, &zelControl::MouseOver, this,
                [this, helpText] { ShowHoverHelp(helpText); });
        connect(control, &zelControl::MouseOut, this, &frmMain::StartHoverTimer);
        connect(control, &zelControl::KeyDown, this, &frmMain::HandleKey);
    }
    connect(zelHL1, &zelControl::KeyDown, this, &frmMain::HandleKey);
    Typing = new TypedAnswer(this);

    connect(Check1, &zelControl::Click, this, [this] {
        if (m_studying)
            modrender::SetCardTrouble(Check1->Checked());
    });
    connect(zelFlatButton1, &zelControl::Click, this, [this] {
        ShowMenuAt(m_strip->mapToGlobal(
                QPoint(zelFlatButton1->x(), zelFlatButton1->y() + zelFlatButton1->height())));
    });
    connect(zelFlatButton2, &zelControl::Click, this, [this] {
        if (m_studying)
            modrender::NextCard();
    });
    connect(zelFlatButton3, &zelControl::Click, this, [this] {
        if (m_studying)
            modrender::PreviousCard();
    });
    connect(zelFlatButton4, &zelControl::Click, this, [this] {
        if (m_studying)
            modrender::ToggleAnswer();
    });
    connect(zelHL1, &zelControl::Click, this, [] { modBrowser::OpenProductPage(); });
}

void frmMain::BuildMenu()
{
    mP = new QMenu(this);
    mP->setObjectName(u"mP"_s);
    auto item = [this](QAction *&action, const QString &name, const QString &caption,
                       const QString &key, void (frmMain::*command)()) {
        action = mP->addAction(key.isEmpty() ? caption : caption + u'\t' + key);
        action->setObjectName(name);
        connect(action, &QAction::triggered, this, command);
    };
    item(mP_n, u"mP_n"_s, u"New Session"_s, QString(), &frmMain::NewSession);
    mP->addSeparator();
    item(mP_o, u"mP_o"_s, u"Options..."_s, u"O"_s, &frmMain::ShowOptions);
    item(mP_fc, u"mP_fc"_s, u"Find Card..."_s, u"F"_s, &frmMain::ShowFind);
    item(mP_vac, u"mP_vac"_s, u"View All Loaded Cards"_s, u"V"_s, &frmMain::ViewAllCards);
    item(mP_sc, u"mP_sc"_s, u"Shuffle Cards"_s, u"S"_s, &frmMain::Shuffle);
    mP->addSeparator();
    item(mP_sp, u"mP_sp"_s, u"Save Progress..."_s, QString(), &frmMain::ShowSaveProgress);
    item(mP_ss, u"mP_ss"_s, u"Save Statistics..."_s, QString(), &frmMain::SaveStatistics);
    mP->addSeparator();
    item(mP_qh, u"mP_qh"_s, u"Quick Help"_s, QString(), &frmMain::ShowQuickHelp);
    item(mP_a, u"mP_a"_s, u"About"_s, u"A"_s, &frmMain::ShowAbout);
    mP->addSeparator();
    item(mP_e, u"mP_e"_s, u"Exit"_s, u"X"_s, &frmMain::Exit);
    // The additions' items come after the menu's own. Z works with or without
    // Ctrl, as every letter here does.
    mP->addSeparator();
    item(mP_u, u"mP_u"_s, u"Undo"_s, u"Z"_s, &frmMain::Undo);
    connect(mP, &QMenu::aboutToShow, this, [this] { mP_u->setEnabled(modrender::CanUndo()); });

    mP->addSeparator();
    item(mP_print, u"mP_print"_s, u"Print Trouble Cards..."_s, u"P"_s, &frmMain::PrintTroubleCards);
    item(mP_speak, u"mP_speak"_s, u"Speak Card"_s, u"F5"_s, &frmMain::SpeakCard);
    mP->setToolTipsVisible(true);
    connect(mP, &QMenu::aboutToShow, this, &frmMain::UpdateSpeakItem);
}

void frmMain::Load()
{
    modMain::RestoreWindowPosition(this);
    // New cards that start as trouble cards start the window in trouble-only
    // mode, so unticking a card you know takes it out of the rotation.
    Check2->SetChecked(g_TroubleDefaultCurrent);
    EnableStudyControls(true);
    show();
    raise();
    activateWindow();
    setFocus();
    StartHoverTimer();
    RestartPending = false;
    m_closing = false;
}

void frmMain::Reinitialize()
{
    StopHoverTimer();
    mP->hide();
    hide();
    m_studying = false;
    modrender::ClearUndo();
    Typing->SetCounts(0, 0);
    Typing->Refresh();
    Check1->SetChecked(false);
    Check2->SetChecked(false);
    m_surface.image().fill(Qt::black);
    m_surface.Changed(rect());
}

void frmMain::EnableStudyControls(bool enabled)
{
    for (zelControl *c :
         {static_cast<zelControl *>(zelFlatButton1), static_cast<zelControl *>(zelFlatButton2),
          static_cast<zelControl *>(zelFlatButton3), static_cast<zelControl *>(zelFlatButton4),
          static_cast<zelControl *>(Check1), static_cast<zelControl *>(Check2)})
        c->SetEnabled(enabled);
    // The keyboard goes back to the typing line with the controls (loading
    // and shuffling turn them off while the card is already shown).
    Typing->setEnabled(enabled);
    if (enabled)
        Typing->TakeFocus();
    // The disabled look shows at once here, not at the next mouse move.
    for (zelControl *c : m_strip->findChildren<zelControl *>())
        c->Redraw();
}

void frmMain::ApplyColors(quint32 backA, quint32 backB, quint32 textColor)
{
    QPalette p = m_strip->palette();
    p.setColor(QPalette::Window, toQColor(cMemDC::TranslateColor(backA)));
    m_strip->setPalette(p);
    // The card's colours, as long as the captions stay readable on the strip
    // (and on the buttons' hover colour); else black or white.
    const quint32 text = ReadableOn(textColor, backA);
    const quint32 tint = cMemDC::BlendColour(cMemDC::TranslateColor(backB), 0xFFFFFF, 0.6);
    for (zelFlatButton *b : {zelFlatButton1, zelFlatButton2, zelFlatButton3, zelFlatButton4}) {
        b->SetBackcolor(backA);
        b->SetForecolor(text);
        b->SetBackcolorMouse(backB);
        b->SetForecolorMouse(ReadableOn(textColor, backB));
        b->SetBackcolorDisabled(backA);
        b->SetForecolorDisabled(cMemDC::BlendColour(text, cMemDC::TranslateColor(backA), 0.4));
    }
    for (zelCheck *c : {Check1, Check2}) {
        c->SetBackcolor(backA);
        c->SetForecolor(text);
        c->SetForecolorMouse(ReadableOn(tint, backA));
    }
    zelHL1->SetBackcolor(backA);
    zelHL1->SetForecolor(ReadableOn(tint, backA));
    zelHL1->SetForecolorMouse(text);
    for (zelControl *c : m_strip->findChildren<zelControl *>())
        c->Redraw();
    Typing->ApplyColors(backA, backB, textColor);
}

void frmMain::StopCardDisplay()
{
    if (r_renderer *renderer = modrender::Renderer())
        renderer->StopRefresh();
}

void frmMain::StartCardDisplay()
{
    if (r_renderer *renderer = modrender::Renderer())
        renderer->StartRefresh();
    // The card face still says "Randomizing": show the card now in its place.
    if (m_studying && !g_ShuttingDown)
        modrender::ShowCardAgain();
}

void frmMain::ShowCardTexts(const QString &text, const QString &pass)
{
    r_data *metrics = modrender::Metrics();
    r_renderer *renderer = modrender::Renderer();
    if (!metrics || !renderer)
        return;
    metrics->SetMainText(text);
    metrics->SetNoteText(QString()); // no card's note under these
    metrics->SetCornerText(r_data::Corner::TopLeft, pass);
    metrics->SetCornerText(r_data::Corner::TopRight, QString());
    renderer->Draw(true);
    // The display is stopped during a shuffle: show the texts whole.
    if (cMemDC *surface = renderer->Surface())
        surface->Blit(&m_surface);
}

void frmMain::ShowProgress(const QString &caption, int minimum, int maximum)
{
    m_progress = new frmProgress(this);
    m_progress->SetCaption(caption);
    m_progress->SetRange(minimum, maximum);
    m_progress->show();
    m_progress->move(geometry().center() - m_progress->rect().center());
}

int frmMain::ProgressValue() const
{
    return m_progress ? m_progress->Value() : 0;
}

void frmMain::SetProgressValue(int value)
{
    if (m_progress)
        m_progress->SetValue(value);
}

void frmMain::CloseProgress()
{
    forms::Unload(m_progress);
    m_progress = nullptr;
}

void frmMain::OnUnload()
{
    StopHoverTimer();
    m_studying = false;
    Typing->Refresh();
}

void frmMain::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    m_surface.PaintOn(painter, event->rect());
}

void frmMain::keyPressEvent(QKeyEvent *event)
{
    HandleKey(keycodes::ToVirtualKey(event->key()), keycodes::ToShiftState(event->modifiers()));
}

void frmMain::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::RightButton)
        Typing->TakeFocus(); // a click on the card leaves the keyboard on the line
    else if (!g_ShuffleRunning)
        ShowMenuAt(event->globalPosition().toPoint());
}

void frmMain::contextMenuEvent(QContextMenuEvent *event)
{
    // The keyboard's menu key (or Shift+F10) opens the menu under the menu
    // button, as a click on it does; the mouse has its right button above.
    if (event->reason() == QContextMenuEvent::Keyboard)
        zelFlatButton1->Press();
}

void frmMain::closeEvent(QCloseEvent *event)
{
    if (g_ShuffleRunning) {
        event->ignore();
        return;
    }
    event->accept();
    if (m_closing)
        return;
    m_closing = true;
    modMain::SaveWindowPosition(this, false);
    if (!RestartPending)
        lifecycle().DestroySystem(0, false);
}
