// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/studyoptions.h"

#include "core/extrasettings.h"

namespace studyoptions {

namespace {
const QString kQuestion = u"question"_s;
const QString kAnswer = u"answer"_s;
const QString kRandom = u"random"_s;
} // namespace

bool KeepSession()
{
    return g_Extras.Bool(kKeepSession, true);
}

void SetKeepSession(bool keep)
{
    g_Extras.SetBool(kKeepSession, keep);
}

FirstSide First()
{
    const QString side = g_Extras.String(kFirstSide);
    if (side == kAnswer)
        return FirstSide::Answer;
    if (side == kRandom)
        return FirstSide::Random;
    return FirstSide::Question;
}

void SetFirst(FirstSide side)
{
    g_Extras.SetString(kFirstSide,
                       side == FirstSide::Answer           ? kAnswer
                               : side == FirstSide::Random ? kRandom
                                                           : kQuestion);
}

bool ShowNotes()
{
    return g_Extras.Bool(kShowNotes, false);
}

void SetShowNotes(bool show)
{
    g_Extras.SetBool(kShowNotes, show);
}

bool SkipEmptySlot()
{
    return g_Extras.Bool(kSkipEmptySlot, false);
}

void SetSkipEmptySlot(bool skip)
{
    g_Extras.SetBool(kSkipEmptySlot, skip);
}

bool TypeAnswer()
{
    return g_Extras.Bool(kTypeAnswer, false);
}

void SetTypeAnswer(bool type)
{
    g_Extras.SetBool(kTypeAnswer, type);
}

} // namespace studyoptions
