// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

// The study window's additions and their settings, kept in the additions' own
// settings file (never in "sys.zel"). Each default leaves the study window as
// it always was, except that sessions are kept.
namespace studyoptions {

using namespace Qt::Literals::StringLiterals;

inline const QString kKeepSession = u"study.keep_session"_s;
inline const QString kFirstSide = u"study.first_side"_s;
inline const QString kShowNotes = u"study.show_notes"_s;
inline const QString kSkipEmptySlot = u"study.skip_empty_slot"_s;
inline const QString kTypeAnswer = u"study.type_answer"_s;

// Which side of a card is shown first.
enum class FirstSide { Question, Answer, Random };

// The session on show is kept when Vocabrix ends from the study window, for
// Resume Last Session. On by default.
bool KeepSession();
void SetKeepSession(bool keep);
FirstSide First();
void SetFirst(FirstSide side);
// The card's note under its answer. Off by default.
bool ShowNotes();
void SetShowNotes(bool show);
// The arrows step over the deck's empty last slot. Off by default.
bool SkipEmptySlot();
void SetSkipEmptySlot(bool skip);
// A line on the card to type the other side in, checked with Return. Off by
// default.
bool TypeAnswer();
void SetTypeAnswer(bool type);

} // namespace studyoptions
