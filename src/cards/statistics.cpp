// SPDX-License-Identifier: GPL-3.0-or-later
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

// The report is one string grown in place: no line or field is built apart
// from it.
class ReportWriter
{
public:
    explicit ReportWriter(qsizetype capacity) { m_out.reserve(capacity); }

    ReportWriter &text(QStringView s)
    {
        m_out.append(s);
        return *this;
    }
    ReportWriter &padded(QStringView s, qsizetype width)
    {
        m_out.append(s);
        return blanks(width - TextColumns(s));
    }
    ReportWriter &blanks(qsizetype count)
    {
        if (count > 0)
            m_out.resize(m_out.size() + count, u' ');
        return *this;
    }
    ReportWriter &number(int value)
    {
        char16_t digits[12];
        int n = 0;
        unsigned magnitude = value < 0 ? 0u - unsigned(value) : unsigned(value);
        do {
            digits[n++] = char16_t(u'0' + magnitude % 10);
            magnitude /= 10;
        } while (magnitude);
        if (value < 0)
            m_out.append(u'-');
        while (n)
            m_out.append(QChar(digits[--n]));
        return *this;
    }
    QString take() { return std::move(m_out); }

private:
    QString m_out;
};

bool isWide(char32_t c)
{
    static constexpr std::pair<char32_t, char32_t> kWide[] = {
            {0x1100, 0x115F},   {0x2E80, 0x303E},   {0x3041, 0x33FF}, {0x3400, 0x4DBF},
            {0x4E00, 0x9FFF},   {0xA000, 0xA4CF},   {0xAC00, 0xD7A3}, {0xF900, 0xFAFF},
            {0xFE30, 0xFE4F},   {0xFF00, 0xFF60},   {0xFFE0, 0xFFE6}, {0x1F300, 0x1F64F},
            {0x1F900, 0x1F9FF}, {0x20000, 0x3FFFD},
    };
    for (const auto &[from, to] : kWide) {
        if (c >= from && c <= to)
            return true;
    }
    return false;
}

} // namespace

qsizetype TextColumns(QStringView text)
{
    qsizetype columns = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        char32_t c = text[i].unicode();
        if (c < 0x300) { // the common case, Latin
            ++columns;
            continue;
        }
        if (QChar::isHighSurrogate(c) && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
            c = QChar::surrogateToUcs4(text[i], text[i + 1]);
            ++i;
        }
        switch (QChar::category(c)) {
        case QChar::Mark_NonSpacing:
        case QChar::Mark_Enclosing:
        case QChar::Other_Format:
            break;
        default:
            columns += isWide(c) ? 2 : 1;
        }
    }
    return columns;
}

QString StatisticsReport(const Deck &deck, const QDate &date)
{
    // The widths are taken over the deck from its second slot to its empty
    // last one, the rows too. A text within 4 characters of the one that set
    // a width does not widen it.
    const int first = deck.LBound() + 1, last = deck.UBound();
    qsizetype qw = 0, aw = 0, chapters = 0;
    for (int i = first; i <= last; ++i) {
        const qsizetype q = TextColumns(deck[i].question), a = TextColumns(deck[i].answer);
        if (qw < q)
            qw = q + 4;
        if (aw < a)
            aw = a + 4;
        chapters += deck[i].chapter.size();
    }
    // Short columns still hold their headers.
    qw = qMax(qw, kQuestionHeader.size());
    aw = qMax(aw, kAnswerHeader.size());

#ifdef Q_OS_WIN
    const QStringView eol = u"\r\n";
#else
    const QStringView eol = u"\n";
#endif
    const qsizetype rows = qMax(0, last - first + 1);
    ReportWriter out(rows * (qw + aw + 26 + 16 + eol.size()) + chapters + 512);
    out.text(u"VOCABRIX STATISTICS FILE").text(eol);
    out.text(u"Automatically generated on ")
            .text(QLocale().toString(date, QLocale::ShortFormat))
            .text(eol);
    out.text(u"Vocabrix v.")
            .number(version::kMajor)
            .text(u".")
            .number(version::kMinor)
            .text(u".")
            .number(version::kRevision)
            .text(u" - Quillmere")
            .text(eol);
    out.text(u"NOTE: 'Times Viewed' data is for this session only").text(eol);
    out.text(eol);
    out.padded(kQuestionHeader, qw)
            .padded(kAnswerHeader, aw)
            .text(u" == TROUBLE? == ")
            .text(u" == TIMES VIEWED == ")
            .text(u" == CHAPTER == ")
            .text(eol);
    for (int i = first; i <= last; ++i) {
        const Card &c = deck[i];
        const QStringView word = c.isTrouble() ? QStringView(u"YES") : QStringView(u"NO");
        out.padded(c.question, qw)
                .padded(c.answer, aw)
                .blanks(7)
                .text(word)
                .blanks(3 - word.size() + 16)
                .number(c.timesViewed)
                .blanks(10)
                .text(c.chapter)
                .text(eol);
    }
    return out.take();
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
