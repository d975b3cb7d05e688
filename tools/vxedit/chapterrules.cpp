// SPDX-License-Identifier: GPL-3.0-or-later
#include "chapterrules.h"

#include "korva/chapterformat.h"
#include "korva/cp1252.h"

using namespace Qt::Literals::StringLiterals;

namespace chapterrules {

namespace {

// What UTF-8 cannot store: half of a character without its other half.
QString checkCharacters(const QString &text, const QString &what)
{
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (!text[i].isSurrogate())
            continue;
        if (text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
            ++i;
            continue;
        }
        return what + u" holds "_s + cp1252::describeChar(text, i)
                + u", which a chapter file cannot store"_s;
    }
    return {};
}

QString inEncoding(korva::Encoding encoding)
{
    return encoding == korva::Encoding::Utf8 ? u" in UTF-8"_s : QString();
}

} // namespace

korva::Entry CardEntry(const QString &question, const QString &answer, const QString &note)
{
    korva::Entry e;
    e.key = question;
    e.isText = korva::kTrue;
    e.text = answer;
    e.number = 0;
    e.note = note;
    return e;
}

bool HoldsCp1252(const korva::Entry &card)
{
    for (const QString *text : {&card.key, &card.text, &card.note}) {
        if (korva::encodedSize(*text, korva::Encoding::Cp1252) < 0)
            return false;
    }
    return true;
}

QString CheckTexts(const korva::Entry &card)
{
    for (const auto &[text, what] :
         {std::pair {&card.key, u"the question"_s}, std::pair {&card.text, u"the answer"_s},
          std::pair {&card.note, u"the note"_s}}) {
        const QString why = checkCharacters(*text, what);
        if (!why.isEmpty())
            return why;
    }
    return {};
}

korva::Encoding CardEncoding(const korva::Entry &card, korva::Encoding chapter)
{
    return chapter == korva::Encoding::Utf8 || !HoldsCp1252(card) ? korva::Encoding::Utf8
                                                                  : korva::Encoding::Cp1252;
}

qsizetype CardRecordBytes(const QString &question, const QString &answer, const QString &note,
                          korva::Encoding chapter)
{
    const korva::Entry card = CardEntry(question, answer, note);
    return korva::entryRecordSize(card, CardEncoding(card, chapter));
}

QString CheckCard(const QString &question, const QString &answer, const QString &note,
                  korva::Encoding chapter)
{
    if (question.isEmpty())
        return u"the question is empty"_s;
    if (answer.isEmpty())
        return u"the answer is empty"_s;
    const korva::Entry card = CardEntry(question, answer, note);
    const QString why = CheckTexts(card);
    if (!why.isEmpty())
        return why;
    const korva::Encoding encoding = CardEncoding(card, chapter);
    const qsizetype bytes = CardRecordBytes(question, answer, note, encoding);
    if (bytes > korva::kRecordLength)
        return u"the card takes %1 bytes%2, more than the %3 of a chapter record (question, "
               "answer and note may have %4 bytes together)"_s.arg(bytes)
                       .arg(inEncoding(encoding))
                       .arg(korva::kRecordLength)
                       .arg(kCardTextBytes);
    return {};
}

QString CheckTitle(const QString &title, korva::Encoding chapter, const QString &reserved)
{
    const QString why = checkCharacters(title, u"the title"_s);
    if (!why.isEmpty())
        return why;
    korva::Header h;
    h.description = korva::kChapterDescription;
    h.title = title;
    h.reserved = reserved;
    if (chapter == korva::Encoding::Utf8 || korva::encodedSize(title, korva::Encoding::Cp1252) < 0)
        h.reserved = korva::kUtf8Marker;
    const korva::Encoding encoding = korva::encodingOf(h);
    const qsizetype bytes = korva::headerRecordSize(h, encoding);
    if (bytes > korva::kRecordLength) {
        const qsizetype length = korva::encodedSize(title, encoding);
        return u"the title is %1 bytes long%2; a chapter title may have %3 bytes"_s.arg(length)
                .arg(inEncoding(encoding))
                .arg(length - (bytes - korva::kRecordLength));
    }
    return {};
}

} // namespace chapterrules
