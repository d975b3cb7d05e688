// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

// A chapter file is a KORVA file written by the chapter editor: this exact
// description, the chapter's display title as the header title, and one entry
// per card (key = question, text value = answer, note = note).
namespace korva {

using namespace Qt::Literals::StringLiterals;

inline const QString kChapterDescription =
        u"generated automatically by the Vocabrix Editor v1.21"_s;

} // namespace korva

// Card texts may carry umlauts as escapes, "asc(252)" for ü and so on for
// ö ä ß Ü Ö Ä; this replaces every one by its character.
void ReplaceUmlautEscapes(QString &text);
