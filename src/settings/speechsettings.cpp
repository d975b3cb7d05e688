#include "settings/speechsettings.h"

#include "core/programstate.h"
#include "korva/diskfile.h"

#include <QLocale>
#include <QRegularExpression>
#include <QStringDecoder>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr qint64 kMaxFileSize = 64 * 1024;

const QString kQuestionKey = u"question_language"_s;
const QString kAnswerKey = u"answer_language"_s;
const QString kSpeakKey = u"speak_new_cards"_s;

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

bool ParseKeyValues(QByteArrayView data, KeyValues &out, QString *error)
{
    QStringDecoder decode(QStringDecoder::Utf8);
    const QString text = decode(data);
    if (decode.hasError()) {
        if (error)
            *error = u"the text is not UTF-8"_s;
        return false;
    }
    KeyValues pairs;
    const QStringList lines = text.split(u'\n');
    for (qsizetype i = 0; i < lines.size(); ++i) {
        const QString line = lines[i].trimmed();
        if (line.isEmpty() || line.startsWith(u'#'))
            continue;
        const qsizetype eq = line.indexOf(u'=');
        if (eq <= 0) {
            if (error)
                *error = u"line %1: not a \"key=value\" line"_s.arg(i + 1);
            return false;
        }
        pairs.append({line.left(eq).trimmed(), line.mid(eq + 1).trimmed()});
    }
    out = pairs;
    return true;
}

QByteArray FormatKeyValues(const QString &comment, const KeyValues &pairs)
{
    QString text = u"# "_s + comment + u'\n';
    for (const auto &[key, value] : pairs)
        text += key + u'=' + value + u'\n';
    return text.toUtf8();
}

namespace speechsettings {

QString FilePath()
{
    return g_BaseDirectory + u"/speech.cfg"_s;
}

SpeechSettings Load()
{
    SpeechSettings settings;
    QByteArray data;
    KeyValues pairs;
    if (!korva::readFile(FilePath(), kMaxFileSize, data, nullptr)
        || !ParseKeyValues(data, pairs, nullptr))
        return settings;
    for (const auto &[key, value] : pairs) {
        const QString tag = NormalizeLanguageTag(value);
        if (key == kQuestionKey && !tag.isEmpty())
            settings.questionLanguage = tag;
        else if (key == kAnswerKey && !tag.isEmpty())
            settings.answerLanguage = tag;
        else if (key == kSpeakKey)
            settings.speakNewCards = value == u"1"_s;
    }
    return settings;
}

bool Save(const SpeechSettings &settings, QString *error)
{
    const QByteArray data =
            FormatKeyValues(u"Vocabrix: how cards are spoken"_s,
                            {{kQuestionKey, settings.questionLanguage},
                             {kAnswerKey, settings.answerLanguage},
                             {kSpeakKey, settings.speakNewCards ? u"1"_s : u"0"_s}});
    return korva::saveFile(FilePath(), data, error);
}

} // namespace speechsettings
