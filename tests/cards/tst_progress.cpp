// SPDX-License-Identifier: GPL-3.0-or-later
#include "cards/progressfile.h"
#include "cards/statistics.h"
#include "deckfixture.h"

#include <QLocale>

namespace {

// One card of a progress file, and the empty slot that ends every file.
QByteArray cardBytes(const QByteArray &question, const QByteArray &answer, const QByteArray &note,
                     const QByteArray &spare, qint16 trouble, qint16 times, const QByteArray &chapter)
{
    return bytes::text(question) + bytes::text(answer) + bytes::text(note) + bytes::text(spare) + bytes::i16(trouble)
            + bytes::i16(times) + bytes::text(chapter);
}
const QByteArray kEmptySlot = cardBytes({}, {}, {}, {}, 0, 0, {});

} // namespace

class ProgressTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
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
    }

    void saveProgressRefused()
    {
        TestEnvironment env;
        fillDeck(2);
        const QString target = env.path(u"keep.vxs"_s);
        WriteFileBytes(target, "old progress");
        g_Deck[1].chapter = QString(70000, u'x'); // longer than a text field
        env.prompter.fileAnswers = {target};
        SaveProgress();
        QCOMPARE(env.prompter.boxTitles(), QStringList(u"Progress Not Saved"_s));
        QVERIFY(env.prompter.boxes[0].text.contains(u"card 2 ('q1'): a text of 70000 bytes"_s));
        QCOMPARE(ReadFileBytes(target), QByteArray("old progress"));
    }

    // A deck that Windows-1252 holds is written as always; any other in UTF-8
    // behind a marker: a count of -32768, which a reader of the old layout
    // refuses.
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
        QCOMPARE(layout == korva::Encoding::Utf8, QTest::currentDataTag() != QByteArray("windows-1252"));
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
        QTest::newRow("upper-case extension") << u"p.VXS"_s << good << incompatible;
        QTest::newRow("truncated") << u"p.vxs"_s << good.left(good.size() - 3) << damaged;
        QTest::newRow("negative count") << u"p.vxs"_s << bytes::i16(-2) << damaged;
        QTest::newRow("far larger than any progress file") << u"big.vxs"_s << QByteArray("sparse") << damaged;
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
        if (content == "sparse")
            QVERIFY(QFile::resize(env.path(name), 64 * 1024 * 1024 + 1));
        if (!name.isEmpty())
            env.prompter.fileAnswers = {env.path(name)};
        QVERIFY(!modMain::LoadProgress());
        QCOMPARE(box.contains(u" | "_s) ? env.prompter.seen() : env.prompter.boxTitles(),
                 box.isEmpty() ? QStringList() : QStringList(box));
        QCOMPARE(deckRows(), before);
    }

    // The report's table from its column headers on. Each column is as wide
    // as its longest text (card 0 left out) plus four, where a text within
    // four of the width so far does not widen it, and at least as wide as its
    // header. Written, the report is opened; where it cannot be written,
    // the person is told.
    void statistics()
    {
        TestEnvironment env;
        QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
        g_Deck.Resize(3);
        g_Deck[0] = {u"a question left out of the widths"_s, u"x"_s, {}, {}, kCardTrue, 9, u"Z"_s};
        // A wide letter takes two columns, a combining mark none.
        g_Deck[1] = {u"die Katze 猫"_s, u"cat"_s, {}, {}, kCardTrue, 2, u"Tiere"_s};
        g_Deck[2] = {u"der Elefant mit Ru\u0300ssel"_s, u"elephant"_s, {}, {}, kCardFalse, 305, u"Zoo"_s};
        QCOMPARE(StatisticsReport(g_Deck, QDate(2026, 11, 21)).split(u'\n'),
                 QStringList(
                         {u"VOCABRIX STATISTICS FILE"_s, u"Automatically generated on 11/21/26"_s,
                          u"Vocabrix v.1.0.1 - Quillmere"_s, u"NOTE: 'Times Viewed' data is for this session only"_s,
                          QString(),
                          u" == QUESTION ==            == ANSWER ==  == TROUBLE? ==  == TIMES VIEWED ==  == "
                          "CHAPTER == "_s,
                          u"die Katze 猫              cat                  YES                2          Tiere"_s,
                          u"der Elefant mit Ru\u0300ssel    elephant             NO                 305          Zoo"_s,
                          // The empty slot ends the table.
                          QString(26 + 14, u' ') + u"       NO                 0          "_s, QString()}));
        QLocale::setDefault(QLocale::c());

        const QString p = env.path(u"stats.txt"_s);
        WriteFileBytes(p, "an older report");
        QVERIFY(WriteStatistics(p));
        QVERIFY(ReadFileBytes(p).startsWith("VOCABRIX STATISTICS FILE\n"));
        QCOMPARE(env.prompter.openedDocuments, QStringList(p));
        QVERIFY(!WriteStatistics(env.path(u"no/such/folder/stats.txt"_s)));
        QCOMPARE(env.prompter.boxTitles(), QStringList(u"Statistics Not Saved"_s));
    }
};

QTEST_GUILESS_MAIN(ProgressTest)
#include "tst_progress.moc"
