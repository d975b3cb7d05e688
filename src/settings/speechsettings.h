// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

// How cards are spoken: the language of each side and whether a new card
// speaks by itself. Kept with the settings of the other additions (never in
// sys.zel).
struct SpeechSettings
{
    QString questionLanguage = QStringLiteral("de");
    QString answerLanguage = QStringLiteral("en");
    bool speakNewCards = false;
};

namespace speechsettings {

// The saved settings; the defaults for what is missing or wrong.
SpeechSettings Load();
// Keeps them and writes the additions' settings; false with a reason.
bool Save(const SpeechSettings &settings, QString *error);

} // namespace speechsettings

// A language tag as kept in files: "de", "en-GB" (language in lower case, an
// optional region in upper case). Empty when the text names no language.
QString NormalizeLanguageTag(const QString &text);
// The language's name for people ("German", "English (United Kingdom)").
QString LanguageName(const QString &tag);
