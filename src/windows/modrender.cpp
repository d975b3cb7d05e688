// SPDX-License-Identifier: GPL-3.0-or-later
#include "windows/modrender.h"

#include "cards/deck.h"
#include "controls/zelcheck.h"
#include "core/log.h"
#include "core/programstate.h"
#include "core/prompter.h"
#include "drawing/r_renderer.h"
#include "korva/ikorvalite.h"
#include "settings/r_data.h"
#include "settings/settingskeys.h"
#include "settings/studyoptions.h"
#include "windows/cardarea.h"
#include "windows/cardspeech.h"
#include "windows/frmmain.h"
#include "windows/typedanswer.h"

#include <QRandomGenerator>

#include <deque>
#include <memory>

using namespace Qt::Literals::StringLiterals;

namespace modrender {

namespace {

std::unique_ptr<r_data> g_metrics;
std::unique_ptr<r_renderer> g_renderer;

using Corner = r_data::Corner;

Side g_side = Side::Question;
bool g_answerFirst = false;
int g_shown = 0; // the card whose face is on show
std::function<bool()> g_coin;

// What one change of the session undoes to: the face on show before it.
struct Step
{
    enum class Kind { Mark, Move, Flip, Jump };
    Kind kind;
    int card = 0;
    Side side = Side::Question;
    bool answerFirst = false;
    bool trouble = false;     // a mark: the card's flag before
    bool troubleOnly = false; // a move: "show only trouble cards" before
    int viewed = -1;          // a move or jump: the card whose view it counted
};
std::deque<Step> g_undo;

Step stepFrom(Step::Kind kind)
{
    Step step;
    step.kind = kind;
    step.card = g_shown;
    step.side = g_side;
    step.answerFirst = g_answerFirst;
    if (frmMain *main = frmMain::Existing())
        step.troubleOnly = main->Check2->Checked();
    return step;
}

void push(const Step &step)
{
    g_undo.push_back(step);
    if (g_undo.size() > size_t(kUndoSteps))
        g_undo.pop_front();
}

Card *current()
{
    if (CurrentCard < g_Deck.LBound() || CurrentCard > g_Deck.UBound())
        return nullptr;
    return &g_Deck[CurrentCard];
}

// Faces without texts, then with them: the second draw fades the texts in.
void redraw()
{
    if (!g_renderer)
        return;
    g_renderer->Draw(false);
    g_renderer->Draw(true);
    if (frmMain *main = frmMain::Existing()) {
        main->Card->SetDescription(CardDescription());
        main->Typing->FaceShown();
    }
}

void setTroubleMark(const Card *card)
{
    if (frmMain *main = frmMain::Existing())
        main->Check1->SetChecked(card && card->isTrouble());
}

QString statusLine(const QString &lead, bool withTroubleCount)
{
    QString text =
            lead + QString::number(CurrentCard + 1) + u" of "_s + QString::number(g_Deck.UBound());
    if (withTroubleCount)
        text += u"; "_s + QString::number(CountTroubleCards()) + u" trouble cards"_s;
    return text;
}

// The status line of a card that came up answer first: it says which side is
// on show, as a flipped card's heading does.
QString answerFirstStatus(bool withTroubleCount)
{
    return statusLine(u"showing the answer of card "_s, withTroubleCount);
}

bool drawAnswerFirst()
{
    switch (studyoptions::First()) {
    case studyoptions::FirstSide::Answer:
        return true;
    case studyoptions::FirstSide::Random:
        return g_coin ? g_coin() : QRandomGenerator::global()->bounded(2) == 1;
    case studyoptions::FirstSide::Question:
        break;
    }
    return false;
}

void setNote(const Card *card)
{
    if (g_metrics)
        g_metrics->SetNoteText(studyoptions::ShowNotes() && g_side == Side::Answer && card
                                       ? card->note
                                       : QString());
}

// The texts of the card at CurrentCard on one side, counting no view. A card
// that came up question first gets the heading "Showing answer to ..." on its
// answer; one that came up answer first "Showing question to ..." on its
// question, so neither heading gives away a side not yet seen.
void writeFace(Side side)
{
    const Card *card = current();
    if (!g_metrics || !card)
        return;
    g_side = side;
    const bool first = (side == Side::Answer) == g_answerFirst;
    if (side == Side::Answer) {
        g_metrics->SetMainText(card->answer);
        if (!first)
            g_metrics->SetCornerText(Corner::TopLeft,
                                     u"Showing answer to '"_s + card->question + u"'"_s);
    } else {
        g_metrics->SetMainText(card->question);
        if (!first)
            g_metrics->SetCornerText(Corner::TopLeft,
                                     u"Showing question to '"_s + card->answer + u"'"_s);
    }
    if (first) {
        g_metrics->SetCornerText(Corner::TopLeft,
                                 g_answerFirst ? answerFirstStatus(true) : CardStatusText(true));
        UpdateTimesViewed(false);
    } else {
        g_metrics->SetCornerText(Corner::TopRight, QString());
    }
    setNote(card);
}

// Again: the card now at the current place, shown afresh without counting a
// view (after a shuffle).
enum class View { First, Current, Move, Again };

void showAsNewView(View kind)
{
    if (kind == View::First)
        CurrentCard = qint16(g_Deck.LBound());
    // A new deck or a new order: what came before can no longer be undone.
    if (kind == View::First || kind == View::Again)
        g_undo.clear();
    UpdateTimesViewed(kind != View::Again);
    const Card *card = current();
    g_answerFirst = card && drawAnswerFirst();
    g_side = g_answerFirst ? Side::Answer : Side::Question;
    g_shown = CurrentCard;
    if (g_metrics) {
        if (g_answerFirst) {
            g_metrics->SetMainText(card->answer);
            g_metrics->SetCornerText(Corner::TopLeft, answerFirstStatus(kind != View::Current));
        } else {
            g_metrics->SetMainText(card ? card->question : QString());
            g_metrics->SetCornerText(Corner::TopLeft, CardStatusText(kind != View::Current));
        }
        setNote(card);
        g_metrics->SetCornerText(Corner::BottomRight, ChapterCaption());
        if (kind == View::First)
            g_metrics->SetCornerText(Corner::BottomLeft,
                                     QString()); // the start-up hint goes for good
    }
    if (kind == View::First) {
        setTroubleMark(card);
        redraw();
    } else {
        redraw();
        setTroubleMark(card);
    }
    if (kind != View::Again)
        cardspeech::NewCardShown();
}

// A move or a jump to the card at CurrentCard, undone to the face before.
void showCounted(View kind, Step step)
{
    const Card *card = current();
    const qint16 views = card ? card->timesViewed : 0;
    showAsNewView(kind);
    if (card && card->timesViewed != views)
        step.viewed = CurrentCard;
    push(step);
}

int findTroubleCard(Direction direction, bool skipEmpty)
{
    // Stepping over the empty slot, the arrows never stop on it.
    auto isTrouble = [skipEmpty](int i) {
        return g_Deck[i].isTrouble() && !(skipEmpty && i == g_Deck.UBound());
    };
    const Direction back =
            direction == Direction::Forward ? Direction::Backward : Direction::Forward;
    const int stop = StepIndex(back, CurrentCard);
    int i = CurrentCard;
    while (i != stop) {
        i = StepIndex(direction, i);
        if (isTrouble(i))
            return i;
    }
    if (current() && isTrouble(CurrentCard))
        return CurrentCard;

    MsgBox(u"Card Manager"_s,
           u"No trouble cards have been located. The first card will now be displayed"_s,
           MsgIcon::Information, MsgButtons::OK);
    if (frmMain *main = frmMain::Existing())
        main->Check2->SetChecked(false);
    // The message speaks of the first card, yet the one after it is shown;
    // kept so. (A deck of no cards has only its empty slot to show.)
    const int shown = qMin(g_Deck.LBound() + 1, g_Deck.UBound());
    return skipEmpty && shown == g_Deck.UBound() ? g_Deck.LBound() : shown;
}

void move(Direction direction)
{
    const Step step = stepFrom(Step::Kind::Move);
    // The option steps over the deck's empty last slot, unless it is all the
    // deck has.
    const bool skip = studyoptions::SkipEmptySlot() && g_Deck.CardCount() > 0;
    if (step.troubleOnly) {
        CurrentCard = qint16(findTroubleCard(direction, skip));
    } else {
        int next = StepIndex(direction, CurrentCard);
        if (skip && next == g_Deck.UBound())
            next = StepIndex(direction, next);
        CurrentCard = qint16(next);
    }
    showCounted(View::Move, step);
}

} // namespace

r_data *Metrics()
{
    return g_metrics.get();
}

r_renderer *Renderer()
{
    return g_renderer.get();
}

int CountTroubleCards()
{
    int count = 0;
    for (int i = g_Deck.LBound(); i <= g_Deck.UBound(); ++i)
        count += g_Deck[i].isTrouble() ? 1 : 0;
    return count;
}

int StepIndex(Direction direction, int index)
{
    if (direction == Direction::Forward)
        return index < g_Deck.UBound() ? index + 1 : g_Deck.LBound();
    return index > g_Deck.LBound() ? index - 1 : g_Deck.UBound();
}

int FindTroubleCard(Direction direction)
{
    return findTroubleCard(direction, false);
}

QString CardStatusText(bool withTroubleCount)
{
    return statusLine(u"showing card "_s, withTroubleCount);
}

bool ChapterCaptionFits(const QString &chapter)
{
    int help = 0;
    for (const QString &line : frmMain::HoverHelpTexts())
        help = qMax(help, r_renderer::CornerTextWidth(line));
    // The corners stand 2 pixels in from either side; keep a space between.
    const int room = frmMain::kCardWidth - 4 - help - r_renderer::CornerTextWidth(u"  "_s);
    return r_renderer::CornerTextWidth(u"from '"_s + chapter + u"'"_s) <= room;
}

QString CardDescription()
{
    const Card *card = current();
    if (!card || !g_metrics)
        return QString();
    const bool question = g_side == Side::Question;
    QString text = g_metrics->MainText()
            + (question ? u" (question side), "_s : u" (answer side), "_s) + CardStatusText(false)
            + u", "_s + ChapterCaption();
    if (!g_metrics->NoteText().isEmpty())
        text += u", note: "_s + g_metrics->NoteText();
    return text;
}

QString ChapterCaption()
{
    const Card *card = current();
    return u"from '"_s + (card ? card->chapter : QString()) + u"'"_s;
}

void UpdateTimesViewed(bool increment)
{
    Card *card = current();
    if (!card)
        return;
    // The count is 16-bit: it stops at its largest value.
    if (increment && card->timesViewed < 32767)
        ++card->timesViewed;
    if (g_metrics)
        g_metrics->SetCornerText(Corner::TopRight,
                                 u"Times viewed: "_s + QString::number(card->timesViewed));
}

void ShowFirstCard()
{
    showAsNewView(View::First);
}

void ShowCurrentCard()
{
    showCounted(View::Current, stepFrom(Step::Kind::Jump));
}

void ShowCardAgain()
{
    showAsNewView(View::Again);
}

void NextCard()
{
    move(Direction::Forward);
}

void PreviousCard()
{
    move(Direction::Backward);
}

void ToggleAnswer()
{
    const Card *card = current();
    if (!g_metrics || !card)
        return;
    const Step step = stepFrom(Step::Kind::Flip);
    // A card that came up question first tells its side by the main text
    // alone (so one whose answer is its question always flips to the answer).
    const bool toAnswer =
            g_answerFirst ? g_side == Side::Question : g_metrics->MainText() == card->question;
    writeFace(toAnswer ? Side::Answer : Side::Question);
    redraw();
    push(step);
}

void SetCardTrouble(bool trouble)
{
    Card *card = current();
    if (!card)
        return;
    Step step = stepFrom(Step::Kind::Mark);
    step.card = CurrentCard;
    step.trouble = card->isTrouble();
    card->trouble = trouble ? kCardTrue : kCardFalse;
    if (step.trouble != trouble)
        push(step);
}

Side ShownSide()
{
    return g_side;
}

bool AnswerFirst()
{
    return g_answerFirst;
}

void SetSideCoin(std::function<bool()> answerFirst)
{
    g_coin = std::move(answerFirst);
}

void ShowKeptCard(int index, bool answerShown, bool answerFirst)
{
    g_undo.clear();
    CurrentCard = qint16(index);
    g_shown = index;
    g_answerFirst = answerFirst;
    writeFace(answerShown ? Side::Answer : Side::Question);
    if (g_metrics) {
        g_metrics->SetCornerText(Corner::BottomRight, ChapterCaption());
        g_metrics->SetCornerText(Corner::BottomLeft, QString());
    }
    redraw();
    setTroubleMark(current());
}

void RefreshNote()
{
    if (!g_metrics)
        return;
    const QString before = g_metrics->NoteText();
    setNote(current());
    if (g_metrics->NoteText() != before)
        redraw();
}

bool CanUndo()
{
    return !g_undo.empty();
}

int UndoCount()
{
    return int(g_undo.size());
}

void ClearUndo()
{
    g_undo.clear();
}

void Undo()
{
    if (g_undo.empty() || !g_metrics)
        return;
    const Step step = g_undo.back();
    g_undo.pop_back();
    if (step.card > g_Deck.UBound() || step.viewed > g_Deck.UBound()) {
        g_undo.clear(); // not this deck's: nothing before it is either
        return;
    }
    frmMain *main = frmMain::Existing();
    if (step.kind == Step::Kind::Mark) {
        g_Deck[step.card].trouble = step.trouble ? kCardTrue : kCardFalse;
        setTroubleMark(current());
        return;
    }
    if (step.viewed >= 0 && g_Deck[step.viewed].timesViewed > 0)
        --g_Deck[step.viewed].timesViewed;
    if (main && step.kind == Step::Kind::Move)
        main->Check2->SetChecked(step.troubleOnly);
    CurrentCard = qint16(step.card);
    g_shown = step.card;
    g_answerFirst = step.answerFirst;
    writeFace(step.side);
    g_metrics->SetCornerText(Corner::BottomRight, ChapterCaption());
    redraw();
    setTroubleMark(current());
}

void StartRendering()
{
    ReleaseRendering();
    g_metrics = std::make_unique<r_data>();
    g_metrics->LoadColors();
    g_renderer = std::make_unique<r_renderer>();

    frmMain *main = frmMain::Instance();
    g_renderer->Initialize(main->CardWindow(), main->CardSurface(), g_metrics.get(), 50.0f, 0, 60,
                           0);
    QObject::connect(g_metrics.get(), &r_data::cornerExpired, g_renderer.get(),
                     [] { g_renderer->Draw(true); });
    SetMainRenderer(g_renderer.get());
    ApplySchemeToMainWindow();
    g_renderer->Draw(true);
    g_renderer->StartRefresh();
}

void ReleaseRendering()
{
    if (g_renderer) {
        g_renderer->Release(false);
        SetMainRenderer(nullptr);
    }
    g_renderer.reset();
    g_metrics.reset();
    // The card display is gone: so is what could be undone on it.
    g_undo.clear();
    g_side = Side::Question;
    g_answerFirst = false;
    g_shown = 0;
}

void ApplySchemeToMainWindow()
{
    frmMain *main = frmMain::Existing();
    if (!main || !g_metrics)
        return;
    main->ApplyColors(g_metrics->Color(u"backcolor_a"_s, 0),
                      g_metrics->Color(u"backcolor_b"_s, 14570825),
                      g_metrics->Color(u"main_text_forecolor"_s, 0xFFFFFF));
}

void LoadAlphaOptions()
{
    if (!g_MasterDb || !g_MasterDb->IsMounted())
        return;
    const qint32 level = g_MasterDb->GetNumber(settings::kAlphaLevel, 90).value;
    if (level >= 0 && level <= 255)
        AlphaLevel = quint8(level);
    AlphaEffects = g_MasterDb->GetNumber(settings::kAlphaEffects, 0).value != 0;
    Log(u" .. alpha enabled in program: "_s + (AlphaEffects ? u"Yes"_s : u"No"_s)
        + u" using level of "_s + QString::number(AlphaLevel) + u"/n"_s);
}

void SaveAlphaOptions()
{
    if (!g_MasterDb || !g_MasterDb->IsMounted())
        return;
    g_MasterDb->SetValue(settings::kAlphaLevel, QString(), AlphaLevel, settings::kGroupAlpha);
    g_MasterDb->SetValue(settings::kAlphaEffects, QString(), settings::FlagValue(AlphaEffects),
                         settings::kGroupAlpha);
}

} // namespace modrender
