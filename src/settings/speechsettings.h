#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QList>
#include <QPair>
#include <QString>

// How cards are spoken: the language of each side and whether a new card
// speaks by itself. Kept in a small file of its own in the home folder
// ("speech.cfg"), never in sys.zel.
struct SpeechSettings
{
    QString questionLanguage = QStringLiteral("de");
    QString answerLanguage = QStringLiteral("en");
    bool speakNewCards = false;

    bool operator==(const SpeechSettings &o) const
    {
        return questionLanguage == o.questionLanguage && answerLanguage == o.answerLanguage
                && speakNewCards == o.speakNewCards;
    }
};

namespace speechsettings {

// The file in the home folder.
QString FilePath();
// The saved settings; the defaults for what is missing, unreadable or wrong.
SpeechSettings Load();
// Writes them through the checked save helper; false with a reason.
bool Save(const SpeechSettings &settings, QString *error);

} // namespace speechsettings

// A language tag as kept in files: "de", "en-GB" (language in lower case, an
// optional region in upper case). Empty when the text names no language.
QString NormalizeLanguageTag(const QString &text);
// The language's name for people ("German", "English (United Kingdom)").
QString LanguageName(const QString &tag);

// Small "key=value" text files, one pair a line, UTF-8; lines starting with
// '#' and blank lines are skipped. False with a line number in error when a
// line has no '=' or the text is no UTF-8.
using KeyValues = QList<QPair<QString, QString>>;
bool ParseKeyValues(QByteArrayView data, KeyValues &out, QString *error);
QByteArray FormatKeyValues(const QString &comment, const KeyValues &pairs);
