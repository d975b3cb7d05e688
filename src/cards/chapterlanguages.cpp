#include "cards/chapterlanguages.h"

#include "korva/diskfile.h"
#include "settings/speechsettings.h"

#include <QFile>
#include <QFileInfo>

using namespace Qt::Literals::StringLiterals;

namespace chapterlanguages {

namespace {

constexpr qint64 kMaxFileSize = 4096;

} // namespace

QString FilePath(const QString &chapterPath)
{
    return chapterPath + u".lang"_s;
}

bool Parse(QByteArrayView data, ChapterLanguages &out, QString *error)
{
    KeyValues pairs;
    if (!ParseKeyValues(data, pairs, error))
        return false;
    ChapterLanguages found;
    for (const auto &[key, value] : pairs) {
        QString *side = key == u"question"_s ? &found.question
                : key == u"answer"_s         ? &found.answer
                                             : nullptr;
        if (!side)
            continue; // room for more in later versions
        *side = NormalizeLanguageTag(value);
        if (side->isEmpty() && !value.isEmpty()) {
            if (error)
                *error = u"'%1' is not a language (try a tag such as de or en-GB)"_s.arg(value);
            return false;
        }
    }
    out = found;
    return true;
}

QByteArray Format(const ChapterLanguages &languages)
{
    KeyValues pairs;
    if (!languages.question.isEmpty())
        pairs.append({u"question"_s, languages.question});
    if (!languages.answer.isEmpty())
        pairs.append({u"answer"_s, languages.answer});
    return FormatKeyValues(u"Vocabrix: the languages this chapter's cards are spoken in"_s, pairs);
}

bool Read(const QString &chapterPath, ChapterLanguages &out, QString *error)
{
    const QString path = FilePath(chapterPath);
    if (!QFileInfo::exists(path) && !QFileInfo(path).isSymLink()) {
        out = ChapterLanguages();
        return true;
    }
    QByteArray data;
    QString why;
    if (!korva::readFile(path, kMaxFileSize, data, &why) || !Parse(data, out, &why)) {
        if (error)
            *error = QFileInfo(path).fileName() + u": "_s + why;
        return false;
    }
    return true;
}

bool Write(const QString &chapterPath, const ChapterLanguages &languages, QString *error)
{
    const QString path = FilePath(chapterPath);
    if (!languages.isEmpty())
        return korva::saveFile(path, Format(languages), error);
    const QFileInfo info(path);
    if (!info.exists())
        return true;
    if (!info.isFile() || !QFile::remove(path)) {
        if (error)
            *error = u"'%1' can't be removed"_s.arg(path);
        return false;
    }
    return true;
}

} // namespace chapterlanguages
