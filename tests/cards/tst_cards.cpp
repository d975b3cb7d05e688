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

// Every field of every card, "question|answer|note|spare|trouble|times|chapter".
QStringList deckRows()
{
    QStringList out;
    for (const Card &c : g_Deck.cards())
        out << QStringList({c.question, c.answer, c.note, c.spare, QString::number(c.trouble),
                            QString::number(c.timesViewed), c.chapter})
                        .join(u'|');
    return out;
}

// One card of a progress file, and the empty slot that ends every file.
QByteArray cardBytes(const QByteArray &question, const QByteArray &answer, const QByteArray &note,
                     const QByteArray &spare, qint16 trouble, qint16 times, const QByteArray &chapter)
{
    return bytes::text(question) + bytes::text(answer) + bytes::text(note) + bytes::text(spare) + bytes::i16(trouble)
            + bytes::i16(times) + bytes::text(chapter);
}
const QByteArray kEmptySlot = cardBytes({}, {}, {}, {}, 0, 0, {});

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

        // Notes keep their escapes.
        QCOMPARE(deckRows(),
                 QStringList({u"Grün|green|asc(252) stays||-1|0|Chapter A"_s, u"b|bb|||-1|0|Chapter A"_s,
                              u"c|cc|n||-1|0|Chapter A"_s, u"d|Tür|||0|0|Chapter B"_s, u"e|ee|||0|0|Chapter B"_s,
                              u"f|ff|||0|0|Chapter B"_s, u"g|gg|||0|0|Chapter B"_s, u"||||0|0|"_s}));
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
        QTest::addColumn<QByteArray>("file"); // null: no file
        QTest::addColumn<QString>("box");
        const QString load = Box(u"Can't load file"_s, u"The file '%1' can't be loaded!"_s, MsgIcon::Exclamation);
        QTest::newRow("one entry") << chapterBytes({{"a", "b", ""}}) << load;
        QTest::newRow("no entries") << chapterBytes({}) << load;
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
        const QString two = env.path(u"two.zel"_s);
        WriteFileBytes(two, chapterBytes({{"a", "b", ""}, {"c", "d", ""}}));
        LoadChapterFile(two, u"two"_s);
        QCOMPARE(env.prompter.seen(),
                 QStringList(Box(u"Can't load file"_s,
                                 u"The file '"_s + two
                                         + u"' can't be loaded: with its 2 cards the deck would hold 32769 cards, "
                                           "more than the 32767 it can hold."_s,
                                 MsgIcon::Exclamation)));
        QCOMPARE(g_Deck.UBound(), 32767);
    }

    void flush_data()
    {
        QTest::addColumn<int>("cards");
        QTest::addColumn<bool>("firstUse");
        QTest::addColumn<QStringList>("lines");
        QTest::addColumn<int>("upperAfter");
        const QString entering = u"Entering FlushToZero mode/n"_s, empty = u" .. not flushing empty data set/n"_s;
        QTest::newRow("first use") << 5 << true
                                   << QStringList({entering, u"Initializing data system for first use/n"_s, empty})
                                   << 0;
        // A deck of one card is kept, deliberately.
        QTest::newRow("one card kept") << 1 << false << QStringList({entering, empty}) << 1;
        // Cards 1 and 2 counted, card 0 left out: 2 * (2 + 2) each.
        QTest::newRow("three cards") << 3 << false
                                     << QStringList({entering, u" .. flushing 16 bytes of data/n"_s,
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
        QCOMPARE(env.prompter.seen(),
                 QStringList(Box(u"Shuffler"_s,
                                 u"The shuffler cannot work with a dataset greater than 9999. Reduce the number of "
                                 "cards to below this number to reenable shuffling."_s,
                                 MsgIcon::Exclamation)));
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
        QStringList sortedBefore = before;
        sortedBefore.sort();
        after.sort();
        QCOMPARE(after, sortedBefore);
        // Each card moved whole, but for its spare text.
        for (int i = 0; i < g_Deck.UBound(); ++i) {
            const Card &c = g_Deck[i];
            const int n = c.question.mid(1).toInt();
            QCOMPARE(c.answer + c.spare + QString::number(c.timesViewed), u"a%1spare%2%3"_s.arg(n).arg(i).arg(n % 7));
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

    // Draws chosen so that the slots are known: a slot is the draw times
    // 10,000, modulo the cards.
    void shuffleScripted_data()
    {
        QTest::addColumn<int>("cards");
        QTest::addColumn<QList<double>>("draws");
        QTest::addColumn<QStringList>("after");
        QTest::addColumn<QList<int>>("bar");
        QList<double> inOrder;
        QStringList all;
        for (int i = 0; i < 120; ++i) {
            inOrder << i / 10000.0;
            all << u"q%1"_s.arg(i);
        }
        // Card 1's question is empty: its slot still looks free, and card 2 takes it.
        QTest::newRow("a card with an empty question is lost")
                << 3 << QList<double>({0.0, 0.0001, 0.0001}) << QStringList({u"q0"_s, u"q2"_s, {}, {}}) << QList<int>();
        QTest::newRow("one card") << 1 << QList<double>({0.73}) << QStringList({u"q0"_s, {}}) << QList<int>();
        // Pass 1 counts 0..119 and moves the bar at 50 and 100; pass 2 goes
        // on from 100 (not 120) over 121 slots.
        QTest::newRow("the bar goes on from where it stands")
                << 120 << inOrder << all + QStringList(QString()) << QList<int>({50, 100, 150, 200});
    }
    void shuffleScripted()
    {
        QFETCH(int, cards);
        QFETCH(QList<double>, draws);
        QFETCH(QStringList, after);
        QFETCH(QList<int>, bar);
        TestEnvironment env;
        fillDeck(cards);
        if (cards == 3)
            g_Deck[1].question.clear();
        ScriptedRandom rng([&](int n) { return draws.at(n); });
        SetRandomSource(&rng);
        FakeShuffleHost host;
        ShuffleDeck(host);
        QCOMPARE(rng.draws, draws.size());
        QCOMPARE(questions(), after);
        QCOMPARE(QList<int>({host.minimum, host.maximum}), QList<int>({0, 2 * cards}));
        QCOMPARE(QList<int>(host.barValues.begin(), host.barValues.end()), bar);
    }

    void shutdownLeavesTheDeck_data()
    {
        QTest::addColumn<int>("signalAt"); // the draw that brings the shutdown request
        QTest::addColumn<int>("minDraws");
        QTest::newRow("before the shuffle") << 0 << 0;
        QTest::newRow("during the first pass, which runs to its end") << 3 << 50;
    }
    void shutdownLeavesTheDeck()
    {
        QFETCH(int, signalAt);
        QFETCH(int, minDraws);
        TestEnvironment env;
        g_ShuttingDown = signalAt == 0;
        fillDeck(50);
        const QStringList before = questions();
        std::mt19937 engine(3);
        ScriptedRandom rng([&](int n) {
            g_ShuttingDown = g_ShuttingDown || n + 1 == signalAt;
            return std::generate_canonical<double, 32>(engine);
        });
        SetRandomSource(&rng);
        FakeShuffleHost host;
        ShuffleDeck(host);
        QVERIFY(rng.draws >= minDraws && (minDraws > 0 || rng.draws == 0));
        QCOMPARE(questions(), before);
        QCOMPARE(env.logLines().last(), u"system shutdown signal received: dropping out of shuffle/n"_s);
        QVERIFY(!host.calls.contains(u"texts 'Randomizing ...' 'Pass 2 of 2'"_s));
    }

    void saveProgressWritesExactBytes()
    {
        TestEnvironment env;
        g_Deck.Resize(3);
        g_Deck[0] = {u"Tür"_s, u"door"_s, u"f"_s, QString(), kCardTrue, 3, u"Haus"_s};
        g_Deck[1] = {u"b"_s, u"bb"_s, QString(), u"sp"_s, kCardFalse, 0, u"Haus"_s};
        g_Deck[2] = {u"c"_s, u"cc"_s, QString(), QString(), kCardTrue, 32767, u"Zoo"_s};
        const QStringList saved = deckRows();
        env.prompter.fileAnswers = {env.path(u"progress"_s)};
        SaveProgress();

        const QByteArray expected = bytes::i16(3) + cardBytes("T\xFCr", "door", "f", {}, -1, 3, "Haus")
                + cardBytes("b", "bb", {}, "sp", 0, 0, "Haus") + cardBytes("c", "cc", {}, {}, -1, 32767, "Zoo")
                + kEmptySlot;
        QCOMPARE(ReadFileBytes(env.path(u"progress.vxs"_s)), expected);
        QCOMPARE(env.logLines(), QStringList({u"Writing progress to disk/n"_s, u" .. wrote 3 nodes to disk/n"_s}));
        const FileDialogRequest &save = env.prompter.fileDialogs[0];
        QCOMPARE(QStringList({save.title, save.filter, save.defaultExt}),
                 QStringList({u"Save As"_s, u"Vocabrix Save File (*.vxs)"_s, u"vxs"_s}));

        // Loading it back replaces the deck in the saved order; what follows
        // the last card is not read.
        WriteFileBytes(env.path(u"progress.vxs"_s), expected + bytes::i16(0) + "more");
        fillDeck(6);
        env.log->clear();
        env.prompter.fileAnswers = {env.path(u"progress.vxs"_s)};
        QVERIFY(modMain::LoadProgress());
        QCOMPARE(deckRows(), saved);
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
        QCOMPARE(
                env.prompter.seen(),
                QStringList(Box(
                        u"Progress Not Saved"_s,
                        u"The progress file '"_s + target
                                + u"' couldn't be written: card 2 ('q1'): a text of 70000 bytes is longer than the 65,535 "
                                  "bytes a text field holds. Nothing was changed on disk."_s,
                        MsgIcon::Exclamation)));
        QCOMPARE(ReadFileBytes(target), QByteArray("old progress"));
    }

    // A deck that Windows-1252 holds is written as always; any other in UTF-8
    // behind a marker that a reader of the old layout refuses.
    void progressInBothLayouts_data()
    {
        QTest::addColumn<QString>("question");
        QTest::addColumn<QString>("chapter");
        QTest::addColumn<QByteArray>("file");
        const QByteArray utf8 = bytes::i16(-32768) + bytes::text("utf-8") + bytes::i16(1);
        auto card = [](const QByteArray &question, const QByteArray &chapter) {
            return cardBytes(question, "a", {}, {}, -1, 2, chapter) + kEmptySlot;
        };
        QTest::newRow("windows-1252") << u"Tür"_s << u"Haus €"_s << bytes::i16(1) + card("T\xFCr", "Haus \x80");
        QTest::newRow("utf-8 for a Cyrillic question")
                << u"жук"_s << u"Tür"_s << utf8 + card("\xD0\xB6\xD1\x83\xD0\xBA", "T\xC3\xBCr");
        QTest::newRow("utf-8 for a Greek chapter name")
                << u"a"_s << u"Λέξεις"_s << utf8 + card("a", "\xCE\x9B\xCE\xAD\xCE\xBE\xCE\xB5\xCE\xB9\xCF\x82");
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
        QCOMPARE(QStringList({read[0].question, read[0].chapter, QString::number(read[0].timesViewed)}),
                 QStringList({question, chapter, u"2"_s}));
        const bool utf8 = layout == korva::Encoding::Utf8;
        QCOMPARE(utf8, QTest::currentDataTag() != QByteArray("windows-1252"));
        const std::optional<QStringList> classic = classicProgressReader(file);
        QCOMPARE(classic.has_value(), !utf8);
        if (classic)
            QCOMPARE(*classic, QStringList({question, QString()}));
    }

    void loadProgress_data()
    {
        QTest::addColumn<QString>("name");       // empty: the dialog is cancelled
        QTest::addColumn<QByteArray>("content"); // null: no such file
        QTest::addColumn<QString>("box");        // the box, or its title
        const QByteArray good = bytes::i16(1) + cardBytes("q", "a", {}, {}, 0, 1, "c") + kEmptySlot;
        const QString incompatible = Box(u"Incompatible File Detected"_s,
                                         u"This program cannot open this type of file"_s, MsgIcon::Information);
        const QString damaged = u"Damaged Progress File"_s;
        QTest::newRow("cancelled") << QString() << QByteArray() << QString();
        QTest::newRow("no such file") << u"gone.vxs"_s << QByteArray() << QString();
        QTest::newRow("upper-case extension") << u"p.VXS"_s << good << incompatible;
        QTest::newRow("other extension") << u"p.zel"_s << good << incompatible;
        QTest::newRow("truncated") << u"p.vxs"_s << good.left(good.size() - 3) << damaged;
        QTest::newRow("negative count") << u"p.vxs"_s << bytes::i16(-2) << damaged;
        QTest::newRow("empty") << u"p.vxs"_s << QByteArray("") << damaged;
        QTest::newRow("huge claimed count") << u"p.vxs"_s << bytes::i16(32767) + QByteArray(10, '\0') << damaged;
    }
    void loadProgress()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, content);
        QFETCH(QString, box);
        TestEnvironment env;
        fillDeck(4);
        const QStringList before = deckRows();
        if (!content.isNull())
            WriteFileBytes(env.path(name), content);
        if (!name.isEmpty())
            env.prompter.fileAnswers = {env.path(name)};
        QVERIFY(!modMain::LoadProgress());
        QCOMPARE(box.contains(u" | "_s) ? env.prompter.seen() : env.prompter.boxTitles(),
                 box.isEmpty() ? QStringList() : QStringList(box));
        QCOMPARE(deckRows(), before);
    }

    // The report's table from its column headers on. Each column is as wide
    // as its longest text (card 0 left out) plus four, at least as wide as
    // its header, in the columns the text takes on screen.
    void statistics_data()
    {
        QTest::addColumn<QStringList>("deck"); // "question|answer|trouble|times|chapter" from card 0
        QTest::addColumn<QStringList>("table");
        QTest::newRow("widths from the longest texts")
                << QStringList({u"a question left out of the widths|x|-1|9|Z"_s, u"die Katze|cat|-1|2|Tiere"_s,
                                u"das Nilpferd|hippopotamus|0|0|Tiere"_s,
                                u"der Elefant mit Rüssel|elephant|0|12|Zoo"_s})
                << QStringList(
                           {u" == QUESTION ==            == ANSWER ==    == TROUBLE? ==  == TIMES VIEWED ==  == "
                            "CHAPTER == "_s,
                            u"die Katze                 cat                    YES                2          Tiere"_s,
                            u"das Nilpferd              hippopotamus           NO                 0          Tiere"_s,
                            u"der Elefant mit Rüssel    elephant               NO                 12          Zoo"_s,
                            // The empty slot ends the table.
                            QString(26 + 16, u' ') + u"       NO                 0          "_s, QString()});
        QTest::newRow("short columns keep their headers")
                << QStringList({u"||0|0|"_s, u"ja|yes|0|1|K"_s})
                << QStringList({u" == QUESTION ==  == ANSWER ==  == TROUBLE? ==  == TIMES VIEWED ==  == CHAPTER == "_s,
                                u"ja              yes                  NO                 1          K"_s,
                                QString(16 + 14, u' ') + u"       NO                 0          "_s, QString()});
        QTest::newRow("aligned in any script")
                << QStringList({u"||0|0|"_s, u"日本語の言葉|Japanese word|0|0|J"_s, u"Жук|beetle|0|0|R"_s})
                << QStringList({u" == QUESTION ==  == ANSWER ==     == TROUBLE? ==  == TIMES VIEWED ==  == "
                                "CHAPTER == "_s,
                                u"日本語の言葉    Japanese word           NO                 0          J"_s,
                                u"Жук             beetle                  NO                 0          R"_s,
                                QString(16 + 17, u' ') + u"       NO                 0          "_s, QString()});
    }
    void statistics()
    {
        QFETCH(QStringList, deck);
        QFETCH(QStringList, table);
        QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
        Deck cards;
        cards.Resize(int(deck.size()));
        for (int i = 0; i < deck.size(); ++i) {
            const QStringList f = deck[i].split(u'|');
            cards[i] = {f[0], f[1], {}, {}, qint16(f[2].toInt()), qint16(f[3].toInt()), f[4]};
        }
        QCOMPARE(StatisticsReport(cards, QDate(2026, 11, 21)).split(u'\n'),
                 QStringList({u"VOCABRIX STATISTICS FILE"_s, u"Automatically generated on 11/21/26"_s,
                              u"Vocabrix v.1.0.1 - Quillmere"_s,
                              u"NOTE: 'Times Viewed' data is for this session only"_s, QString()})
                         + table);
        QLocale::setDefault(QLocale::c());
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

    void statisticsWrittenAndOpened()
    {
        TestEnvironment env;
        fillDeck(3);
        const QString p = env.path(u"stats.txt"_s);
        WriteFileBytes(p, "an older report");
        QVERIFY(WriteStatistics(p));
        QVERIFY(ReadFileBytes(p).startsWith("VOCABRIX STATISTICS FILE\n"));
        QCOMPARE(env.prompter.openedDocuments, QStringList(p));

        QVERIFY(!WriteStatistics(env.path(u"no/such/folder/stats.txt"_s)));
        QCOMPARE(env.prompter.boxTitles(), QStringList(u"Statistics Not Saved"_s));
        QCOMPARE(env.prompter.openedDocuments.size(), 1);
    }
};

QTEST_GUILESS_MAIN(CardsTest)
#include "tst_cards.moc"
