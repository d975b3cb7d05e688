// SPDX-License-Identifier: GPL-3.0-or-later
#include "korva/bytestream.h"
#include "korva/cp1252.h"
#include "korva/diskfile.h"
#include "korva/korvahooks.h"
#include "testsupport.h"

#include <QFile>

#include <cerrno>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/mount.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

// Count, first and last index at once.
QList<int> indices(const ikorvalite &db)
{
    return {db.Count(), db.FirstIndex(), db.LastIndex()};
}

const QByteArray kEmptyFile = bytes::header("d", 4, 0) + bytes::placeholder();

} // namespace

// The engine reports through its hooks; these tests listen there directly.
class KorvaTest : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    QStringList m_log;
    QStringList m_questions; // "title | text"
    QStringList m_warnings;
    bool m_answerYes = false;

    QString path(const QString &name) const { return m_dir.filePath(name); }

private Q_SLOTS:
    void init()
    {
        m_log.clear();
        m_questions.clear();
        m_warnings.clear();
        m_answerYes = false;
        korva::Hooks hooks;
        hooks.log = [this](const QString &m) { m_log << m; };
        hooks.askYesNo = [this](const QString &t, const QString &x) {
            m_questions << t + u" | "_s + x;
            return m_answerYes;
        };
        hooks.warn = [this](const QString &t, const QString &x) { m_warnings << t + u" | "_s + x; };
        korva::setHooks(hooks);
    }
    void cleanup()
    {
        korva::setHooks({});
        korva::setSaveFault({});
    }

    // Both ways through Windows-1252; a character it cannot hold is named by
    // its index.
    void codec_data()
    {
        QTest::addColumn<QByteArray>("encoded");
        QTest::addColumn<QString>("decoded");
        QTest::addColumn<qsizetype>("badIndex"); // -1: encodes
        QTest::addColumn<QString>("named");
        QTest::newRow("ascii") << QByteArray("Haus") << u"Haus"_s << qsizetype(-1) << QString();
        QTest::newRow("umlauts") << QByteArray("\xFC\xF6\xE4\xDF\xDC\xD6\xC4") << u"üöäßÜÖÄ"_s << qsizetype(-1)
                                 << QString();
        QTest::newRow("euro and quotes") << QByteArray("\x80\x93\x94\x85") << u"€“”…"_s << qsizetype(-1) << QString();
        QTest::newRow("undefined bytes keep their number")
                << QByteArray("\x81\x8D\x8F\x90\x9D") << u"\u0081\u008D\u008F\u0090\u009D"_s << qsizetype(-1)
                << QString();
        QTest::newRow("nul and high latin")
                << QByteArray("\x00\xA0\xFF", 3) << u"\u0000\u00A0ÿ"_s << qsizetype(-1) << QString();
        QTest::newRow("cyrillic") << QByteArray() << u"abЖc"_s << qsizetype(2) << u"'Ж' (U+0416)"_s;
        QTest::newRow("emoji") << QByteArray() << u"x😀"_s << qsizetype(1) << u"'😀' (U+1F600)"_s;
        QTest::newRow("c1 control that 1252 redefines") << QByteArray() << u"\u0080"_s << qsizetype(0) << u"U+0080"_s;
    }
    void codec()
    {
        QFETCH(QByteArray, encoded);
        QFETCH(QString, decoded);
        QFETCH(qsizetype, badIndex);
        QFETCH(QString, named);
        QByteArray out;
        QCOMPARE(cp1252::encode(decoded, out), badIndex);
        if (badIndex >= 0) {
            QCOMPARE(cp1252::encodedLength(decoded), qsizetype(-1));
            QCOMPARE(cp1252::describeChar(decoded, badIndex), named);
            return;
        }
        QCOMPARE(out, encoded);
        QCOMPARE(cp1252::decode(encoded), decoded);
    }

    // A text field: its 16-bit length, then the bytes in the file's encoding;
    // a refused text writes nothing.
    void textFields_data()
    {
        QTest::addColumn<bool>("utf8");
        QTest::addColumn<QString>("text");
        QTest::addColumn<qsizetype>("size"); // -1: refused
        QTest::addColumn<QString>("error");
        const QString tooLong = u"a text of 65536 bytes is longer than the 65,535 bytes a text field holds"_s;
        QTest::newRow("1252: 65,535 bytes") << false << QString(65535, u'a') << qsizetype(65535) << QString();
        QTest::newRow("1252: 65,536 bytes") << false << QString(65536, u'a') << qsizetype(-1) << tooLong;
        QTest::newRow("1252: a Cyrillic letter")
                << false << u"abЖ"_s << qsizetype(-1)
                << u"the character 'Ж' (U+0416) cannot be stored in the file's 8-bit character set"_s;
        QTest::newRow("utf-8: 65,535 bytes") << true << u"Ж"_s.repeated(32767) + u'x' << qsizetype(65535) << QString();
        QTest::newRow("utf-8: 65,536 bytes") << true << u"Ж"_s.repeated(32768) << qsizetype(-1) << tooLong;
        QTest::newRow("utf-8: a character beyond 16 bits") << true << u"😀"_s << qsizetype(4) << QString();
        QTest::newRow("utf-8: half of a character")
                << true << u"a\xD800"_s << qsizetype(-1)
                << u"the text holds U+D800, half of a character without its other half, which cannot be stored"_s;
    }
    void textFields()
    {
        QFETCH(bool, utf8);
        QFETCH(QString, text);
        QFETCH(qsizetype, size);
        QFETCH(QString, error);
        const korva::Encoding encoding = utf8 ? korva::Encoding::Utf8 : korva::Encoding::Cp1252;
        QByteArray out;
        korva::ByteWriter w(out, encoding);
        QCOMPARE(w.writeText(text), size >= 0);
        QCOMPARE(korva::textFieldSize(text, encoding), size < 0 ? -1 : 2 + size);
        if (size < 0) {
            QVERIFY(out.isEmpty());
            QCOMPARE(w.error(), error);
            QCOMPARE(w.cannotHold(), !error.startsWith(u"a text of"_s)); // not for length
            return;
        }
        QCOMPARE(out.size(), 2 + size);
        QCOMPARE(out.left(2), bytes::i16(qint16(quint16(size))));
        korva::ByteReader r(out, encoding);
        QCOMPARE(r.readText(), text);
        QVERIFY(r.ok());

        const QByteArray shortened = out.chopped(1); // the reader keeps no copy
        korva::ByteReader cut(shortened, encoding);
        QCOMPARE(cut.readText(), QString());
        QVERIFY(!cut.ok());
    }

    void mountReadsHandMadeFile()
    {
        const QByteArray file =
                bytes::header("generated automatically by the Vocabrix Editor v1.21", 4, 2, "Kapitel 1", "res")
                + bytes::placeholder() + bytes::entry("der Hund", -1, "the dog", 0, "pl. die Hunde")
                + bytes::entry("zahl", 0, {}, -123456, "n");
        WriteFileBytes(path(u"hand.zel"_s), file);

        ikorvalite db;
        QVERIFY(db.Mount(path(u"hand.zel"_s), false));
        QCOMPARE(QStringList({db.Description(), db.Title(), db.Header().reserved}),
                 QStringList({u"generated automatically by the Vocabrix Editor v1.21"_s, u"Kapitel 1"_s, u"res"_s}));
        QCOMPARE(db.Header().format, 4);
        QCOMPARE(indices(db), QList<int>({2, 1, 2}));
        QCOMPARE(db.GetEntry(1), (korva::Entry {u"der Hund"_s, -1, u"the dog"_s, 0, u"pl. die Hunde"_s}));
        QCOMPARE(db.GetNumber(u"zahl"_s, 7).value, -123456);
        QVERIFY(db.GetNumber(u"zahl"_s, 7).found);
        QCOMPARE(db.GetEntry(99), korva::Entry()); // out of range reads empty
        QVERIFY(m_log.isEmpty());                  // an existing file logs nothing, not even "file mounted"

        // Saved unchanged, the file keeps every byte.
        QVERIFY(db.Save());
        QCOMPARE(ReadFileBytes(path(u"hand.zel"_s)), file);
    }

    void saveWritesExactLayout()
    {
        const QString p = path(u"new.zel"_s);
        ikorvalite db;
        QVERIFY(db.Mount(p, false));
        QCOMPARE(m_log,
                 QStringList({u"the specified file doesn't exist, creating new/n"_s, u"file created/n"_s,
                              u"file mounted/n"_s}));
        QVERIFY(QFileInfo(p).isFile());
        QCOMPARE(QFileInfo(p).size(), 0); // nothing until Save
        QCOMPARE(indices(db), QList<int>({0, 1, 0}));

        QVERIFY(db.Save());
        const QByteArray header = "KORVA Database File; KORVA Lite version";
        QCOMPARE(ReadFileBytes(p), bytes::header(header, 4, 0) + bytes::placeholder());

        db.SetValue(u"flist_count"_s, QString(), 4, QString());
        db.SetValue(u"flist_name_1"_s, u"/home/ü/ex1.zel"_s, 0, QString());
        db.SetValue(u"show_mouse_hover"_s, QString(), -1, u"options"_s);
        QVERIFY(db.Save());
        QCOMPARE(ReadFileBytes(p),
                 bytes::header(header, 4, 3) + bytes::placeholder() + bytes::entry("flist_count", 0, {}, 4, {})
                         + bytes::entry("flist_name_1", -1, "/home/\xFC/ex1.zel", 0, {})
                         + bytes::entry("show_mouse_hover", 0, {}, -1, "options"));
    }

    void setValueRules()
    {
        ikorvalite db;
        db.SetValue(u"k"_s, u"text"_s, 5, u"n1"_s);
        QCOMPARE(db.GetEntry(1), (korva::Entry {u"k"_s, -1, u"text"_s, 0, u"n1"_s}));
        QVERIFY(db.GetValueType(u"k"_s));
        QCOMPARE(db.GetText(u"k"_s).value, u"text"_s);
        // A text entry read as a number: found, but the default.
        const auto asNumber = db.GetNumber(u"k"_s, 42);
        QVERIFY(asNumber.found);
        QCOMPARE(asNumber.value, 42);

        // The same key again keeps one entry; an empty text makes it a number entry.
        db.SetValue(u"k"_s, QString(), 9, u"n2"_s);
        QCOMPARE(indices(db), QList<int>({1, 1, 1}));
        QVERIFY(!db.GetValueType(u"k"_s));
        QCOMPARE(db.GetNumber(u"k"_s, 0).value, 9);
        QCOMPARE(QStringList({db.GetText(u"k"_s, u"d"_s).value, db.GetNote(u"k"_s)}), QStringList({{}, u"n2"_s}));

        // Keys compare exactly.
        QVERIFY(!db.GetNumber(u"K"_s, 3).found);
        QCOMPARE(QStringList({db.GetText(u"missing"_s, u"fallback"_s).value, db.GetNote(u"missing"_s)}),
                 QStringList({u"fallback"_s, {}}));

        // The empty key is the placeholder's: setting it changes entry 0.
        db.SetValue(QString(), QString(), 0, u"color_metrics"_s);
        QCOMPARE(db.LastIndex(), 1);
        QCOMPARE(db.GetEntry(0).note, u"color_metrics"_s);
    }

    void headerOnlyMount()
    {
        WriteFileBytes(path(u"h.zel"_s),
                       bytes::header("desc", 4, 2, "Titel") + bytes::placeholder() + bytes::entry("a", -1, "b", 0, {})
                               + bytes::entry("c", -1, "d", 0, {}));
        ikorvalite db;
        QVERIFY(db.Mount(path(u"h.zel"_s), true));
        QCOMPARE(QStringList({db.Description(), db.Title()}), QStringList({u"desc"_s, u"Titel"_s}));
        QCOMPARE(indices(db), QList<int>({2, 1, 0})); // entries not read

        // A save that does not happen leaves the count as it was.
        QFile::setPermissions(path(u"h.zel"_s), QFileDevice::ReadOwner);
        QVERIFY(!db.Save());
        QCOMPARE(m_questions.size(), 1);
        QCOMPARE(db.Count(), 2);
    }

    void secondMountRefused()
    {
        ikorvalite db;
        QVERIFY(db.Mount(path(u"a.zel"_s), false));
        m_log.clear();
        QVERIFY(!db.Mount(path(u"b.zel"_s), false));
        QCOMPARE(m_log,
                 QStringList({u" ..this class instance already has a file mounted/n"_s,
                              u" ..create a new instance or unmount the current file first/n"_s}));
        QCOMPARE(db.Path(), path(u"a.zel"_s));
        QVERIFY(!QFileInfo::exists(path(u"b.zel"_s)));
        QVERIFY(!db.Unmount());
        QVERIFY(!db.IsMounted());
        QVERIFY(!db.Mount(QString(), false));
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
        QTest::newRow("count claims more than the file can be")
                << bytes::header("d", 4, 32767) + QByteArray(4096, '\0');
        QTest::newRow("binary noise") << QByteArray(300, '\xEE');
        QTest::newRow("marked utf-8, an entry that is not")
                << bytes::header("d", 4, 1, {}, "utf-8") + bytes::placeholder() + bytes::entry("\xFC", -1, "b", 0, {});
        QTest::newRow("marked utf-8, a title that is not")
                << bytes::header("d", 4, 0, "\xC3", "utf-8") + bytes::placeholder();
    }
    void damagedFilesRefused()
    {
        QFETCH(QByteArray, file);
        WriteFileBytes(path(u"bad.zel"_s), file);
        ikorvalite db;
        db.SetValue(u"kept"_s, u"value"_s, 0, QString());
        QVERIFY(!db.Mount(path(u"bad.zel"_s), false));
        QVERIFY(!db.IsMounted());
        QVERIFY(!db.LastError().isEmpty());
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
        const QByteArray good = bytes::header("d", 4, 1) + bytes::placeholder() + bytes::entry("a", -1, "b", 0, {});
        const QStringList a {{}, u"a"_s, {}}, none {{}, {}, {}};
        QTest::newRow("empty file") << QByteArray("") << none << false
                                    << bytes::header({}, 0, 0) + bytes::placeholder();
        QTest::newRow("last record without filler") << good.left(2 * 128) + bytes::text("a") + bytes::i16(-1)
                        + bytes::text("b") + bytes::i32(0) + bytes::text({})
                                                    << a << false << good;
        QTest::newRow("bytes after the last entry") << good + "junk" << a << false << good;
        QTest::newRow("a zero record after the last entry") << good + QByteArray(128, '\0') << a << false << good;
        QTest::newRow("header without its placeholder") << bytes::header("d", 4, 0) << none << false << kEmptyFile;
        QTest::newRow("header fields only")
                << bytes::text("d") + bytes::i32(4) + bytes::i16(0) + bytes::text("t") + bytes::text({})
                << QStringList({u"t"_s, {}, {}}) << false << bytes::header("d", 4, 0, "t") + bytes::placeholder();
        QTest::newRow("windows-1252") << bytes::header("d", 4, 1, "Kapitel \xFC") + bytes::placeholder()
                        + bytes::entry("Gr\xFCn", -1, "green", 0, "\x80 5")
                                      << QStringList({u"Kapitel ü"_s, u"Grün"_s, u"€ 5"_s}) << false << QByteArray();
        QTest::newRow("utf-8 by its marker")
                << bytes::header("d", 4, 1, "\xD0\x93\xD0\xBB\xD0\xB0\xD0\xB2\xD0\xB0", "utf-8") + bytes::placeholder()
                        + bytes::entry("\xD0\xB6\xD1\x83\xD0\xBA", -1, "beetle", 0, "Gr\xC3\xBCn \xE2\x82\xAC")
                << QStringList({u"Глава"_s, u"жук"_s, u"Grün €"_s}) << true << QByteArray();
        QTest::newRow("UTF-8 in capitals is no marker") << bytes::header("d", 4, 1, "\xD0\x96", "UTF-8")
                        + bytes::placeholder() + bytes::entry("\xD0\x96", -1, "x", 0, {})
                                                        << QStringList({u"Ð–"_s, u"Ð–"_s, {}}) << false << QByteArray();
        QTest::newRow("utf-8 of plain letters")
                << bytes::header("d", 4, 1, "T", "utf-8") + bytes::placeholder() + bytes::entry("a", -1, "b", 0, {})
                << QStringList({u"T"_s, u"a"_s, {}}) << true << QByteArray();
        QTest::newRow("a byte-order mark is part of its text")
                << bytes::header("d", 4, 1, {}, "utf-8") + bytes::placeholder()
                        + bytes::entry("\xEF\xBB\xBFx", -1, "b", 0, {})
                << QStringList({{}, u"\uFEFFx"_s, {}}) << true << QByteArray();
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
        QVERIFY(m_log.isEmpty());
        QCOMPARE(ReadFileBytes(path(u"m.zel"_s)), file); // mounting writes nothing
        QVERIFY(db.Save());
        QCOMPARE(ReadFileBytes(path(u"m.zel"_s)), written.isNull() ? file : written);
    }

    void largestFileMountsAndOneMoreIsRefused()
    {
        ikorvalite db;
        for (int i = 1; i <= korva::kMaxEntries; ++i)
            db.AppendEntry({u"q%1"_s.arg(i), -1, u"a"_s, 0, {}});
        QVERIFY(db.SaveAs(path(u"big.zel"_s)));
        QCOMPARE(QFileInfo(path(u"big.zel"_s)).size(), qint64(korva::kMaxEntries + 2) * 128);

        ikorvalite back;
        QVERIFY(back.Mount(path(u"big.zel"_s), false));
        QCOMPARE(back.LastIndex(), 32767);
        QCOMPARE(back.GetEntry(32767).key, u"q32767"_s);

        const QByteArray before = ReadFileBytes(path(u"big.zel"_s));
        back.AppendEntry({u"one too many"_s, -1, u"a"_s, 0, {}});
        QCOMPARE(back.Count(), 32768);
        QVERIFY(!back.Save());
        QCOMPARE(back.Count(), 32768); // a refused save leaves the count alone
        QCOMPARE(m_warnings.size(), 1);
        QVERIFY(m_warnings[0].contains(u"32767"_s));
        QCOMPARE(ReadFileBytes(path(u"big.zel"_s)), before);
    }

    // A text that Windows-1252 cannot hold turns the whole file into UTF-8,
    // with the marker in place of the reserved text; it stays UTF-8 after.
    void textOutsideWindows1252TurnsTheFileUtf8()
    {
        WriteFileBytes(path(u"t.zel"_s),
                       bytes::header("d", 4, 1, "T\xFC", "res") + bytes::placeholder()
                               + bytes::entry("Gr\xFCn", -1, "green", 0, {}));
        ikorvalite db;
        QVERIFY(db.Mount(path(u"t.zel"_s), false));
        const QByteArray turned = bytes::header("d", 4, 2, "T\xC3\xBC", "utf-8") + bytes::placeholder()
                + bytes::entry("Gr\xC3\xBCn", -1, "green", 0, {});
        for (const auto &[text, stored] : {std::pair(u"жук"_s, QByteArray("\xD0\xB6\xD1\x83\xD0\xBA")),
                                           std::pair(u"beetle"_s, QByteArray("beetle"))}) {
            db.SetValue(u"word"_s, text, 0, u"Käfer"_s);
            QVERIFY(db.Save());
            QCOMPARE(ReadFileBytes(path(u"t.zel"_s)),
                     turned + bytes::entry("word", -1, stored, 0, "K\xC3\xA4\x66\x65r"));
        }
        QVERIFY(m_warnings.empty());
    }

    // Limits are bytes in the file's encoding: a record of key "k", a text and
    // an empty note takes 13 + its bytes; a header of description "d", a title
    // and the marker 18 + the title's bytes.
    void byteLimitsInBothEncodings_data()
    {
        QTest::addColumn<bool>("marked");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QByteArray>("stored"); // empty: refused
        QTest::addColumn<QString>("why");
        const QString zhe = u"Ж"_s;
        auto needs = [](const QString &what, bool utf8) {
            return what + u" needs 129 bytes, more than the 128 bytes of a record"_s
                    + (utf8 ? u" (its texts in UTF-8)"_s : QString());
        };
        const QString entry = u"entry 1 ('k')"_s;
        QTest::newRow("1252: 115 letters fit")
                << false << QString() << QString(115, u'x') << QByteArray(115, 'x') << QString();
        QTest::newRow("1252: 115 umlauts fit")
                << false << QString() << QString(115, u'ü') << QByteArray(115, '\xFC') << QString();
        QTest::newRow("1252: 116 letters are a byte too many")
                << false << QString() << QString(116, u'x') << QByteArray() << needs(entry, false);
        QTest::newRow("utf-8: 57 Cyrillic letters and a byte fit")
                << true << QString() << zhe.repeated(57) + u'x' << QByteArray("\xD0\x96").repeated(57) + 'x'
                << QString();
        QTest::newRow("utf-8: 58 Cyrillic letters are a byte too many")
                << true << QString() << zhe.repeated(58) << QByteArray() << needs(entry, true);
        QTest::newRow("utf-8: an umlaut takes two bytes")
                << true << QString() << QString(58, u'ü') << QByteArray() << needs(entry, true);
        QTest::newRow("1252 turned utf-8 by a Cyrillic letter")
                << false << QString() << QString(57, u'ü') + zhe << QByteArray() << needs(entry, true);
        QTest::newRow("utf-8: a title of 110 bytes beside the marker")
                << true << zhe.repeated(55) << u"x"_s << QByteArray("x") << QString();
        QTest::newRow("utf-8: a title of 111 bytes")
                << true << zhe.repeated(55) + u'x' << u"x"_s << QByteArray() << needs(u"the header"_s, true);
    }
    void byteLimitsInBothEncodings()
    {
        QFETCH(bool, marked);
        QFETCH(QString, title);
        QFETCH(QString, text);
        QFETCH(QByteArray, stored);
        QFETCH(QString, why);
        korva::Header h;
        h.description = u"d"_s;
        h.title = title;
        h.reserved = marked ? u"utf-8"_s : QString();
        ikorvalite db;
        db.Assign(h, {korva::Entry(), korva::Entry {u"k"_s, -1, text, 0, {}}});
        const QString p = path(u"limits.zel"_s);
        WriteFileBytes(p, "before");
        QCOMPARE(db.SaveAs(p), !stored.isEmpty());
        if (stored.isEmpty()) {
            QCOMPARE(ReadFileBytes(p), QByteArray("before"));
            QCOMPARE(m_warnings,
                     QStringList(u"Can't save file | The file '"_s + p + u"' couldn't be saved: "_s + why
                                 + u". The file on disk was not changed."_s));
            return;
        }
        QCOMPARE(ReadFileBytes(p).mid(128), bytes::placeholder() + bytes::entry("k", -1, stored, 0, {}));
    }

    void readOnlyQuestion_data()
    {
        QTest::addColumn<bool>("answerYes");
        QTest::newRow("yes overwrites") << true;
        QTest::newRow("no keeps the file") << false;
    }
    void readOnlyQuestion()
    {
        QFETCH(bool, answerYes);
        const QString p = path(u"ro.zel"_s);
        WriteFileBytes(p, kEmptyFile);
        QFile::setPermissions(p, QFileDevice::ReadOwner | QFileDevice::ReadUser);

        ikorvalite db;
        QVERIFY(db.Mount(p, false));
        db.SetValue(u"x"_s, QString(), 1, QString());
        m_answerYes = answerYes;
        QCOMPARE(db.Save(), answerYes);
        QCOMPARE(m_questions,
                 QStringList(u"Readonly File Detected | The specified file is readonly. Do you want to save to this "
                             "location anyways?"_s));
        QCOMPARE(ReadFileBytes(p),
                 answerYes ? bytes::header("d", 4, 1) + bytes::placeholder() + bytes::entry("x", 0, {}, 1, {})
                           : kEmptyFile);
        QCOMPARE(bool(QFileInfo(p).permissions() & QFileDevice::WriteOwner), answerYes);
        QVERIFY(m_warnings.empty());
        QFile::setPermissions(p, QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    }

    void clearEmptiesAndUnmounts()
    {
        ikorvalite db;
        QVERIFY(db.Mount(path(u"c.zel"_s), false));
        db.SetTitle(u"kept title"_s);
        db.SetValue(u"a"_s, u"b"_s, 0, QString());
        db.Clear();
        QVERIFY(!db.IsMounted());
        QCOMPARE(indices(db), QList<int>({0, 1, 0}));
        QCOMPARE(QStringList({db.Description(), db.Title()}), QStringList({{}, u"kept title"_s}));
        QCOMPARE(db.Header().format, 0);
        QVERIFY(!db.Save()); // no path any more
        QCOMPARE(db.LastError(), u"no file is mounted"_s);
    }

    void versionAndFiles()
    {
        QCOMPARE(ikorvalite::Version(), u"KORVA Platform v3.44 of 16Jan2010"_s);
        WriteFileBytes(path(u"f.zel"_s), "x");
        QVERIFY(ikorvalite::FileExists(path(u"f.zel"_s)));
        QVERIFY(!ikorvalite::FileExists(m_dir.path())); // folders are not files
        QVERIFY(!ikorvalite::FileExists(path(u"none.zel"_s)));
    }

    void fileAttributeMask_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("readOnly");
        QTest::addColumn<QString>("mask");
        QTest::newRow("plain file") << u"plain.txt"_s << false << u"----n---"_s;
        QTest::newRow("read-only") << u"ro.txt"_s << true << u"-----r--"_s;
        QTest::newRow("hidden") << u".hidden"_s << false << u"---h----"_s;
    }
    void fileAttributeMask()
    {
        QFETCH(QString, name);
        QFETCH(bool, readOnly);
        QFETCH(QString, mask);
        const QString p = path(name);
        WriteFileBytes(p, "x");
        if (readOnly)
            QFile::setPermissions(p, QFileDevice::ReadOwner);
        ikorvalite::LogFileAttributes(p);
        QCOMPARE(m_log, QStringList(u" .. opening file '"_s + p + u"' ["_s + mask + u"]/n"_s));
        QFile::setPermissions(p, QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    }

    void saveThroughLinkKeepsLinkAndPermissions()
    {
        const QString real = path(u"real.zel"_s), link = path(u"link.zel"_s);
        WriteFileBytes(real, kEmptyFile);
        QFile::setPermissions(real, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ReadGroup);
        QVERIFY(QFile::link(real, link));
        ikorvalite db;
        QVERIFY(db.Mount(link, false));
        db.SetValue(u"k"_s, QString(), 7, QString());
        QVERIFY(db.Save());
        QCOMPARE(QFileInfo(link).symLinkTarget(), real);
        QCOMPARE(ReadFileBytes(real),
                 bytes::header("d", 4, 1) + bytes::placeholder() + bytes::entry("k", 0, {}, 7, {}));
        QCOMPARE(QFileInfo(real).permissions() & 0x0FFF,
                 QFileDevice::ReadUser | QFileDevice::WriteUser | QFileDevice::ReadGroup);
    }

    // A save that was cut off (the process killed) leaves its temporary file;
    // the next save of the same file removes it, and nothing that may be
    // someone else's.
    void abandonedTemporaryFilesRemoved()
    {
        QTemporaryDir dir;
        auto at = [&](const QString &name) { return dir.filePath(name); };
        const QStringList abandoned {u"t.zel.vxsave-AbC123"_s, u"t.zel.vxsave-000000"_s};
        const QStringList kept {u"t.zel.vxsave-AbC12"_s,  u"t.zel.vxsave-AbC1234"_s, u"t.zel.vxsave-AbC12_"_s,
                                u"x.zel.vxsave-AbC123"_s, u"t.zel.AbC123"_s,         u"t.zel.vxsave-InUse1"_s};
        for (const QString &name : abandoned + kept)
            WriteFileBytes(at(name), "left over");
        QVERIFY(QDir(dir.path()).mkdir(u"t.zel.vxsave-Folder"_s));
        QVERIFY(QFile::link(at(u"x.zel.vxsave-AbC123"_s), at(u"t.zel.vxsave-Link00"_s)));
        // A save that is still running holds its file locked.
        const int inUse = ::open(QFile::encodeName(at(u"t.zel.vxsave-InUse1"_s)).constData(), O_RDONLY);
        QVERIFY(inUse >= 0 && ::flock(inUse, LOCK_EX) == 0);

        QString error;
        QVERIFY2(korva::saveFile(at(u"t.zel"_s), "new", &error), qPrintable(error));
        ::close(inUse);
        QCOMPARE(ReadFileBytes(at(u"t.zel"_s)), QByteArray("new"));
        QStringList expected = kept + QStringList {u"t.zel"_s, u"t.zel.vxsave-Folder"_s, u"t.zel.vxsave-Link00"_s};
        expected.sort();
        QCOMPARE(QDir(dir.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::System, QDir::Name),
                 expected);
    }

    // A real disk that fills up, where the machine lets the test make one
    // (a 64 KiB memory file system; mounting needs the administrator).
    void fullDiskKeepsTheOldFile()
    {
        QTemporaryDir dir;
        if (::mount("vocabrix-test", QFile::encodeName(dir.path()).constData(), "tmpfs", 0, "size=64k") != 0)
            QSKIP("no file system can be mounted here");
        auto unmount = qScopeGuard([&] { ::umount2(QFile::encodeName(dir.path()).constData(), MNT_DETACH); });
        ikorvalite db;
        for (int i = 0; i < 80; ++i)
            db.AppendEntry({u"key %1"_s.arg(i), -1, u"value"_s, 0, {}});
        QVERIFY(db.SaveAs(dir.filePath(u"sys.zel"_s)));
        const QByteArray before = ReadFileBytes(dir.filePath(u"sys.zel"_s));
        QCOMPARE(before.size(), 82 * 128);
        WriteFileBytes(dir.filePath(u"filler"_s), QByteArray(64 * 1024 - before.size() - 4096, 'f'));
        for (int i = 80; i < 200; ++i)
            db.AppendEntry({u"key %1"_s.arg(i), -1, u"value"_s, 0, {}});
        QVERIFY(!db.Save());
        QCOMPARE(ReadFileBytes(dir.filePath(u"sys.zel"_s)), before);
        QCOMPARE(m_warnings.size(), 1);
        QVERIFY(m_warnings[0].contains(QString::fromLocal8Bit(strerror(ENOSPC))));
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files), QStringList({u"filler"_s, u"sys.zel"_s}));
    }
};

QTEST_GUILESS_MAIN(KorvaTest)
#include "tst_korva.moc"
