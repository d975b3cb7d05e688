#include "chapterrules.h"

#include "korva/chapterformat.h"
#include "korva/cp1252.h"

using namespace Qt::Literals::StringLiterals;

namespace chapterrules {

namespace {

QString checkCharacters(const QString &text, const QString &what)
{
    QByteArray scratch;
    const qsizetype bad = cp1252::encode(text, scratch);
    if (bad < 0)
        return {};
    return what + u" holds "_s + cp1252::describeChar(text, bad)
            + u", which a chapter file cannot store"_s;
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

qsizetype CardRecordBytes(const QString &question, const QString &answer, const QString &note)
{
    return korva::entryRecordSize(CardEntry(question, answer, note));
}

QString CheckCard(const QString &question, const QString &answer, const QString &note)
{
    if (question.isEmpty())
        return u"the question is empty"_s;
    if (answer.isEmpty())
        return u"the answer is empty"_s;
    for (const auto &[text, what] :
         {std::pair {&question, u"the question"_s}, std::pair {&answer, u"the answer"_s},
          std::pair {&note, u"the note"_s}}) {
        const QString why = checkCharacters(*text, what);
        if (!why.isEmpty())
            return why;
    }
    const qsizetype bytes = CardRecordBytes(question, answer, note);
    if (bytes > korva::kRecordLength)
        return u"the card takes %1 bytes, more than the %2 of a chapter record (question, "
               "answer and note may have %3 bytes together)"_s.arg(bytes)
                       .arg(korva::kRecordLength)
                       .arg(kCardTextBytes);
    return {};
}

QString CheckTitle(const QString &title)
{
    const QString why = checkCharacters(title, u"the title"_s);
    if (!why.isEmpty())
        return why;
    korva::Header h;
    h.description = korva::kChapterDescription;
    h.title = title;
    const qsizetype bytes = korva::headerRecordSize(h);
    if (bytes > korva::kRecordLength)
        return u"the title is %1 bytes long; a chapter title may have %2 bytes"_s.arg(title.size())
                .arg(title.size() - (bytes - korva::kRecordLength));
    return {};
}

} // namespace chapterrules
