// SPDX-License-Identifier: GPL-3.0-or-later
#include "windows/frmmain.h"

#include "cards/deck.h"
#include "cards/progressfile.h"
#include "cards/statistics.h"
#include "controls/zelcheck.h"
#include "controls/zelhl.h"
#include "core/gcommondialog.h"
#include "core/log.h"
#include "core/programstate.h"
#include "core/prompter.h"
#include "core/speaker.h"
#include "drawing/r_renderer.h"
#include "settings/r_data.h"
#include "windows/cardspeech.h"
#include "windows/frmabout.h"
#include "windows/lifecycle.h"
#include "windows/modrender.h"
#include "windows/printcards.h"
#include "windows/studydialogs.h"
#include "windows/windowplacement.h"

#include <QMenu>

using namespace Qt::Literals::StringLiterals;

// The study window's commands: every key, menu item and button ends here.

void frmMain::HandleKey(int keyCode, int shift)
{
    Q_UNUSED(shift); // letters count with or without Shift
    if (g_ShuffleRunning || !m_studying)
        return;
    if (keyCode >= 13 && keyCode <= 88 && HandleStudyKey(keyCode))
        return;
    HandleAddedKey(keyCode);
}

bool frmMain::HandleStudyKey(int keyCode)
{
    switch (keyCode) {
    case 13:
        modrender::ToggleAnswer();
        return true;
    case 32:
        ToggleTrouble();
        return true;
    case 37:
        modrender::PreviousCard();
        return true;
    case 39:
        modrender::NextCard();
        return true;
    case 65:
        ShowAbout();
        return true;
    case 70:
        ShowFind();
        return true;
    case 79:
        ShowOptions();
        return true;
    case 83:
        Shuffle();
        return true;
    case 86:
        ViewAllCards();
        return true;
    case 88:
        Exit();
        return true;
    default:
        return false;
    }
}

// Keys of the window's own additions, on codes the study keys leave free.
void frmMain::HandleAddedKey(int keyCode)
{
    switch (keyCode) {
    case kKeyTroubleOnly:
        // The only way to the box by keyboard: Space on it marks the card.
        Check2->Press();
        break;
    case kKeyHelp:
        zelHL1->Press();
        break;
    case kKeyUndo:
        Undo();
        break;
    case kKeyPrint:
        PrintTroubleCards();
        break;
    case kKeySpeak:
        SpeakCard();
        break;
    default:
        break;
    }
}

void frmMain::ToggleTrouble()
{
    // The key flips the box, then does what a click on it does.
    Check1->SetChecked(!Check1->Checked());
    modrender::SetCardTrouble(Check1->Checked());
}

void frmMain::ShowMenuAt(const QPoint &globalPosition)
{
    if (g_ShuffleRunning || !m_studying)
        return;
    mP->popup(globalPosition);
}

void frmMain::Shuffle()
{
    if (m_studying)
        RunShuffleCommand(*this);
}

void frmMain::ShowSaveProgress()
{
    SaveProgress();
}

void frmMain::SaveStatistics()
{
    if (const auto chosen = GCommonDialog::AskSave(u"Save Statistics"_s, u"*.txt"_s, u"txt"_s, {},
                                                   u"statistics"_s))
        WriteStatistics(*chosen);
}

QString frmMain::QuickHelpText() const
{
    const QString crlf = u"\r\n"_s;
    const QStringList lines {
            u"Introduction"_s,
            u"============"_s,
            u"This program is a flash card system designed primarily for studying vocabulary. It "
            "supports "
            "double-sided 'cards' with the vocabulary word on one side and the definition and/or "
            "translation on the other side. The card deck can also be shuffled quickly and easily "
            "using the 'Shuffle Cards' feature."_s,
            QString(),
            u"Quick Help"_s,
            u"=========="_s,
            u"1. Use the '<<' and '>>' buttons to navigate through the cards"_s,
            u"2. To see the answer, click on the answer button"_s,
            u"3. To shuffle the deck, click on the menu button and then click 'Shuffle Cards'"_s,
            u"4. Cards where the answer is known can be removed from card rotation by unchecking "
            "the 'I had "
            "trouble with this card' box"_s,
            QString(),
            u"Keyboard Shortcuts"_s,
            u"=================="_s,
            u"These shortcuts will work in the main flash card window only"_s,
            u"Left Arrow = Previous Card"_s,
            u"Right Arrow = Next Card"_s,
            u"Space Bar = Trouble Toggle"_s,
            u"Return Key = Question/Answer Toggle"_s,
            u"o = Options Dialog"_s,
            u"s = Shuffle Deck"_s,
            u"v = View All Loaded Cards"_s,
            u"f = Find Card Dialog"_s,
            u"a = Show About Box"_s,
            u"x = Exit Program"_s,
    };
    return lines.join(crlf) + crlf;
}

void frmMain::ShowQuickHelp()
{
    MsgBox(u"Quick Help"_s, QuickHelpText(), MsgIcon::Information, MsgButtons::OK);
}

void frmMain::ShowAbout()
{
    frmAbout::ShowAbout(this);
}

void frmMain::NewSession()
{
    // Unloading for a new session saves the position and hides the window;
    // the program goes on with a new chapter selection.
    RestartPending = true;
    modMain::SaveWindowPosition(this, false);
    hide();
    lifecycle().StartNewSession();
}

void frmMain::Exit()
{
    close();
}

void frmMain::ShowOptions()
{
    studydialogs::ShowOptions();
}

void frmMain::ShowFind()
{
    studydialogs::ShowFind();
}

void frmMain::ViewAllCards()
{
    studydialogs::ViewAllCards();
}

void frmMain::Undo()
{
    if (m_studying)
        modrender::Undo();
}

void frmMain::PrintTroubleCards()
{
    if (m_studying)
        printcards::PrintTroubleCards();
}

void frmMain::SpeakCard()
{
    if (m_studying)
        cardspeech::SpeakCard();
}

void frmMain::UpdateSpeakItem()
{
    const QString why = speaker().Unavailable();
    mP_speak->setEnabled(why.isEmpty());
    mP_speak->setToolTip(why.isEmpty() ? u"Speak the text on the card"_s : why);
}
