// SPDX-License-Identifier: GPL-3.0-or-later
#include "windows/cardspeech.h"

#include "cards/deck.h"
#include "core/programstate.h"
#include "core/speaker.h"
#include "settings/r_data.h"
#include "windows/frmmain.h"
#include "windows/modrender.h"

namespace cardspeech {

namespace {

struct Cache
{
    QString home; // the home folder they were read from
    SpeechSettings settings;
    bool read = false;
};

Cache &cache()
{
    static Cache c;
    return c;
}

} // namespace

const SpeechSettings &Settings()
{
    Cache &c = cache();
    if (!c.read || c.home != g_BaseDirectory) {
        c.settings = speechsettings::Load();
        c.home = g_BaseDirectory;
        c.read = true;
    }
    return c.settings;
}

bool ChangeSettings(const SpeechSettings &settings, QString *error)
{
    Settings();
    cache().settings = settings;
    return speechsettings::Save(settings, error);
}

QString Language(const Card &card, bool questionSide)
{
    const ChapterLanguages own = g_Deck.Languages(card.chapter);
    const QString chapter = questionSide ? own.question : own.answer;
    if (!chapter.isEmpty())
        return chapter;
    return questionSide ? Settings().questionLanguage : Settings().answerLanguage;
}

void SpeakCard()
{
    const r_data *metrics = modrender::Metrics();
    const int index = modrender::CurrentCard;
    if (!metrics || index < g_Deck.LBound() || index >= g_Deck.UBound()
        || !speaker().Unavailable().isEmpty())
        return;
    const Card &card = g_Deck[index];
    // Like the card manager, the side on show is told by the main text.
    const bool question = metrics->MainText() == card.question;
    speaker().Say(metrics->MainText(), Language(card, question));
}

void NewCardShown()
{
    const frmMain *main = frmMain::Existing();
    if (main && main->Studying() && Settings().speakNewCards)
        SpeakCard();
}

} // namespace cardspeech
