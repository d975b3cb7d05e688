// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/speechsettings.h"

#include "core/extrasettings.h"

#include <QLocale>
#include <QRegularExpression>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString kQuestionKey = u"speech.question_language"_s;
const QString kAnswerKey = u"speech.answer_language"_s;
const QString kSpeakKey = u"speech.speak_new_cards"_s;

} // namespace

QString NormalizeLanguageTag(const QString &text)
{
    static const QRegularExpression syntax(u"^([A-Za-z]{2,3})(?:[-_]([A-Za-z]{2}|[0-9]{3}))?$"_s);
    const QRegularExpressionMatch m = syntax.match(text.trimmed());
    if (!m.hasMatch())
        return QString();
    QString tag = m.captured(1).toLower();
    // QLocale knows every language a speech engine could have a voice for.
    const QLocale locale(tag);
    if (locale.language() == QLocale::C || locale.language() == QLocale::AnyLanguage)
        return QString();
    if (!m.captured(2).isEmpty())
        tag += u'-' + m.captured(2).toUpper();
    return tag;
}

QString LanguageName(const QString &tag)
{
    // In the program's own language, like the rest of its windows.
    const QLocale locale(tag);
    QString name = QLocale::languageToString(locale.language());
    if (tag.contains(u'-'))
        name += u" ("_s + QLocale::territoryToString(locale.territory()) + u')';
    return name;
}

namespace speechsettings {

SpeechSettings Load()
{
    SpeechSettings settings;
    const QString question = NormalizeLanguageTag(g_Extras.String(kQuestionKey));
    const QString answer = NormalizeLanguageTag(g_Extras.String(kAnswerKey));
    if (!question.isEmpty())
        settings.questionLanguage = question;
    if (!answer.isEmpty())
        settings.answerLanguage = answer;
    settings.speakNewCards = g_Extras.Bool(kSpeakKey, false);
    return settings;
}

bool Save(const SpeechSettings &settings, QString *error)
{
    g_Extras.SetString(kQuestionKey, settings.questionLanguage);
    g_Extras.SetString(kAnswerKey, settings.answerLanguage);
    g_Extras.SetBool(kSpeakKey, settings.speakNewCards);
    return g_Extras.Save(error);
}

} // namespace speechsettings
