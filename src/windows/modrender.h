#pragma once

#include <QString>

class r_data;
class r_renderer;

// The card manager: which card of the deck is on show, what the five text
// slots of the card face say, when a card counts as viewed, and how the deck
// is walked over all cards or over the trouble cards only. Its state
// (CurrentCard, AlphaLevel, AlphaEffects) lives with the program-wide state.
namespace modrender {

enum class Direction { Forward, Backward };

void ShowFirstCard();
void ShowCurrentCard();
// Redraws the card now at CurrentCard, question side, without counting a view.
void ShowCardAgain();
void NextCard();
void PreviousCard();
void ToggleAnswer();
void SetCardTrouble(bool trouble);

int CountTroubleCards();
int StepIndex(Direction direction, int index);
int FindTroubleCard(Direction direction);
QString CardStatusText(bool withTroubleCount);
QString ChapterCaption();
// Whether a chapter's caption ("from '...'") fits the bottom of the card
// beside the longest help line; a longer one runs into it.
bool ChapterCaptionFits(const QString &chapter);
// What the card face shows, for assistive tools: the main text, the side on
// show, the card's position and its chapter.
QString CardDescription();
void UpdateTimesViewed(bool increment);

// Makes the colour metrics and the renderer of the study window anew and
// draws the first frame.
void StartRendering();
// Releases the renderer and drops both (shutdown).
void ReleaseRendering();
r_data *Metrics();
r_renderer *Renderer();
// Colours the study window's own controls from "backcolor_a", "backcolor_b"
// and "main_text_forecolor".
void ApplySchemeToMainWindow();

void LoadAlphaOptions();
void SaveAlphaOptions();

} // namespace modrender
