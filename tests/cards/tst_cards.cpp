// SPDX-License-Identifier: GPL-3.0-or-later
#include "cards/answercheck.h"
#include "cards/shuffler.h"
#include "deckfixture.h"

#include <random>

namespace {

const QByteArray kChapter = "generated automatically by the Vocabrix Editor v1.21";

// A chapter file written byte by byte: entries are (question, answer, note).
QByteArray chapterBytes(const std::vector<std::array<QByteArray, 3>> &cards, const QByteArray &title = {})
{
    QByteArray file = bytes::header(kChapter, 4, qint16(cards.size()), title) + bytes::placeholder();
    for (const auto &c : cards)
        file += bytes::entry(c[0], -1, c[1], 0, c[2]);
    return file;
}

QStringList questions()
{
    QStringList out;
    for (const Card &c : g_Deck.cards())
        out << c.question;
    return out;
}

// Records what the shuffle asks of the study window.
class FakeShuffleHost final : public ShuffleHost
{
public:
    QStringList calls;
    int value = 0;

    void EnableCommands(bool enabled) override { calls << (enabled ? u"enable"_s : u"disable"_s); }
    void StopCardDisplay() override { calls << u"stop display"_s; }
    void StartCardDisplay() override { calls << u"start display"_s; }
    void ShowCardTexts(const QString &t, const QString &p) override { calls << u"texts '%1' '%2'"_s.arg(t, p); }
    void ShowProgress(const QString &caption, int min, int max) override
    {
        calls << u"progress %1 %2..%3"_s.arg(caption).arg(min).arg(max);
        value = min;
    }
    int ProgressValue() const override { return value; }
    void SetProgressValue(int v) override { value = v; }
    void CloseProgress() override { calls << u"close progress"_s; }
};

// Random numbers from a function of the draw number.
class ScriptedRandom final : public RandomSource
{
public:
    explicit ScriptedRandom(std::function<double(int)> f) : m_f(std::move(f)) {}
    void Seed(double) override { ++seeds; }
    double Next() override { return m_f(draws++); }
    int draws = 0;
    int seeds = 0;

private:
    std::function<double(int)> m_f;
};

} // namespace

class CardsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { SetRandomSource(nullptr); }

    // Typed answers judged right, and wrong with the letters that differ in
    // brackets (in the answer nearest to what was typed). More are judged in
    // tst_typed, through the study window.
    void typedAnswers_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("expected");
        QTest::addColumn<QString>("verdict"); // "right", or the expected side with its marks
        QTest::newRow("case, dots and runs of spaces")
                << u"  I  WOULD like!  "_s << u"I would like ..."_s << u"right"_s;
        QTest::newRow("article typed, none expected") << u"the dog"_s << u"dog"_s << u"right"_s;
        QTest::newRow("English infinitive") << u"go"_s << u"to go"_s << u"right"_s;
        QTest::newRow("an article alone is a word") << u"die"_s << u"to die"_s << u"right"_s;
        QTest::newRow("ue, oe, ss, a capital AE")
                << u"Tschuess, schoene Strasse, AEPFEL"_s << u"Tschüss, schöne Straße, Äpfel"_s << u"right"_s;
        QTest::newRow("combining mark") << u"Tschu\u0308ss"_s << u"Tschüss"_s << u"right"_s;
        QTest::newRow("curly apostrophe") << u"I\u2019m sorry"_s << u"I'm sorry"_s << u"right"_s;
        QTest::newRow("comma separated") << u"noodles"_s << u"pasta, noodles"_s << u"right"_s;
        QTest::newRow("bracketed part left out") << u"stop"_s << u"stop (bus, tram)"_s << u"right"_s;
        QTest::newRow("bracketed part typed") << u"(sich) freuen"_s << u"freuen"_s << u"right"_s;
        QTest::newRow("a letter wrong") << u"Hunt"_s << u"der Hund"_s << u"der Hun[d]"_s;
        QTest::newRow("a letter left out") << u"Hnd"_s << u"der Hund"_s << u"der H[u]nd"_s;
        QTest::newRow("a letter too many") << u"Hundx"_s << u"Hund"_s << u"Hun[d]"_s;
        QTest::newRow("u for ü") << u"Tschuss"_s << u"Tschüss"_s << u"Tsch[ü]ss"_s;
        QTest::newRow("nearest answer marked") << u"hallo"_s << u"good day; hello"_s << u"good day; h[e]llo"_s;
        QTest::newRow("one of several typed is wrong") << u"hello, bye"_s << u"hello"_s << u"hell[o]"_s;
        QTest::newRow("an article alone") << u"der"_s << u"der Hund"_s << u"der [Hund]"_s;
        QTest::newRow("the bracketed part alone") << u"bus"_s << u"stop (bus, tram)"_s << u"[stop] (bus, tram)"_s;
    }
    void typedAnswers()
    {
        QFETCH(QString, typed);
        QFETCH(QString, expected);
        QFETCH(QString, verdict);
        const answercheck::Verdict v = answercheck::Check(typed, expected);
        QString seen;
        for (qsizetype i = 0; i < expected.size(); ++i) {
            const bool mark = v.marked.value(i);
            if (mark && !v.marked.value(i - 1))
                seen += u'[';
            seen += expected[i];
            if (mark && !v.marked.value(i + 1))
                seen += u']';
        }
        QCOMPARE(v.marked.size(), expected.size());
        QCOMPARE(v.right ? u"right"_s : seen, verdict);
    }

    // Two chapters, one after the other; the escapes of the seven German
    // letters are replaced in questions and answers, others stay, and notes
    // keep theirs.
    void twoChaptersAppend()
    {
        TestEnvironment env;
        FlushData(true);
        g_TroubleDefaultCurrent = true;
        WriteFileBytes(env.path(u"a.zel"_s),
                       chapterBytes({{"Grasc(252)n", "green", "asc(252) stays"},
                                     {"asc(252)asc(246)asc(228)asc(223)asc(220)asc(214)asc(196)asc(252)", "bb", ""},
                                     {"asc(233) ASC(252) asc(25)", "cc", "n"}}));
        WriteFileBytes(env.path(u"b.zel"_s),
                       chapterBytes({{"d", "Tasc(252)r", ""}, {"e", "ee", ""}, {"f", "ff", ""}, {"g", "gg", ""}}));
        env.log->clear();
        LoadChapterFile(env.path(u"a.zel"_s), u"Chapter A"_s);
        g_TroubleDefaultCurrent = false;
        LoadChapterFile(env.path(u"b.zel"_s), u"Chapter B"_s);

        QCOMPARE(deckRows(),
                 QStringList({u"Grün|green|asc(252) stays||-1|0|Chapter A"_s, u"üöäßÜÖÄü|bb|||-1|0|Chapter A"_s,
                              u"asc(233) ASC(252) asc(25)|cc|n||-1|0|Chapter A"_s, u"d|Tür|||0|0|Chapter B"_s,
                              u"e|ee|||0|0|Chapter B"_s, u"f|ff|||0|0|Chapter B"_s, u"g|gg|||0|0|Chapter B"_s,
                              u"||||0|0|"_s}));
        // Bytes at two per character of answer, note and question after the
        // escapes are replaced: 2 * (5+14+4 + 2+0+8 + 2+1+25) and 2 * (3+0+1 + 3 * 3).
        QCOMPARE(env.logLines(),
                 QStringList({u"file loaded; using 122 bytes of memory/n"_s,
                              u"file loaded; using 26 bytes of memory/n"_s}));
        QCOMPARE(ReadFileBytes(env.path(u"a.zel"_s)).size(), 5 * 128); // never written
    }

    void refusedChapters_data()
    {
        QTest::addColumn<QByteArray>("file"); // null: no file
        QTest::addColumn<QString>("box");
        const QString load = Box(u"Can't load file"_s, u"The file '%1' can't be loaded!"_s, MsgIcon::Exclamation);
        QTest::newRow("one entry") << chapterBytes({{"a", "b", ""}}) << load;
        QTest::newRow("damaged") << QByteArray(200, '\x7F')
                                 << Box(u"Can't mount file"_s, u"The file '%1' couldn't be mounted!"_s,
                                        MsgIcon::Exclamation);
        QTest::newRow("vanished") << QByteArray() << load;
    }
    void refusedChapters()
    {
        QFETCH(QByteArray, file);
        QFETCH(QString, box);
        TestEnvironment env;
        fillDeck(2);
        const QString p = env.path(u"bad.zel"_s);
        if (!file.isNull())
            WriteFileBytes(p, file);
        LoadChapterFile(p, u"x"_s);
        QCOMPARE(env.prompter.seen(), QStringList(box.arg(p)));
        QCOMPARE(questions(), QStringList({u"q0"_s, u"q1"_s, QString()})); // deck unchanged
        QCOMPARE(QFileInfo::exists(p), !file.isNull());                    // nothing created
    }

    // The command refuses more than 9,999 cards and leaves them as they were;
    // 9,999 are shuffled whole. (What the study window shows meanwhile, and
    // the card it shows after, are seen in tst_study.)
    void shuffleCommand()
    {
        TestEnvironment env;
        fillDeck(10000);
        FakeShuffleHost refused;
        RunShuffleCommand(refused);
        const QStringList box(Box(u"Shuffler"_s,
                                  u"The shuffler cannot work with a dataset greater than 9999. Reduce the number of "
                                  "cards to below this number to reenable shuffling."_s,
                                  MsgIcon::Exclamation));
        QCOMPARE(env.prompter.seen(), box);
        QVERIFY(refused.calls.isEmpty());
        QCOMPARE(g_Deck[0].question, u"q0"_s);

        g_Deck.Reset();
        fillDeck(9999);
        for (int i = 0; i < 9999; ++i)
            g_Deck[i].chapter = u"c%1"_s.arg(i); // as if each came from a chapter of its own
        QStringList before = questions();
        std::mt19937 engine(7);
        ScriptedRandom rng([&](int) { return std::generate_canonical<double, 32>(engine); });
        SetRandomSource(&rng);
        FakeShuffleHost host;
        RunShuffleCommand(host);
        QCOMPARE(env.prompter.seen(), box); // no second box
        QCOMPARE(rng.seeds, 1);
        QStringList after = questions();
        QVERIFY(after != before);
        before.sort();
        after.sort();
        QCOMPARE(after, before);
        // Each card moved whole, but for its spare text.
        for (int i = 0; i < g_Deck.UBound(); ++i) {
            const Card &c = g_Deck[i];
            const int n = c.question.mid(1).toInt();
            QCOMPARE(c.answer + c.spare + QString::number(c.timesViewed) + c.chapter + QString::number(c.trouble),
                     u"a%1spare%2%3c%1%4"_s.arg(n).arg(i).arg(n % 7).arg(n % 2 ? kCardTrue : kCardFalse));
        }
        QCOMPARE(env.pauser.eventRounds, rng.draws + g_Deck.UBound() + 1); // after every draw and every slot filled
    }

    // Draws chosen so that the slots are known: a slot is the draw times
    // 10,000, modulo the cards. Card 1's question is empty: its slot still
    // looks free, and card 2 takes it, so card 1 is lost. (A shutdown asked
    // for mid-shuffle is seen in tst_study.)
    void shuffleDeck()
    {
        TestEnvironment env;
        fillDeck(3);
        g_Deck[1].question.clear();
        const QList<double> draws {0.0, 0.0001, 0.0001};
        // Past the list: in order, so no draw repeats forever.
        ScriptedRandom rng([&](int n) { return draws.value(n, n / 10000.0); });
        SetRandomSource(&rng);
        FakeShuffleHost host;
        ShuffleDeck(host);
        QCOMPARE(rng.draws, draws.size());
        QCOMPARE(questions(), QStringList({u"q0"_s, u"q2"_s, {}, {}}));
    }
};

QTEST_GUILESS_MAIN(CardsTest)
#include "tst_cards.moc"
