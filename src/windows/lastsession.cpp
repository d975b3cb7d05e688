// SPDX-License-Identifier: GPL-3.0-or-later
#include "windows/lastsession.h"

#include "cards/deck.h"
#include "cards/sessionfile.h"
#include "controls/zelcheck.h"
#include "core/programstate.h"
#include "core/prompter.h"
#include "settings/studyoptions.h"
#include "windows/frmmain.h"
#include "windows/modrender.h"
#include "windows/typedanswer.h"

using namespace Qt::Literals::StringLiterals;

namespace lastsession {

void Keep()
{
    frmMain *main = frmMain::Existing();
    if (!studyoptions::KeepSession() || !main || !main->Studying())
        return;
    sessionfile::State state;
    state.card = modrender::CurrentCard;
    state.answerShown = modrender::ShownSide() == modrender::Side::Answer;
    state.answerFirst = modrender::AnswerFirst();
    state.troubleOnly = main->Check2->Checked();
    state.typedRight = main->Typing->RightCount();
    state.typedWrong = main->Typing->WrongCount();
    QString error;
    if (!sessionfile::Write(g_Deck, state, &error))
        MsgBox(u"Session Not Kept"_s,
               u"The session couldn't be kept for Resume Last Session: "_s + error + u"."_s,
               MsgIcon::Exclamation, MsgButtons::OK);
}

} // namespace lastsession
