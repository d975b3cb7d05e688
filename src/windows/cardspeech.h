// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "settings/speechsettings.h"

struct Card;

// Speaking the card on show, through the installed speaker: the text the card
// shows, in the language of the side on show (the chapter's own when it keeps
// one, else the options').
namespace cardspeech {

// The speech options of the home folder in use, read once.
const SpeechSettings &Settings();
// Takes new options and writes them; false with a reason (they are in force
// all the same).
bool ChangeSettings(const SpeechSettings &settings, QString *error);

QString Language(const Card &card, bool questionSide);
// Speaks the card on show; nothing when no card is on show or the engine
// can't speak.
void SpeakCard();
// A card was shown as a new view: spoken when the options say so.
void NewCardShown();

} // namespace cardspeech
