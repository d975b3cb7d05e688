// SPDX-License-Identifier: GPL-3.0-or-later
#include "korva/bytestream.h"
#include "korvafixture.h"

#include <QFile>

class KorvaTest : public KorvaFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init() { listen(); }
    void cleanup() { stopListening(); }

    // A text field: its 16-bit length, then the bytes in the file's encoding;
    // a refused text writes nothing. Windows-1252 goes both ways for every
    // byte, and a character it cannot hold is named.
    void textFields_data()
    {
        QTest::addColumn<bool>("utf8");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QByteArray>("stored"); // null: refused
        QTest::addColumn<QString>("error");
        const QString tooLong = u"a text of 65536 bytes is longer than the 65,535 bytes a text field holds"_s;
        auto cannot = [](const QString &c) {
            return u"the character "_s + c + u" cannot be stored in the file's 8-bit character set"_s;
        };
        QTest::newRow("1252: umlauts, euro and quotes")
                << false << u"üöäßÜÖÄ€“”…"_s << QByteArray("\xFC\xF6\xE4\xDF\xDC\xD6\xC4\x80\x93\x94\x85") << QString();
        QTest::newRow("1252: undefined bytes keep their number, nul and high latin")
                << false << u"\u0081\u008D\u008F\u0090\u009D\u0000\u00A0ÿ"_s
                << QByteArray("\x81\x8D\x8F\x90\x9D\x00\xA0\xFF", 8) << QString();
        QTest::newRow("1252: 65,535 bytes") << false << QString(65535, u'a') << QByteArray(65535, 'a') << QString();
        QTest::newRow("1252: 65,536 bytes") << false << QString(65536, u'a') << QByteArray() << tooLong;
        QTest::newRow("1252: a Cyrillic letter") << false << u"abЖ"_s << QByteArray() << cannot(u"'Ж' (U+0416)"_s);
        QTest::newRow("utf-8: 65,535 bytes")
                << true << u"Ж"_s.repeated(32767) + u'x' << QByteArray("\xD0\x96").repeated(32767) + 'x' << QString();
        QTest::newRow("utf-8: 65,536 bytes") << true << u"Ж"_s.repeated(32768) << QByteArray() << tooLong;
        QTest::newRow("utf-8: where one, two and three bytes end")
                << true << u"\u007F\u0080\u07FF\u0800\uFFFF"_s
                << QByteArray("\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF") << QString();
        QTest::newRow("utf-8: beyond 16 bits") << true << u"😀"_s << QByteArray("\xF0\x9F\x98\x80") << QString();
    }
    void textFields()
    {
        QFETCH(bool, utf8);
        QFETCH(QString, text);
        QFETCH(QByteArray, stored);
        QFETCH(QString, error);
        const korva::Encoding encoding = utf8 ? korva::Encoding::Utf8 : korva::Encoding::Cp1252;
        QByteArray out;
        korva::ByteWriter w(out, encoding);
        QCOMPARE(w.writeText(text), !stored.isNull());
        QCOMPARE(korva::textFieldSize(text, encoding), stored.isNull() ? -1 : 2 + stored.size());
        if (stored.isNull()) {
            QVERIFY(out.isEmpty());
            QCOMPARE(w.error(), error);
            QCOMPARE(w.cannotHold(), !error.startsWith(u"a text of"_s)); // not for length
            return;
        }
        QCOMPARE(out, bytes::i16(qint16(quint16(stored.size()))) + stored);
        korva::ByteReader r(out, encoding);
        QCOMPARE(r.readText(), text);
        QVERIFY(r.ok()); // a text cut short: damagedFilesRefused
    }

    void mountReadsHandMadeFile()
    {
        const QByteArray file =
                bytes::header("generated automatically by the Vocabrix Editor v1.21", 4, 2, "Kapitel \xFC", "res")
                + bytes::placeholder() + bytes::entry("der Hund", -1, "the dog", 0, "\x80 5")
                + bytes::entry("zahl", 0, {}, -123456, "n");
        WriteFileBytes(path(u"hand.zel"_s), file);

        ikorvalite db;
        QVERIFY(db.Mount(path(u"hand.zel"_s), false));
        QCOMPARE(QStringList({db.Description(), db.Title(), db.Header().reserved}),
                 QStringList({u"generated automatically by the Vocabrix Editor v1.21"_s, u"Kapitel ü"_s, u"res"_s}));
        QCOMPARE(indices(db), QList<int>({2, 1, 2}));
        QCOMPARE(db.GetEntry(1), (korva::Entry {u"der Hund"_s, -1, u"the dog"_s, 0, u"€ 5"_s}));
        QCOMPARE(std::pair(db.GetNumber(u"zahl"_s, 7).found, db.GetNumber(u"zahl"_s, 7).value),
                 std::pair(true, -123456));

        // Saved unchanged, the file keeps every byte.
        QVERIFY(db.Save());
        QCOMPARE(ReadFileBytes(path(u"hand.zel"_s)), file);

        // The header alone: the entries are not read.
        ikorvalite head;
        QVERIFY(head.Mount(path(u"hand.zel"_s), true));
        QCOMPARE(QStringList({head.Description(), head.Title()}), QStringList({db.Description(), u"Kapitel ü"_s}));
        QCOMPARE(indices(head), QList<int>({2, 1, 0}));
        // A save that does not happen leaves the count as it was.
        QFile::setPermissions(path(u"hand.zel"_s), QFileDevice::ReadOwner);
        QVERIFY(!head.Save());
        QCOMPARE(m_questions.size(), 1);
        QCOMPARE(head.Count(), 2);
        QCOMPARE(ReadFileBytes(path(u"hand.zel"_s)), file);
    }

    // Unmounted, the database names no path and refuses to save, and says why.
    void unmountedSaveRefused()
    {
        ikorvalite db;
        QVERIFY(db.Mount(path(u"a.zel"_s), false));
        QVERIFY(!db.Unmount()); // deliberate: it never reports success
        QVERIFY(!db.IsMounted() && db.Path().isEmpty());
        QVERIFY(!db.Save());
        QCOMPARE(db.LastError(), u"no file is mounted"_s);
    }

    void damagedFilesRefused_data()
    {
        QTest::addColumn<QByteArray>("file");
        const QByteArray good = bytes::header("d", 4, 1) + bytes::placeholder() + bytes::entry("a", -1, "b", 0, {});
        QTest::newRow("header text runs past its record") << (bytes::i16(200) + QByteArray(126, 'x'));
        QTest::newRow("negative count") << bytes::header("d", 4, -3) + bytes::placeholder();
        QTest::newRow("entries missing") << bytes::header("d", 4, 5) + bytes::placeholder();
        QTest::newRow("cut inside the last entry") << good.left(good.size() - 128 + 4);
        QTest::newRow("entry text runs past its record") << bytes::header("d", 4, 1) + bytes::placeholder()
                        + (bytes::text("key") + bytes::i16(-1) + bytes::i16(500) + QByteArray(121, 'y'));
        QTest::newRow("a byte larger than the largest file") << QByteArray(korva::kMaxFileSize + 1, '\0');
        QTest::newRow("marked utf-8, an entry that is not")
                << bytes::header("d", 4, 1, {}, "utf-8") + bytes::placeholder() + bytes::entry("\xFC", -1, "b", 0, {});
    }

    void damagedFilesRefused()
    {
        QFETCH(QByteArray, file);
        // "marked utf-8": a text that breaks the file's own encoding, and says so.
        const bool notUtf8 = QByteArray(QTest::currentDataTag()).startsWith("marked utf-8");
        WriteFileBytes(path(u"bad.zel"_s), file);
        ikorvalite db;
        db.SetValue(u"kept"_s, u"value"_s, 0, QString());
        QVERIFY(!db.Mount(path(u"bad.zel"_s), false));
        QVERIFY(!db.IsMounted());
        QVERIFY(!db.LastError().isEmpty());
        QCOMPARE(db.LastError().contains(u"not UTF-8"_s), notUtf8);
        QCOMPARE(db.GetText(u"kept"_s).value, u"value"_s); // nothing changed
        QCOMPARE(ReadFileBytes(path(u"bad.zel"_s)), file); // nor on disk
    }

    // The reader takes the header and entries 0 .. count and nothing else; a
    // save writes them back whole, each record padded to its slot. The
    // header's reserved text "utf-8", exactly, makes every text of the file
    // UTF-8; any other file is Windows-1252.
    void filesThatMount_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QStringList>("texts"); // title, entry 1's key and note
        QTest::addColumn<bool>("utf8");
        QTest::addColumn<QByteArray>("written"); // null: the same bytes
        auto row = [](const char *name, const QByteArray &file, const QStringList &texts, bool utf8,
                      const QByteArray &written = {}) { QTest::newRow(name) << file << texts << utf8 << written; };
        auto withEntry = [](const QByteArray &title, const QByteArray &key, const QByteArray &note,
                            const QByteArray &reserved = "utf-8") {
            return bytes::header("d", 4, 1, title, reserved) + bytes::placeholder()
                    + bytes::entry(key, -1, "b", 0, note);
        };
        const QByteArray good = withEntry({}, "a", {}, {});
        const QStringList a {{}, u"a"_s, {}}, none {{}, {}, {}};
        row("empty file", "", none, false, bytes::header({}, 0, 0) + bytes::placeholder());
        row("last record without filler",
            good.left(2 * 128) + bytes::text("a") + bytes::i16(-1) + bytes::text("b") + bytes::i32(0) + bytes::text({}),
            a, false, good);
        row("bytes after the last entry", good + "junk", a, false, good);
        row("header without its placeholder", bytes::header("d", 4, 0), none, false, kEmptyFile);
        row("header fields only", bytes::text("d") + bytes::i32(4) + bytes::i16(0) + bytes::text("t") + bytes::text({}),
            {u"t"_s, {}, {}}, false, bytes::header("d", 4, 0, "t") + bytes::placeholder());
        row("utf-8 by its marker",
            withEntry("\xD0\x93\xD0\xBB\xD0\xB0\xD0\xB2\xD0\xB0", "\xD0\xB6\xD1\x83\xD0\xBA",
                      "Gr\xC3\xBCn \xE2\x82\xAC"),
            {u"Глава"_s, u"жук"_s, u"Grün €"_s}, true);
    }

    void filesThatMount()
    {
        QFETCH(QByteArray, file);
        QFETCH(QStringList, texts);
        QFETCH(bool, utf8);
        QFETCH(QByteArray, written);
        WriteFileBytes(path(u"m.zel"_s), file);
        ikorvalite db;
        QVERIFY2(db.Mount(path(u"m.zel"_s), false), qPrintable(db.LastError()));
        const int last = texts[1].isEmpty() ? 0 : 1;
        QCOMPARE(indices(db), QList<int>({last, 1, last}));
        QCOMPARE(QStringList({db.Title(), db.GetEntry(1).key, db.GetEntry(1).note}), texts);
        QCOMPARE(db.Encoding() == korva::Encoding::Utf8, utf8);
        QVERIFY(m_log.isEmpty());                        // an existing file logs nothing, not even "file mounted"
        QCOMPARE(ReadFileBytes(path(u"m.zel"_s)), file); // mounting writes nothing
        QVERIFY(db.Save());
        QCOMPARE(ReadFileBytes(path(u"m.zel"_s)), written.isNull() ? file : written);
    }
};

QTEST_GUILESS_MAIN(KorvaTest)
#include "tst_korva.moc"
