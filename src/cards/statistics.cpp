#include "cards/statistics.h"

#include "cards/deck.h"
#include "core/prompter.h"
#include "core/version.h"
#include "korva/diskfile.h"

#include <QLocale>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString kQuestionHeader = u" == QUESTION == "_s;
const QString kAnswerHeader = u" == ANSWER == "_s;

QString padRight(const QString &text, qsizetype width)
{
    return text.size() >= width ? text : text + QString(width - text.size(), u' ');
}

QString blanks(qsizetype count)
{
    return QString(qMax<qsizetype>(0, count), u' ');
}

} // namespace

QString StatisticsReport(const Deck &deck, const QDate &date)
{
    // The widths are taken over the deck from its second slot to its empty
    // last one, the rows too. A text within 4 characters of the one that set
    // a width does not widen it.
    const int first = deck.LBound() + 1, last = deck.UBound();
    qsizetype qw = 0, aw = 0;
    for (int i = first; i <= last; ++i) {
        if (qw < deck[i].question.size())
            qw = deck[i].question.size() + 4;
        if (aw < deck[i].answer.size())
            aw = deck[i].answer.size() + 4;
    }
    // Short columns still hold their headers.
    qw = qMax(qw, kQuestionHeader.size());
    aw = qMax(aw, kAnswerHeader.size());

#ifdef Q_OS_WIN
    const QString eol = u"\r\n"_s;
#else
    const QString eol = u"\n"_s;
#endif
    QString out;
    out.reserve(qsizetype(last - first + 8) * (qw + aw + 48));
    out += u"VOCABRIX STATISTICS FILE"_s + eol;
    out += u"Automatically generated on "_s + QLocale().toString(date, QLocale::ShortFormat) + eol;
    out += u"Vocabrix v."_s + QString::number(version::kMajor) + u'.'
            + QString::number(version::kMinor) + u'.' + QString::number(version::kRevision)
            + u" - Quillmere"_s + eol;
    out += u"NOTE: 'Times Viewed' data is for this session only"_s + eol;
    out += eol;
    out += padRight(kQuestionHeader, qw) + padRight(kAnswerHeader, aw) + u" == TROUBLE? == "_s
            + u" == TIMES VIEWED == "_s + u" == CHAPTER == "_s + eol;
    for (int i = first; i <= last; ++i) {
        const Card &c = deck[i];
        const QString word = c.isTrouble() ? u"YES"_s : u"NO"_s;
        out += padRight(c.question, qw) + padRight(c.answer, aw) + blanks(7) + word
                + blanks(3 - word.size() + 16) + QString::number(c.timesViewed) + blanks(10)
                + c.chapter + eol;
    }
    return out;
}

bool WriteStatistics(const QString &path)
{
    const QByteArray text = StatisticsReport(g_Deck, QDate::currentDate()).toUtf8();
    QString error;
    if (!korva::saveFile(path, text, &error)) {
        MsgBox(u"Statistics Not Saved"_s,
               u"The statistics file '"_s + path + u"' couldn't be written: "_s + error
                       + u". Nothing was changed on disk."_s,
               MsgIcon::Exclamation, MsgButtons::OK);
        return false;
    }
    OpenInNotepad(path);
    return true;
}

void OpenInNotepad(const QString &path)
{
    prompter().OpenDocument(path);
}
