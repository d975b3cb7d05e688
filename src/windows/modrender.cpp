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
#include "windows/cardarea.h"
#include "windows/cardspeech.h"
#include "windows/frmmain.h"

#include <memory>

using namespace Qt::Literals::StringLiterals;

namespace modrender {

namespace {

std::unique_ptr<r_data> g_metrics;
std::unique_ptr<r_renderer> g_renderer;

using Corner = r_data::Corner;

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
    if (frmMain *main = frmMain::Existing())
        main->Card->SetDescription(CardDescription());
}

void setTroubleMark(const Card *card)
{
    if (frmMain *main = frmMain::Existing())
        main->Check1->SetChecked(card && card->isTrouble());
}

// Again: the card now at the current place, shown afresh without counting a
// view (after a shuffle).
enum class View { First, Current, Move, Again };

void showAsNewView(View kind)
{
    if (kind == View::First)
        CurrentCard = qint16(g_Deck.LBound());
    UpdateTimesViewed(kind != View::Again);
    const Card *card = current();
    if (g_metrics) {
        g_metrics->SetMainText(card ? card->question : QString());
        g_metrics->SetCornerText(Corner::TopLeft, CardStatusText(kind != View::Current));
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

void move(Direction direction)
{
    frmMain *main = frmMain::Existing();
    if (main && main->Check2->Checked())
        CurrentCard = qint16(FindTroubleCard(direction));
    else
        CurrentCard = qint16(StepIndex(direction, CurrentCard));
    showAsNewView(View::Move);
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
    const Direction back =
            direction == Direction::Forward ? Direction::Backward : Direction::Forward;
    const int stop = StepIndex(back, CurrentCard);
    int i = CurrentCard;
    while (i != stop) {
        i = StepIndex(direction, i);
        if (g_Deck[i].isTrouble())
            return i;
    }
    if (const Card *card = current(); card && card->isTrouble())
        return CurrentCard;

    MsgBox(u"Card Manager"_s,
           u"No trouble cards have been located. The first card will now be displayed"_s,
           MsgIcon::Information, MsgButtons::OK);
    if (frmMain *main = frmMain::Existing())
        main->Check2->SetChecked(false);
    // The message speaks of the first card, yet the one after it is shown;
    // kept so. (A deck of no cards has only its empty slot to show.)
    return qMin(g_Deck.LBound() + 1, g_Deck.UBound());
}

QString CardStatusText(bool withTroubleCount)
{
    QString text = u"showing card "_s + QString::number(CurrentCard + 1) + u" of "_s
            + QString::number(g_Deck.UBound());
    if (withTroubleCount)
        text += u"; "_s + QString::number(CountTroubleCards()) + u" trouble cards"_s;
    return text;
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
    const bool question = g_metrics->MainText() == card->question;
    return g_metrics->MainText() + (question ? u" (question side), "_s : u" (answer side), "_s)
            + CardStatusText(false) + u", "_s + ChapterCaption();
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
    showAsNewView(View::Current);
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
    // The side on show is not kept anywhere: the main text tells it.
    if (g_metrics->MainText() == card->question) {
        g_metrics->SetMainText(card->answer);
        g_metrics->SetCornerText(Corner::TopLeft,
                                 u"Showing answer to '"_s + card->question + u"'"_s);
        g_metrics->SetCornerText(Corner::TopRight, QString());
    } else {
        g_metrics->SetMainText(card->question);
        g_metrics->SetCornerText(Corner::TopLeft, CardStatusText(true));
        UpdateTimesViewed(false);
    }
    redraw();
}

void SetCardTrouble(bool trouble)
{
    if (Card *card = current())
        card->trouble = trouble ? kCardTrue : kCardFalse;
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
