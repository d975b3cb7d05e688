// SPDX-License-Identifier: GPL-3.0-or-later
#include "cards/chapterlanguages.h"

#include "core/keyvaluetext.h"
#include "korva/diskfile.h"
#include "settings/speechsettings.h"

#include <QFile>
#include <QFileInfo>
#include <QStringDecoder>

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
    QStringDecoder utf8(QStringDecoder::Utf8);
    const QString decoded = utf8.decode(data);
    if (utf8.hasError() || decoded.isNull()) {
        if (error)
            *error = u"the text is not UTF-8"_s;
        return false;
    }
    if (const qsizetype line = keyvalue::FirstBadLine(data)) {
        if (error)
            *error = u"line %1: not a \"key=value\" line"_s.arg(line);
        return false;
    }
    ChapterLanguages found;
    for (const auto &[key, v] : keyvalue::Parse(data)) {
        const QString value = v.trimmed();
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
    keyvalue::Pairs pairs;
    if (!languages.question.isEmpty())
        pairs.append({u"question"_s, languages.question});
    if (!languages.answer.isEmpty())
        pairs.append({u"answer"_s, languages.answer});
    return keyvalue::Format(pairs, u"Vocabrix: the languages this chapter's cards are spoken in"_s);
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
    if (korva::readFile(path, kMaxFileSize, data, &why) != korva::ReadStatus::Ok
        || !Parse(data, out, &why)) {
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
