// SPDX-License-Identifier: GPL-3.0-or-later
#include "cards/answercheck.h"
#include "cards/deck.h"
#include "cards/progressfile.h"
#include "cards/shuffler.h"
#include "cards/statistics.h"
#include "testsupport.h"

#include <QLocale>
#include <QtEndian>

#include <optional>

#include <random>

using namespace Qt::Literals::StringLiterals;

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

// A reader of progress files that knows only the Windows-1252 layout, as its
// rules read: a signed 16-bit count, then count + 1 records of 8-bit texts.
// Returns the questions, or nothing when it refuses the file.
std::optional<QStringList> classicProgressReader(const QByteArray &file)
{
    qsizetype at = 0;
    auto take = [&](qsizetype n) {
        const QByteArray field = at + n <= file.size() ? file.mid(at, n) : QByteArray();
        at += n;
        return field;
    };
    auto number = [&] { return qFromLittleEndian<qint16>(take(2).leftJustified(2, '\0').constData()); };
    auto text = [&] { return QString::fromLatin1(take(quint16(number()))); };
    const qint16 count = number();
    if (count < 0)
        return std::nullopt;
    QStringList questions;
    for (int i = 0; i <= count; ++i) {
        questions << text();
        text(), text(), text(), number(), number(), text();
    }
    if (at > file.size())
        return std::nullopt;
    return questions;
}

void fillDeck(int cards)
{
    g_Deck.Resize(cards);
    for (int i = 0; i < cards; ++i) {
        g_Deck[i].question = u"q%1"_s.arg(i);
        g_Deck[i].answer = u"a%1"_s.arg(i);
        g_Deck[i].timesViewed = qint16(i % 7);
        g_Deck[i].trouble = i % 2 ? kCardTrue : kCardFalse;
        g_Deck[i].chapter = u"c"_s;
        g_Deck[i].spare = u"spare%1"_s.arg(i);
    }
}

// Records what the shuffle asks of the study window.
class FakeShuffleHost final : public ShuffleHost
{
public:
    QStringList calls;
    std::vector<int> barValues;
    int minimum = -1, maximum = -1, value = 0;
    bool runningDuringShuffle = false;
    std::function<void()> onBar;

    void EnableCommands(bool enabled) override { calls << (enabled ? u"enable"_s : u"disable"_s); }
    void StopCardDisplay() override { calls << u"stop display"_s; }
    void StartCardDisplay() override { calls << u"start display"_s; }
    void ShowCardTexts(const QString &text, const QString &pass) override
    {
        calls << u"texts '%1' '%2'"_s.arg(text, pass);
    }
    void ShowProgress(const QString &caption, int min, int max) override
    {
        calls << u"progress "_s + caption;
        minimum = min;
        maximum = max;
        value = min;
        runningDuringShuffle = g_ShuffleRunning;
    }
    int ProgressValue() const override { return value; }
    void SetProgressValue(int v) override
    {
        value = v;
        barValues.push_back(v);
        if (onBar)
            onBar();
    }
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

// Sets a flag after a number of event rounds, as a window event would.
class TriggeringPauser final : public Pauser
{
public:
    int rounds = 0;
    int triggerAt = -1;
    std::function<void()> trigger;
    void Sleep(int) override {}
    void ProcessEvents() override
    {
        if (++rounds == triggerAt)
            trigger();
    }
};

} // namespace

class CardsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { SetRandomSource(nullptr); }

    // Typed answers judged right, and wrong with the letters that differ in
    // brackets (in the answer nearest to what was typed).
    void typedAnswers_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("expected");
        QTest::addColumn<QString>("verdict"); // "right", or the expected side with its marks
        QTest::newRow("case and spaces") << u"  hUND  "_s << u"Hund"_s << u"right"_s;
        QTest::newRow("punctuation around") << u"wie geht es ihnen"_s << u"Wie geht es Ihnen?"_s << u"right"_s;
        QTest::newRow("dots and a run of spaces") << u"I  would like!"_s << u"I would like ..."_s << u"right"_s;
        QTest::newRow("article left out") << u"Hund"_s << u"der Hund"_s << u"right"_s;
        QTest::newRow("article typed, none expected") << u"the dog"_s << u"dog"_s << u"right"_s;
        QTest::newRow("English infinitive") << u"go"_s << u"to go"_s << u"right"_s;
        QTest::newRow("another article") << u"das Hund"_s << u"der Hund"_s << u"right"_s;
        QTest::newRow("an article alone is a word") << u"die"_s << u"to die"_s << u"right"_s;
        QTest::newRow("ue for ü") << u"Tschuess"_s << u"Tschüss"_s << u"right"_s;
        QTest::newRow("oe, ae, ss") << u"schoene Strasse, Maedchen"_s << u"schöne Straße, Mädchen"_s << u"right"_s;
        QTest::newRow("ä for ae") << u"Mädchen"_s << u"Maedchen"_s << u"right"_s;
        QTest::newRow("capital umlaut") << u"AEPFEL"_s << u"die Äpfel"_s << u"right"_s;
        QTest::newRow("combining mark") << u"Tschu\u0308ss"_s << u"Tschüss"_s << u"right"_s;
        QTest::newRow("curly apostrophe") << u"I\u2019m sorry"_s << u"I'm sorry"_s << u"right"_s;
        QTest::newRow("one of the answers") << u"hello"_s << u"good day; hello"_s << u"right"_s;
        QTest::newRow("comma separated") << u"noodles"_s << u"pasta, noodles"_s << u"right"_s;
        QTest::newRow("several typed") << u"thank you; thanks"_s << u"thanks; thank you"_s << u"right"_s;
        QTest::newRow("bracketed part left out") << u"stop"_s << u"stop (bus, tram)"_s << u"right"_s;
        QTest::newRow("bracketed part typed") << u"(sich) freuen"_s << u"freuen"_s << u"right"_s;
        QTest::newRow("a letter wrong") << u"Hunt"_s << u"der Hund"_s << u"der Hun[d]"_s;
        QTest::newRow("a letter left out") << u"Hnd"_s << u"der Hund"_s << u"der H[u]nd"_s;
        QTest::newRow("a letter too many") << u"Hundx"_s << u"Hund"_s << u"Hun[d]"_s;
        QTest::newRow("letters swapped") << u"dgo"_s << u"the dog"_s << u"the d[og]"_s;
        QTest::newRow("u for ü") << u"Tschuss"_s << u"Tschüss"_s << u"Tsch[ü]ss"_s;
        QTest::newRow("a for ä") << u"Apfel"_s << u"die Äpfel"_s << u"die [Ä]pfel"_s;
        QTest::newRow("nearest answer marked") << u"hallo"_s << u"good day; hello"_s << u"good day; h[e]llo"_s;
        QTest::newRow("one of several typed is wrong") << u"hello, bye"_s << u"hello"_s << u"hell[o]"_s;
        QTest::newRow("an article alone") << u"der"_s << u"der Hund"_s << u"der [Hund]"_s;
        QTest::newRow("the bracketed part alone") << u"bus"_s << u"stop (bus, tram)"_s << u"[stop] (bus, tram)"_s;
        QTest::newRow("nothing typed") << u"  "_s << u"Hund"_s << u"Hund"_s;
        QTest::newRow("only punctuation") << u"?!"_s << u"Hund"_s << u"Hund"_s;
        QTest::newRow("nothing expected") << u"Hund"_s << u"..."_s << u"..."_s;
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
        QVERIFY(!v.right || !v.marked.contains(true));
    }

    void umlautEscapes_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("replaced");
        QTest::newRow("inside a word") << u"Grasc(252)n"_s << u"Grün"_s;
        QTest::newRow("all seven") << u"asc(252)asc(246)asc(228)asc(223)asc(220)asc(214)asc(196)"_s << u"üöäßÜÖÄ"_s;
        QTest::newRow("repeated") << u"Masc(228)dchen, Masc(228)dchen"_s << u"Mädchen, Mädchen"_s;
        QTest::newRow("others stay") << u"asc(233) ASC(252) asc(25)"_s << u"asc(233) ASC(252) asc(25)"_s;
        QTest::newRow("plain") << u"Haus"_s << u"Haus"_s;
    }
    void umlautEscapes()
    {
        QFETCH(QString, text);
        QFETCH(QString, replaced);
        ReplaceUmlautEscapes(text);
        QCOMPARE(text, replaced);
    }

    void twoChaptersAppend()
    {
        TestEnvironment env;
        FlushData(true);
        g_TroubleDefaultCurrent = true;
        WriteFileBytes(env.path(u"a.zel"_s),
                       chapterBytes({{"Grasc(252)n", "green", "asc(252) stays"}, {"b", "bb", ""}, {"c", "cc", "n"}}));
        WriteFileBytes(env.path(u"b.zel"_s),
                       chapterBytes({{"d", "Tasc(252)r", ""}, {"e", "ee", ""}, {"f", "ff", ""}, {"g", "gg", ""}}));
        env.log->clear();
        LoadChapterFile(env.path(u"a.zel"_s), u"Chapter A"_s);
        g_TroubleDefaultCurrent = false;
        LoadChapterFile(env.path(u"b.zel"_s), u"Chapter B"_s);

        QCOMPARE(g_Deck.LBound(), 0);
        QCOMPARE(g_Deck.UBound(), 7);
        QCOMPARE(questions(), QStringList({u"Grün"_s, u"b"_s, u"c"_s, u"d"_s, u"e"_s, u"f"_s, u"g"_s, QString()}));
        QCOMPARE(g_Deck[0].answer, u"green"_s);
        QCOMPARE(g_Deck[0].note, u"asc(252) stays"_s); // notes keep their escapes
        QCOMPARE(g_Deck[3].answer, u"Tür"_s);
        QCOMPARE(g_Deck[2].chapter, u"Chapter A"_s);
        QCOMPARE(g_Deck[3].chapter, u"Chapter B"_s);
        QCOMPARE(g_Deck[2].trouble, kCardTrue);
        QCOMPARE(g_Deck[3].trouble, kCardFalse);
        QCOMPARE(g_Deck[6].timesViewed, qint16(0));
        QCOMPARE(g_Deck[7].chapter, QString()); // the empty slot
        // Bytes at two per character of answer, note and question after the
        // escapes are replaced: 2 * (5+14+4 + 2+0+1 + 2+1+1) and 2 * (3+0+1 + 3 * 3).
        QCOMPARE(env.logLines(),
                 QStringList(
                         {u"file loaded; using 60 bytes of memory/n"_s, u"file loaded; using 26 bytes of memory/n"_s}));
        QVERIFY(env.prompter.boxes.empty());
        QCOMPARE(ReadFileBytes(env.path(u"a.zel"_s)).size(), 5 * 128); // never written
    }

    void refusedChapters_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<bool>("exists");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("text");
        QTest::newRow("one entry") << chapterBytes({{"a", "b", ""}}) << true << u"Can't load file"_s
                                   << u"The file '%1' can't be loaded!"_s;
        QTest::newRow("no entries") << chapterBytes({}) << true << u"Can't load file"_s
                                    << u"The file '%1' can't be loaded!"_s;
        QTest::newRow("damaged") << QByteArray(200, '\x7F') << true << u"Can't mount file"_s
                                 << u"The file '%1' couldn't be mounted!"_s;
        QTest::newRow("vanished") << QByteArray() << false << u"Can't load file"_s
                                  << u"The file '%1' can't be loaded!"_s;
    }
    void refusedChapters()
    {
        QFETCH(QByteArray, file);
        QFETCH(bool, exists);
        QFETCH(QString, title);
        QFETCH(QString, text);
        TestEnvironment env;
        fillDeck(2);
        const QString p = env.path(u"bad.zel"_s);
        if (exists)
            WriteFileBytes(p, file);
        LoadChapterFile(p, u"x"_s);
        QCOMPARE(env.prompter.boxes.size(), size_t(1));
        QCOMPARE(env.prompter.boxes[0].title, title);
        QCOMPARE(env.prompter.boxes[0].text, text.arg(p));
        QCOMPARE(env.prompter.boxes[0].icon, MsgIcon::Exclamation);
        QCOMPARE(questions(), QStringList({u"q0"_s, u"q1"_s, QString()})); // deck unchanged
        QCOMPARE(QFileInfo::exists(p), exists);                            // nothing created
    }

    void largestChapterLoadsAndDeckLimitHolds()
    {
        TestEnvironment env;
        FlushData(true);
        ikorvalite db;
        db.SetDescription(QString::fromLatin1(kChapter));
        for (int i = 0; i < 32767; ++i)
            db.AppendEntry({u"Frage %1"_s.arg(i), -1, u"answer"_s, 0, {}});
        QVERIFY(db.SaveAs(env.path(u"big.zel"_s)));

        LoadChapterFile(env.path(u"big.zel"_s), u"big"_s);
        QCOMPARE(g_Deck.UBound(), 32767);
        QCOMPARE(g_Deck[32766].question, u"Frage 32766"_s);
        QVERIFY(env.prompter.boxes.empty());

        // One more chapter would take the deck past 32,767 cards.
        WriteFileBytes(env.path(u"two.zel"_s), chapterBytes({{"a", "b", ""}, {"c", "d", ""}}));
        LoadChapterFile(env.path(u"two.zel"_s), u"two"_s);
        QCOMPARE(env.prompter.boxTitles(), QStringList(u"Can't load file"_s));
        QVERIFY(env.prompter.boxes[0].text.contains(u"32767"_s));
        QCOMPARE(g_Deck.UBound(), 32767);
    }

    void flush_data()
    {
        QTest::addColumn<int>("cards");
        QTest::addColumn<bool>("firstUse");
        QTest::addColumn<QStringList>("lines");
        QTest::addColumn<int>("upperAfter");
        QTest::newRow("first use") << 5 << true
                                   << QStringList({u"Entering FlushToZero mode/n"_s,
                                                   u"Initializing data system for first use/n"_s,
                                                   u" .. not flushing empty data set/n"_s})
                                   << 0;
        // A deck of one card is kept, deliberately.
        QTest::newRow("one card kept") << 1 << false
                                       << QStringList({u"Entering FlushToZero mode/n"_s,
                                                       u" .. not flushing empty data set/n"_s})
                                       << 1;
        // Cards 1 and 2 counted, card 0 left out: 2 * (2 + 2) each.
        QTest::newRow("three cards") << 3 << false
                                     << QStringList({u"Entering FlushToZero mode/n"_s,
                                                     u" .. flushing 16 bytes of data/n"_s,
                                                     u"All dynamic data flushed/n"_s})
                                     << 0;
    }
    void flush()
    {
        QFETCH(int, cards);
        QFETCH(bool, firstUse);
        QFETCH(QStringList, lines);
        QFETCH(int, upperAfter);
        TestEnvironment env;
        fillDeck(cards);
        FlushData(firstUse);
        QCOMPARE(env.logLines(), lines);
        QCOMPARE(g_Deck.UBound(), upperAfter);
    }

    void shuffleRefusesOver9999()
    {
        TestEnvironment env;
        fillDeck(10000);
        FakeShuffleHost host;
        RunShuffleCommand(host);
        QCOMPARE(env.prompter.boxTitles(), QStringList(u"Shuffler"_s));
        QCOMPARE(env.prompter.boxes[0].text,
                 u"The shuffler cannot work with a dataset greater than 9999. Reduce the number of "
                 "cards to below this number to reenable shuffling."_s);
        QVERIFY(host.calls.isEmpty());
        QCOMPARE(g_Deck[0].question, u"q0"_s);
    }

    void shuffle9999IsAPermutation()
    {
        TestEnvironment env;
        fillDeck(9999);
        const QStringList before = questions();
        std::mt19937 engine(7);
        ScriptedRandom rng([&](int) { return std::generate_canonical<double, 32>(engine); });
        SetRandomSource(&rng);
        FakeShuffleHost host;
        RunShuffleCommand(host);

        QVERIFY(env.prompter.boxes.empty());
        QCOMPARE(rng.seeds, 1);
        QStringList after = questions();
        QVERIFY(after != before);
        QCOMPARE(after.last(), QString()); // the empty slot stays last
        QStringList sortedBefore = before, sortedAfter = after;
        sortedBefore.sort();
        sortedAfter.sort();
        QCOMPARE(sortedAfter, sortedBefore);
        // Each card moved whole, but for its spare text.
        for (int i = 0; i < g_Deck.UBound(); ++i) {
            const Card &c = g_Deck[i];
            const int n = c.question.mid(1).toInt();
            QCOMPARE(c.answer, u"a%1"_s.arg(n));
            QCOMPARE(c.timesViewed, qint16(n % 7));
            QCOMPARE(c.spare, u"spare%1"_s.arg(i));
        }
        QCOMPARE(host.calls,
                 QStringList({u"disable"_s, u"stop display"_s, u"progress Randomizer Progress"_s,
                              u"texts 'Randomizing .. ' 'Pass 1 of 2'"_s, u"texts 'Randomizing ...' 'Pass 2 of 2'"_s,
                              u"close progress"_s, u"start display"_s, u"enable"_s}));
        QVERIFY(host.runningDuringShuffle);
        QVERIFY(!g_ShuffleRunning);
        QCOMPARE(host.maximum, 2 * 9999);
        QVERIFY(env.pauser.eventRounds >= rng.draws); // events after every draw
    }

    void shuffleBarContinuesFromWhereItStands()
    {
        TestEnvironment env;
        fillDeck(120);
        ScriptedRandom rng([](int draw) { return draw / 10000.0; }); // card i lands in slot i
        SetRandomSource(&rng);
        FakeShuffleHost host;
        ShuffleDeck(host);
        QCOMPARE(rng.draws, 120);
        QCOMPARE(host.minimum, 0);
        QCOMPARE(host.maximum, 240);
        // Pass 1 counts 0..119 and moves the bar at 50 and 100; pass 2 goes
        // on from 100 (not 120) over 121 slots.
        QCOMPARE(host.barValues, std::vector<int>({50, 100, 150, 200}));
        QCOMPARE(questions().first(), u"q0"_s);
    }

    void shuffleLosesACardWithEmptyQuestion()
    {
        TestEnvironment env;
        fillDeck(3);
        g_Deck[1].question.clear();
        // Slots drawn: card 0 -> 0, card 1 -> 1, card 2 -> 1 (still looks free).
        const std::vector<double> draws = {0.0, 0.0001, 0.0001};
        ScriptedRandom rng([&](int n) { return draws.at(size_t(n)); });
        SetRandomSource(&rng);
        FakeShuffleHost host;
        ShuffleDeck(host);
        QCOMPARE(questions(), QStringList({u"q0"_s, u"q2"_s, QString(), QString()}));
    }

    void shuffleOneCard()
    {
        TestEnvironment env;
        fillDeck(1);
        ScriptedRandom rng([](int) { return 0.73; });
        SetRandomSource(&rng);
        FakeShuffleHost host;
        ShuffleDeck(host);
        QCOMPARE(rng.draws, 1);
        QCOMPARE(questions(), QStringList({u"q0"_s, QString()}));
    }

    void shutdownLeavesTheDeck_data()
    {
        QTest::addColumn<int>("signalAt"); // the event round that brings the shutdown request
        QTest::addColumn<int>("minDraws");
        QTest::newRow("before the shuffle") << 0 << 0;
        QTest::newRow("during the first pass, which runs to its end") << 3 << 50;
    }
    void shutdownLeavesTheDeck()
    {
        QFETCH(int, signalAt);
        QFETCH(int, minDraws);
        TestEnvironment env;
        TriggeringPauser pauser;
        pauser.triggerAt = signalAt;
        pauser.trigger = [] { g_ShuttingDown = true; };
        SetPauser(&pauser);
        g_ShuttingDown = signalAt == 0;
        fillDeck(50);
        const QStringList before = questions();
        std::mt19937 engine(3);
        ScriptedRandom rng([&](int) { return std::generate_canonical<double, 32>(engine); });
        SetRandomSource(&rng);
        FakeShuffleHost host;
        ShuffleDeck(host);
        QVERIFY(rng.draws >= minDraws && (minDraws > 0 || rng.draws == 0));
        QCOMPARE(questions(), before);
        QCOMPARE(env.logLines().last(), u"system shutdown signal received: dropping out of shuffle/n"_s);
        QVERIFY(!host.calls.contains(u"texts 'Randomizing ...' 'Pass 2 of 2'"_s));
        SetPauser(&env.pauser);
    }

    void saveProgressWritesExactBytes()
    {
        TestEnvironment env;
        g_Deck.Resize(3);
        g_Deck[0] = {u"Tür"_s, u"door"_s, u"f"_s, QString(), kCardTrue, 3, u"Haus"_s};
        g_Deck[1] = {u"b"_s, u"bb"_s, QString(), u"sp"_s, kCardFalse, 0, u"Haus"_s};
        g_Deck[2] = {u"c"_s, u"cc"_s, QString(), QString(), kCardTrue, 32767, u"Zoo"_s};
        env.prompter.fileAnswers = {env.path(u"progress"_s)};
        SaveProgress();

        const QByteArray expected = bytes::i16(3) + bytes::text("T\xFCr") + bytes::text("door") + bytes::text("f")
                + bytes::text({}) + bytes::i16(-1) + bytes::i16(3) + bytes::text("Haus") + bytes::text("b")
                + bytes::text("bb") + bytes::text({}) + bytes::text("sp") + bytes::i16(0) + bytes::i16(0)
                + bytes::text("Haus") + bytes::text("c") + bytes::text("cc") + bytes::text({}) + bytes::text({})
                + bytes::i16(-1) + bytes::i16(32767) + bytes::text("Zoo") + bytes::text({}) + bytes::text({})
                + bytes::text({}) + bytes::text({}) + bytes::i16(0) + bytes::i16(0) + bytes::text({});
        QCOMPARE(ReadFileBytes(env.path(u"progress.vxs"_s)), expected);
        QCOMPARE(env.logLines(), QStringList({u"Writing progress to disk/n"_s, u" .. wrote 3 nodes to disk/n"_s}));
        QCOMPARE(env.prompter.fileDialogs[0].title, u"Save As"_s);
        QCOMPARE(env.prompter.fileDialogs[0].filter, u"Vocabrix Save File (*.vxs)"_s);
        QCOMPARE(env.prompter.fileDialogs[0].defaultExt, u"vxs"_s);

        // Loading it back replaces the deck in the saved order; what follows
        // the last card is not read.
        WriteFileBytes(env.path(u"progress.vxs"_s), expected + bytes::i16(0) + "more");
        fillDeck(6);
        env.log->clear();
        env.prompter.fileAnswers = {env.path(u"progress.vxs"_s)};
        QVERIFY(modMain::LoadProgress());
        QCOMPARE(questions(), QStringList({u"Tür"_s, u"b"_s, u"c"_s, QString()}));
        QCOMPARE(g_Deck[0].trouble, kCardTrue);
        QCOMPARE(g_Deck[2].timesViewed, qint16(32767));
        QCOMPARE(g_Deck[1].spare, u"sp"_s);
        QCOMPARE(env.logLines(),
                 QStringList({u"Reading saved progress from file/n"_s, u"Entering FlushToZero mode/n"_s,
                              u" .. flushing 40 bytes of data/n"_s, u"All dynamic data flushed/n"_s,
                              u" .. read 3 of 3 nodes from disk/n"_s}));
        QCOMPARE(env.prompter.fileDialogs[1].title, u"Open File"_s);
        QCOMPARE(env.prompter.fileDialogs[1].kind, FileDialogKind::Open);
    }

    void saveProgressCancelledOrRefused()
    {
        TestEnvironment env;
        fillDeck(2);
        SaveProgress(); // cancelled: nothing but the first line
        QCOMPARE(env.logLines(), QStringList(u"Writing progress to disk/n"_s));

        const QString target = env.path(u"keep.vxs"_s);
        WriteFileBytes(target, "old progress");
        g_Deck[1].chapter = QString(70000, u'x'); // longer than a text field
        env.prompter.fileAnswers = {target};
        SaveProgress();
        QCOMPARE(env.prompter.boxTitles(), QStringList(u"Progress Not Saved"_s));
        QVERIFY(env.prompter.boxes[0].text.contains(u"65,535"_s));
        QCOMPARE(ReadFileBytes(target), QByteArray("old progress"));
    }

    // A deck that Windows-1252 holds is written as always; any other in UTF-8
    // behind a marker that a reader of the old layout refuses.
    void progressInBothLayouts_data()
    {
        QTest::addColumn<QString>("question");
        QTest::addColumn<QString>("chapter");
        QTest::addColumn<QByteArray>("file");
        const QByteArray emptySlot = bytes::text({}).repeated(4) + bytes::i16(0) + bytes::i16(0) + bytes::text({});
        auto card = [](const QByteArray &question, const QByteArray &chapter) {
            return bytes::text(question) + bytes::text("a") + bytes::text({}) + bytes::text({}) + bytes::i16(-1)
                    + bytes::i16(2) + bytes::text(chapter);
        };
        QTest::newRow("windows-1252") << u"Tür"_s << u"Haus €"_s
                                      << bytes::i16(1) + card("T\xFCr", "Haus \x80") + emptySlot;
        QTest::newRow("utf-8 for a Cyrillic question") << u"жук"_s << u"Tür"_s
                                                       << bytes::i16(-32768) + bytes::text("utf-8") + bytes::i16(1)
                        + card("\xD0\xB6\xD1\x83\xD0\xBA", "T\xC3\xBCr") + emptySlot;
        QTest::newRow("utf-8 for a Greek chapter name") << u"a"_s << u"Λέξεις"_s
                                                        << bytes::i16(-32768) + bytes::text("utf-8") + bytes::i16(1)
                        + card("a", "\xCE\x9B\xCE\xAD\xCE\xBE\xCE\xB5\xCE\xB9\xCF\x82") + emptySlot;
    }
    void progressInBothLayouts()
    {
        QFETCH(QString, question);
        QFETCH(QString, chapter);
        QFETCH(QByteArray, file);
        Deck deck;
        deck.Resize(1);
        deck[0] = {question, u"a"_s, {}, {}, kCardTrue, 2, chapter};
        QByteArray written;
        QString error;
        QVERIFY2(WriteProgressImage(deck, written, &error), qPrintable(error));
        QCOMPARE(written, file);

        std::vector<Card> read;
        korva::Encoding layout = korva::Encoding::Cp1252;
        qsizetype used = 0;
        QVERIFY(ReadProgressImage(file + "more", read, &error, &used, &layout));
        QCOMPARE(used, file.size());
        QCOMPARE(read.size(), size_t(2));
        QCOMPARE(read[0].question, question);
        QCOMPARE(read[0].chapter, chapter);
        QCOMPARE(read[0].timesViewed, qint16(2));
        const bool utf8 = layout == korva::Encoding::Utf8;
        QCOMPARE(utf8, QTest::currentDataTag() != QByteArray("windows-1252"));
        const std::optional<QStringList> classic = classicProgressReader(file);
        QCOMPARE(classic.has_value(), !utf8);
        if (classic)
            QCOMPARE(*classic, QStringList({question, QString()}));
    }

    void loadProgressRefusals_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("box");
        const QByteArray good = bytes::i16(1) + bytes::text("q") + bytes::text("a") + bytes::text({}) + bytes::text({})
                + bytes::i16(0) + bytes::i16(1) + bytes::text("c") + bytes::text({}) + bytes::text({}) + bytes::text({})
                + bytes::text({}) + bytes::i16(0) + bytes::i16(0) + bytes::text({});
        QTest::newRow("upper-case extension") << u"p.VXS"_s << good << u"Incompatible File Detected"_s;
        QTest::newRow("other extension") << u"p.zel"_s << good << u"Incompatible File Detected"_s;
        QTest::newRow("truncated") << u"p.vxs"_s << good.left(good.size() - 3) << u"Damaged Progress File"_s;
        QTest::newRow("negative count") << u"p.vxs"_s << bytes::i16(-2) << u"Damaged Progress File"_s;
        QTest::newRow("empty") << u"p.vxs"_s << QByteArray() << u"Damaged Progress File"_s;
        QTest::newRow("huge claimed count")
                << u"p.vxs"_s << bytes::i16(32767) + QByteArray(10, '\0') << u"Damaged Progress File"_s;
    }
    void loadProgressRefusals()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, content);
        QFETCH(QString, box);
        TestEnvironment env;
        fillDeck(4);
        const QStringList before = questions();
        WriteFileBytes(env.path(name), content);
        env.prompter.fileAnswers = {env.path(name)};
        QVERIFY(!modMain::LoadProgress());
        QCOMPARE(env.prompter.boxTitles(), QStringList(box));
        QCOMPARE(questions(), before);
        if (box == u"Incompatible File Detected"_s) {
            QCOMPARE(env.prompter.boxes[0].text, u"This program cannot open this type of file"_s);
            QCOMPARE(env.prompter.boxes[0].icon, MsgIcon::Information);
        }
    }

    void loadProgressCancelledOrMissing()
    {
        TestEnvironment env;
        fillDeck(2);
        QVERIFY(!modMain::LoadProgress());
        env.prompter.fileAnswers = {env.path(u"gone.vxs"_s)};
        QVERIFY(!modMain::LoadProgress());
        QVERIFY(env.prompter.boxes.empty());
        QCOMPARE(g_Deck.UBound(), 2);
    }

    void statisticsColumns()
    {
        TestEnvironment env;
        QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
        Deck deck;
        deck.Resize(4);
        deck[0] = {u"a question left out of the widths"_s, u"x"_s, {}, {}, kCardTrue, 9, u"Z"_s};
        deck[1] = {u"die Katze"_s, u"cat"_s, {}, {}, kCardTrue, 2, u"Tiere"_s};                   // 9 -> 13
        deck[2] = {u"das Nilpferd"_s, u"hippopotamus"_s, {}, {}, kCardFalse, 0, u"Tiere"_s};      // 12 <= 13
        deck[3] = {u"der Elefant mit Rüssel"_s, u"elephant"_s, {}, {}, kCardFalse, 12, u"Zoo"_s}; // -> 26
        const QString report = StatisticsReport(deck, QDate(2026, 11, 21));
        const QStringList lines = report.split(u'\n');
        QCOMPARE(lines.size(), 11);
        QCOMPARE(lines[0], u"VOCABRIX STATISTICS FILE"_s);
        QCOMPARE(lines[1], u"Automatically generated on 11/21/26"_s);
        QCOMPARE(lines[2], u"Vocabrix v.1.0.1 - Quillmere"_s);
        QCOMPARE(lines[3], u"NOTE: 'Times Viewed' data is for this session only"_s);
        QCOMPARE(lines[4], QString());
        // Question column 26 wide, answer column 16 ("hippopotamus" + 4).
        QCOMPARE(lines[5],
                 u" == QUESTION ==           "_s
                 u" == ANSWER ==   "_s
                 u" == TROUBLE? ==  == TIMES VIEWED ==  == CHAPTER == "_s);
        QCOMPARE(lines[6],
                 u"die Katze                 "_s
                 u"cat             "_s
                 u"       YES                "_s
                 u"2          Tiere"_s);
        QCOMPARE(lines[7],
                 u"das Nilpferd              "_s
                 u"hippopotamus    "_s
                 u"       NO                 "_s
                 u"0          Tiere"_s);
        QCOMPARE(lines[8],
                 u"der Elefant mit Rüssel    "_s
                 u"elephant        "_s
                 u"       NO                 "_s
                 u"12          Zoo"_s);
        // The empty slot ends the table.
        QCOMPARE(lines[9], QString(26 + 16, u' ') + u"       NO                 0          "_s);
        QCOMPARE(lines[10], QString());
    }

    void statisticsShortColumnsKeepTheirHeaders()
    {
        Deck deck;
        deck.Resize(2);
        deck[1] = {u"ja"_s, u"yes"_s, {}, {}, kCardFalse, 1, u"K"_s};
        const QStringList lines = StatisticsReport(deck, QDate(2026, 1, 2)).split(u'\n');
        QCOMPARE(lines[5], u" == QUESTION ==  == ANSWER ==  == TROUBLE? ==  == TIMES VIEWED ==  == CHAPTER == "_s);
        QCOMPARE(lines[6], u"ja              yes                  NO                 1          K"_s);
    }

    void textColumns_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("columns");
        QTest::newRow("latin") << u"Grün"_s << 4;
        QTest::newRow("cyrillic") << u"Жук"_s << 3;
        QTest::newRow("combining accent") << u"е\u0301сли"_s << 4;
        QTest::newRow("wide japanese") << u"日本語"_s << 6;
        QTest::newRow("beyond 16 bits") << u"a😀"_s << 3;
    }
    void textColumns()
    {
        QFETCH(QString, text);
        QFETCH(int, columns);
        QCOMPARE(TextColumns(text), qsizetype(columns));
    }

    // Columns stay aligned whatever the script: each row's question is padded
    // to the same columns.
    void statisticsAlignedInAnyScript()
    {
        Deck deck;
        deck.Resize(3);
        deck[1] = {u"日本語の言葉"_s, u"Japanese word"_s, {}, {}, kCardFalse, 0, u"J"_s}; // 12 -> 16
        deck[2] = {u"Жук"_s, u"beetle"_s, {}, {}, kCardFalse, 0, u"R"_s};
        const QStringList lines = StatisticsReport(deck, QDate(2026, 1, 2)).split(u'\n');
        QCOMPARE(lines[6], u"日本語の言葉    Japanese word           NO                 0          J"_s);
        QCOMPARE(lines[7], u"Жук             beetle                  NO                 0          R"_s);
    }

    void statisticsWrittenAndOpened()
    {
        TestEnvironment env;
        fillDeck(3);
        const QString p = env.path(u"stats.txt"_s);
        WriteFileBytes(p, "an older report");
        QVERIFY(WriteStatistics(p));
        QVERIFY(ReadFileBytes(p).startsWith("VOCABRIX STATISTICS FILE\n"));
        QCOMPARE(env.prompter.openedDocuments, QStringList(p));

        const QString unwritable = env.path(u"no/such/folder/stats.txt"_s);
        QVERIFY(!WriteStatistics(unwritable));
        QCOMPARE(env.prompter.boxTitles(), QStringList(u"Statistics Not Saved"_s));
        QCOMPARE(env.prompter.openedDocuments.size(), 1);
    }
};

QTEST_GUILESS_MAIN(CardsTest)
#include "tst_cards.moc"
