// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

// The languages a chapter's sides are spoken in. A chapter file's bytes hold
// nothing but its cards, so they live in a small file of their own beside it:
// "words.zel" keeps them in "words.zel.lang" ("question=de", "answer=en").
// The pair travels with the chapter when both are copied, and a program that
// knows nothing of it reads the chapter exactly as before.
struct ChapterLanguages
{
    QString question; // language tags; empty: the options' language
    QString answer;

    bool isEmpty() const { return question.isEmpty() && answer.isEmpty(); }
    bool operator==(const ChapterLanguages &o) const
    {
        return question == o.question && answer == o.answer;
    }
    bool operator!=(const ChapterLanguages &o) const { return !(*this == o); }
};

namespace chapterlanguages {

QString FilePath(const QString &chapterPath);

// The file's text; false with a reason when it is damaged or names a
// language that is none.
bool Parse(QByteArrayView data, ChapterLanguages &out, QString *error);
QByteArray Format(const ChapterLanguages &languages);

// The languages kept beside a chapter: empty, and true, when it has none.
bool Read(const QString &chapterPath, ChapterLanguages &out, QString *error);
// Keeps them beside the chapter through the checked save helper; empty ones
// remove the file.
bool Write(const QString &chapterPath, const ChapterLanguages &languages, QString *error);

} // namespace chapterlanguages
