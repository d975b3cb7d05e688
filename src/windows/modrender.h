// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <functional>

class r_data;
class r_renderer;

// The card manager: which card of the deck is on show, what the five text
// slots of the card face say, when a card counts as viewed, and how the deck
// is walked over all cards or over the trouble cards only. Its state
// (CurrentCard, AlphaLevel, AlphaEffects) lives with the program-wide state.
namespace modrender {

enum class Direction { Forward, Backward };
enum class Side { Question, Answer };

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

// The side on show, and the side the card on show came up with (the answer
// when the study options show answers first, or drew them at random).
Side ShownSide();
bool AnswerFirst();
// Decides, for the random first side, whether a card shows its answer first;
// nullptr goes back to the program's own random choice.
void SetSideCoin(std::function<bool()> answerFirst);
// Shows the card at index as a kept session left it, on its side, counting no
// view; the start-up hint goes, as with a first card.
void ShowKeptCard(int index, bool answerShown, bool answerFirst);
// Puts the note under the answer on show, or takes it away, as the option now
// says.
void RefreshNote();

// Taking back the study window's changes one at a time, the latest first: a
// trouble mark or unmark, a move (with the view it counted), a flip, a jump.
// A new deck, a shuffle and a new session start afresh.
inline constexpr int kUndoSteps = 100;
bool CanUndo();
int UndoCount();
void Undo();
void ClearUndo();

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
