// SPDX-License-Identifier: GPL-3.0-or-later
#include "cards/deck.h"
#include "cardtext.h"
#include "chapterrules.h"
#include "commandline.h"
#include "headerrow.h"
#include "pdftext.h"
#include "testsupport.h"

#include <QBuffer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QScopeGuard>

#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

struct RunResult
{
    int status;
    QByteArray out;
    QString err;
};

RunResult run(const QStringList &args)
{
    QBuffer out, err;
    out.open(QIODevice::WriteOnly);
    err.open(QIODevice::WriteOnly);
    const int status = commandline::Run(args, out, err);
    return {status, out.data(), QString::fromUtf8(err.data())};
}

QJsonObject dumpJson(const QString &path)
{
    const RunResult r = run({u"dump"_s, path});
    if (r.status != 0)
        return {};
    QJsonParseError error;
    const QJsonDocument doc = QJsonDocument::fromJson(r.out, &error);
    return doc.object();
}

using Rows = QList<QStringList>;

const QByteArray kChapter = "generated automatically by the Vocabrix Editor v1.21";

// The files the print and languages verbs read, byte by byte, in a folder:
// a chapter "Tiere", a progress file (Katze its one trouble card), one with
// no trouble card, a damaged one and a KORVA file that is no chapter.
void writeSources(const QTemporaryDir &dir)
{
    using namespace bytes;
    WriteFileBytes(dir.filePath(u"chapter.zel"_s),
                   header(kChapter, 4, 3, "Tiere") + placeholder() + entry("Hund", -1, "dog", 0, "")
                           + entry("Katze", -1, "cat", 0, "") + entry("Tasc(252)r", -1, "door", 0, ""));
    WriteFileBytes(dir.filePath(u"other.zel"_s),
                   header("x", 4, 2) + placeholder() + entry("a", -1, "b", 0, "") + entry("c", -1, "d", 0, ""));
    auto card = [](const QByteArray &q, const QByteArray &chapter, qint16 trouble) {
        return text(q) + text("a") + text("") + text("") + i16(trouble) + i16(1) + text(chapter);
    };
    const QByteArray slot = card("", "", 0);
    WriteFileBytes(dir.filePath(u"progress.vxs"_s),
                   i16(3) + card("Hund", "Tiere", 0) + card("Katze", "Tiere", -1) + card("Rot", "Farben", 0) + slot);
    WriteFileBytes(dir.filePath(u"none.vxs"_s), i16(2) + card("Hund", "Tiere", 0) + card("Rot", "Farben", 0) + slot);
    WriteFileBytes(dir.filePath(u"bad.vxs"_s), i16(3) + card("Hund", "Tiere", 0));
}

QStringList withFolder(QStringList args, const QTemporaryDir &dir)
{
    for (QString &a : args)
        a.replace(u'@', dir.path() + u'/');
    return args;
}

} // namespace

class VxeditTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void parse_data()
    {
        QTest::addColumn<QByteArray>("data");
        QTest::addColumn<bool>("csv");
        QTest::addColumn<Rows>("rows");
        QTest::addColumn<QList<int>>("lines");
        QTest::addColumn<QString>("error");
        auto row = [](const char *name, const QByteArray &data, bool csv, const Rows &rows, QList<int> lines,
                      const QString &error = {}) { QTest::newRow(name) << data << csv << rows << lines << error; };
        row("tsv with and without notes", "der Hund\tthe dog\tpl. die Hunde\ndie Katze\tthe cat\n", false,
            {{u"der Hund"_s, u"the dog"_s, u"pl. die Hunde"_s}, {u"die Katze"_s, u"the cat"_s}}, {1, 2});
        row("bom, windows line ends, blank lines", "\xEF\xBB\xBFgr\xC3\xBCn\tgreen\r\n\r\nrot\tred\r\n", false,
            {{u"grün"_s, u"green"_s}, {u"rot"_s, u"red"_s}}, {1, 3});
        row("a carriage return last of all", "rot\tred\r", false, {{u"rot"_s, u"red\r"_s}}, {1});
        row("header lines of an export", "#separator:tab\n#html:false\nja\tyes\n#not a header\tx\n", false,
            {{u"ja"_s, u"yes"_s}, {u"#not a header"_s, u"x"_s}}, {3, 4});
        row("csv quoting", "\"Hallo, Welt\",\"hello, \"\"world\"\"\",note\n\"zwei\nZeilen\",two lines,\r\nplain,text\n",
            true,
            {{u"Hallo, Welt"_s, u"hello, \"world\""_s, u"note"_s},
             {u"zwei\nZeilen"_s, u"two lines"_s, QString()},
             {u"plain"_s, u"text"_s}},
            {1, 2, 4});
        row("csv without final line end", "a,b", true, {{u"a"_s, u"b"_s}}, {1});
        row("csv quoted line break with windows end", "\"x\r\ny\",z\r\n", true, {{u"x\ny"_s, u"z"_s}}, {1});
        // The text is read a megabyte at a time; a field may go on across.
        const QByteArray longField = QByteArray("x\n").repeated(600000);
        row("csv field longer than a megabyte", "\"" + longField + "\",y\nz,w\n", true,
            {{QString::fromLatin1(longField), u"y"_s}, {u"z"_s, u"w"_s}}, {1, 600002});
        row("csv quoted line break after stray returns", "\"x\r\r\ny\",z\r\nw\r\r\n", true,
            {{u"x\ny"_s, u"z"_s}, {u"w\r"_s}}, {1, 3});
        row("not utf-8", "a\tb\nGr\xFCn\tgreen\n", false, {}, {}, u"line 2: the text is not UTF-8"_s);
        row("not utf-8 after the first megabyte", QByteArray("a\tb\n").repeated(300000) + "c\t\xC3\n", false, {}, {},
            u"line 300001: the text is not UTF-8"_s);
        row("open quote", "a,b\n\"never closed,x\n", true, {}, {}, u"line 2: a quoted field is never closed"_s);
    }
    void parse()
    {
        QFETCH(QByteArray, data);
        QFETCH(bool, csv);
        QFETCH(Rows, rows);
        QFETCH(QList<int>, lines);
        QFETCH(QString, error);
        std::vector<cardtext::Row> parsed;
        QString why;
        QCOMPARE(cardtext::Parse(data, csv ? cardtext::Format::Csv : cardtext::Format::Tsv, parsed, &why),
                 error.isEmpty());
        QCOMPARE(why, error);
        if (!error.isEmpty())
            return;
        Rows got;
        QList<int> gotLines;
        for (const auto &r : parsed)
            got << r.fields, gotLines << r.line;
        QCOMPARE(got, rows);
        QCOMPARE(gotLines, lines);
    }

    void htmlToText_data()
    {
        QTest::addColumn<QString>("html");
        QTest::addColumn<QString>("text");
        QTest::newRow("plain") << u"Haus"_s << u"Haus"_s;
        QTest::newRow("tags and named characters") << u"<b class=\"x\">Gr&uuml;n</b>"_s << u"Grün"_s;
        QTest::newRow("tags that break lines") << u"green<br/>colour</DIV>x< /p >y</li>z"_s << u"green colour x y z"_s;
        QTest::newRow("names that only begin alike") << u"a<brx>b</pre>c</div2>d"_s << u"abcd"_s;
        QTest::newRow("what an entity gives is text") << u"&lt;b&gt;x&amp;lt;"_s << u"<b>x&lt;"_s;
        QTest::newRow("entities in any case") << u"a&NBSP;b&Lt;&QUOT;&AMP;&Apos;"_s << u"a b<\"&'"_s;
        QTest::newRow("named characters in their case") << u"&Auml;&auml;&AUML;&szlig"_s << u"Ää&AUML;&szlig"_s;
        QTest::newRow("numbers") << u"&#252;&#xFC;&#39;&#0;&#1a;&#x110000;&#X41;&#x;&#99999999999;"_s
                                 << u"üü'&#X41;&#x;"_s;
        QTest::newRow("what is no tag or entity") << u"a > b && c < d;"_s << u"a > b && c < d;"_s;
        QTest::newRow("blanks") << u"  a&nbsp;&nbsp;\t\n b  "_s << u"a b"_s;
    }
    void htmlToText()
    {
        QFETCH(QString, html);
        QFETCH(QString, text);
        QCOMPARE(cardtext::HtmlToText(html), text);
    }

    // Column names in a list's first line, and the real cards that must stay cards.
    void headerRow_data()
    {
        QTest::addColumn<QString>("line"); // fields separated by '|'
        // "meta 0": column 0 is bookkeeping; "named": the file's "#columns:" line names them
        QTest::addColumn<QString>("layout");
        QTest::addColumn<bool>("header");
        // Each row: its name, the line, whether it is column names and the layout, '#' between.
        for (const char16_t *row :
             {u"question, answer#question|answer#1", u"case and blanks# FRONT |Back\t#1",
              u"spelt apart#Side_1|side-2#1", u"mixed names#Term|Translation#1", u"german#Wort|Übersetzung#1",
              u"french, accent left off#Question|Reponse#1", u"spanish#Pregunta|Respuesta#1",
              u"russian#Слово|Перевод#1", u"with a note column#front|back|Notes#1", u"empty third field#front|back|#1",
              u"after a bookkeeping column#Deck|Front|Back#1#meta 0", u"card#der Hund|the dog#0",
              u"card of two languages#Frage|question#0", u"sides swapped#answer|question#0",
              u"names inside a text#the question|answer#0", u"third field a card's note#front|back|Hund#0",
              u"one field#question#0", u"columns named by the file#front|back#0#named"}) {
            const QStringList parts = QString::fromUtf16(row).split(u'#');
            QTest::newRow(qPrintable(parts[0])) << parts[1] << parts.value(3) << (parts[2] == u"1"_s);
        }
    }
    void headerRow()
    {
        QFETCH(QString, line);
        QFETCH(QString, layout);
        QFETCH(bool, header);
        const QStringList fields = line.split(u'|');
        cardtext::Layout given;
        given.columnNames = layout == u"named"_s ? fields : QStringList();
        given.metaColumns = layout == u"meta 0"_s ? QList<int> {0} : QList<int>();
        QCOMPARE(headerrow::Detect(fields, given), header);
    }

    void importDumpExportRoundTrip()
    {
        QTemporaryDir dir;
        const QString src = dir.filePath(u"words.csv"_s);
        WriteFileBytes(src,
                       "\xEF\xBB\xBF"
                       "der Apfel,the apple,\"pl. die \xC3\x84pfel\"\r\n"
                       "Grasc(252)n,green\r\n\"Komma, bitte\",\"comma, please\",\"\"\"quoted\"\"\"\r\n");
        const QString zel = dir.filePath(u"out.zel"_s);
        const RunResult imported = run({u"import"_s, src, u"-o"_s, zel, u"--title"_s, u"Obst & Farben"_s});
        QCOMPARE(imported.err, QString());
        QCOMPARE(imported.status, 0);

        // The file the study program reads, and what dump shows of it.
        const QByteArray file = ReadFileBytes(zel);
        QCOMPARE(file,
                 bytes::header(kChapter, 4, 3, "Obst & Farben") + bytes::placeholder()
                         + bytes::entry("der Apfel", -1, "the apple", 0, "pl. die \xC4pfel")
                         + bytes::entry("Grasc(252)n", -1, "green", 0, {})
                         + bytes::entry("Komma, bitte", -1, "comma, please", 0, "\"quoted\""));
        QCOMPARE(run({u"dump"_s, zel}).out,
                 QByteArray(R"({
  "description": "generated automatically by the Vocabrix Editor v1.21",
  "format": 4,
  "count": 3,
  "title": "Obst & Farben",
  "reserved": "",
  "encoding": "Windows-1252",
  "entries": [
    {"key": "", "is_text": 0, "text": "", "number": 0, "note": ""},
    {"key": "der Apfel", "is_text": -1, "text": "the apple", "number": 0, "note": "pl. die Äpfel"},
    {"key": "Grasc(252)n", "is_text": -1, "text": "green", "number": 0, "note": ""},
    )"
                            "{\"key\": \"Komma, bitte\", \"is_text\": -1, \"text\": \"comma, please\", \"number\": 0, "
                            "\"note\": \"\\\"quoted\\\"\"}\n  ]\n}\n"));

        // Export and import again: the same cards, byte for byte.
        const QString tsv = dir.filePath(u"back.tsv"_s);
        QCOMPARE(run({u"export"_s, zel, u"-o"_s, tsv}).status, 0);
        QCOMPARE(ReadFileBytes(tsv),
                 QByteArray("der Apfel\tthe apple\tpl. die \xC3\x84pfel\nGrasc(252)n\tgreen\n"
                            "Komma, bitte\tcomma, please\t\"quoted\"\n"));
        const QString again = dir.filePath(u"again.zel"_s);
        QCOMPARE(run({u"import"_s, tsv, u"-o"_s, again, u"--title"_s, u"Obst & Farben"_s}).status, 0);
        QCOMPARE(ReadFileBytes(again), file);

        // To standard output, and as CSV.
        QCOMPARE(run({u"export"_s, zel}).out, ReadFileBytes(tsv));
        const QString csv = dir.filePath(u"back.csv"_s);
        QCOMPARE(run({u"export"_s, zel, u"-o"_s, csv}).status, 0);
        QVERIFY(ReadFileBytes(csv).contains("\"Komma, bitte\",\"comma, please\",\"\"\"quoted\"\"\""));
    }

    // A first card that reads like a header line is quoted in CSV, and comes
    // back the same (a tab-separated file refuses it).
    void firstCardLikeAHeaderLine()
    {
        QTemporaryDir dir;
        const QByteArray chapter = bytes::header("generated automatically by the Vocabrix Editor v1.21", 4, 2)
                + bytes::placeholder() + bytes::entry("#deck:Spanisch", -1, "b", 0, {})
                + bytes::entry("c", -1, "d", 0, {});
        const QString zel = dir.filePath(u"h.zel"_s);
        WriteFileBytes(zel, chapter);
        QCOMPARE(run({u"export"_s, zel, u"-o"_s, dir.filePath(u"h.csv"_s)}).status, 0);
        QCOMPARE(ReadFileBytes(dir.filePath(u"h.csv"_s)), QByteArray("\"#deck:Spanisch\",b\nc,d\n"));
        QCOMPARE(run({u"import"_s, dir.filePath(u"h.csv"_s), u"-o"_s, dir.filePath(u"again.zel"_s)}).status, 0);
        QCOMPARE(ReadFileBytes(dir.filePath(u"again.zel"_s)), chapter);
    }

    // Refused with one line and status 1; no file is written, half-written or
    // changed. '@' stands for the folder.
    void refusals_data()
    {
        QTest::addColumn<QString>("name");       // the file read
        QTest::addColumn<QByteArray>("content"); // null: no such file
        QTest::addColumn<QStringList>("args");
        QTest::addColumn<QString>("message");
        QTest::addColumn<QByteArray>("existing"); // @out.zel before; null: none
        auto import = [](const char *row, const QString &name, const QByteArray &content, const QString &message,
                         const QByteArray &existing = {}) {
            QTest::newRow(row) << name << content << QStringList {u"import"_s, u"@"_s + name, u"-o"_s, u"@out.zel"_s}
                               << u"vxedit: @"_s + name + u": "_s + message + u'\n' << existing;
        };
        auto read = [](const char *row, const QString &verb, const QByteArray &content, const QString &message) {
            QTest::newRow(row) << u"f.zel"_s << content << QStringList {verb, u"@f.zel"_s}
                               << u"vxedit: @f.zel: "_s + message + u'\n' << QByteArray();
        };
        // The output names the input itself, by a link ("@link", "@hard") or by another path.
        auto onto = [](const char *row, const QString &verb, const QString &output) {
            const bool exported = verb == u"export"_s;
            QTest::newRow(row) << (exported ? u"a.zel"_s : u"a.tsv"_s)
                               << (exported ? bytes::header(kChapter, 4, 2) + bytes::placeholder()
                                                   + bytes::entry("a", -1, "b", 0, {})
                                                   + bytes::entry("c", -1, "d", 0, {})
                                            : QByteArray("a\tb\nc\td\n"))
                               << QStringList {verb, exported ? u"@a.zel"_s : u"@a.tsv"_s, u"-o"_s, output}
                               << u"vxedit: "_s + output
                            + (exported
                                       ? u": the output is the chapter being exported; write the cards to another file\n"_s
                                       : u": the output is the list being imported; write the chapter to another file\n"_s)
                               << QByteArray();
        };
        onto("export onto its chapter", u"export"_s, u"@a.zel"_s);
        onto("export onto a link to its chapter", u"export"_s, u"@link"_s);
        onto("export onto its chapter by another path", u"export"_s, u"@sub/../a.zel"_s);
        onto("export onto a hard link of its chapter", u"export"_s, u"@hard"_s);
        onto("import onto its list", u"import"_s, u"@a.tsv"_s);
        onto("import onto a link to its list", u"import"_s, u"@link"_s);
        QTest::newRow("a first card like a header line, to a tab-separated file")
                << u"h.zel"_s
                << bytes::header(kChapter, 4, 2) + bytes::placeholder() + bytes::entry("#deck:Spanisch", -1, "b", 0, {})
                        + bytes::entry("c", -1, "d", 0, {})
                << QStringList {u"export"_s, u"@h.zel"_s, u"-o"_s, u"@h.tsv"_s}
                << u"vxedit: @h.zel: card 1: '#deck:Spanisch' would read back as a header line (export to .csv "
                   "instead)\n"_s
                << QByteArray();
        import("too few fields", u"w.tsv"_s, "a\tb\nonly question\n",
               u"line 2: a card needs a question and an answer separated by a tab"_s);
        import("too few fields, comma-separated", u"w.csv"_s, "a,b\nonly question\n",
               u"line 2: a card needs a question and an answer separated by a comma"_s);
        import("an existing chapter kept", u"w.tsv"_s, "a\tb\nc\n",
               u"line 2: a card needs a question and an answer separated by a tab"_s, "the chapter that was there");
        import("empty answer", u"w.csv"_s, "a,b\nc,\n", u"line 2: the answer is empty"_s);
        import("record too long", u"w.tsv"_s, "a\tb\n" + QByteArray(60, 'q') + "\t" + QByteArray(57, 'a') + "\n",
               u"line 2: the card takes 129 bytes, more than the 128 of a chapter record (question, answer and note "
               "may have 116 bytes together)"_s);
        import("extra field", u"w.tsv"_s, "a\tb\tc\td\n",
               u"line 1: a card has three fields at most (question, answer, note); this line has 4"_s);
        import("not utf-8", u"w.tsv"_s, "a\tb\n\xFF\xFE\tx\n", u"line 2: the text is not UTF-8"_s);
        import("one card", u"w.tsv"_s, "a\tb\n", u"only one card; a chapter needs two to be studied"_s);
        import("nothing", u"w.csv"_s, "\n\n", u"no cards found"_s);
        import("a later Cyrillic card makes an earlier one too long", u"w.tsv"_s,
               QByteArray("\xC3\xBC").repeated(60) + "\tx\n\xD0\xB6\xD1\x83\xD0\xBA\tbeetle\n",
               u"line 1: the card takes 133 bytes in UTF-8, more than the 128 of a chapter record (question, answer "
               "and note may have 116 bytes together) (line 2 makes the chapter UTF-8)"_s);
        QByteArray many;
        for (int i = 1; i <= 32768; ++i)
            many += "q" + QByteArray::number(i) + "\ta\n";
        import("more cards than a chapter holds", u"w.tsv"_s, many + "never read\n",
               u"line 32768: more than 32767 cards; a chapter holds 32767 at most"_s);
        import("more fields than a card list has", u"w.tsv"_s, "a\tb\n" + QByteArray(64, '\t') + "x\n",
               u"line 2: more than 64 fields; a card has a question, an answer and a note"_s);
        read("truncated", u"dump"_s, bytes::header(kChapter, 4, 3),
             u"not a KORVA file, or a damaged one: the file ends after 0 of its 3 entries"_s);
        read("text file", u"export"_s, "hello\n",
             u"not a KORVA file, or a damaged one: the header record is damaged"_s);
        read("settings file", u"export"_s,
             bytes::header("KORVA Database File; KORVA Lite version", 4, 0) + bytes::placeholder(),
             u"not a chapter file (its description is 'KORVA Database File; KORVA Lite version')"_s);
        read("missing file not created", u"dump"_s, QByteArray(), u"no such file"_s);
    }
    void refusals()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, content);
        QFETCH(QStringList, args);
        QFETCH(QString, message);
        QFETCH(QByteArray, existing);
        QTemporaryDir dir;
        if (!content.isNull())
            WriteFileBytes(dir.filePath(name), content);
        if (!existing.isNull())
            WriteFileBytes(dir.filePath(u"out.zel"_s), existing);
        QVERIFY(QDir(dir.path()).mkdir(u"sub"_s));
        if (args.contains(u"@link"_s))
            QVERIFY(QFile::link(dir.filePath(name), dir.filePath(u"link"_s)));
        if (args.contains(u"@hard"_s))
            QCOMPARE(::link(QFile::encodeName(dir.filePath(name)).constData(),
                            QFile::encodeName(dir.filePath(u"hard"_s)).constData()),
                     0);
        const QStringList files = QDir(dir.path()).entryList(QDir::Files | QDir::Hidden);
        const RunResult r = run(withFolder(args, dir));
        QCOMPARE(r.status, 1);
        QCOMPARE(r.err, withFolder({message}, dir)[0]);
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden), files);
        QCOMPARE(ReadFileBytes(dir.filePath(name)), content);
        QCOMPARE(ReadFileBytes(dir.filePath(u"out.zel"_s)), existing);
    }

    // Lists imported (run in their folder): the first line is column names
    // when it reads so, or as told; the chapter is Windows-1252 when that
    // holds every card, else UTF-8, and exports and imports again to the same
    // bytes.
    void importLists_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("option");
        QTest::addColumn<QString>("chapter"); // the encoding dump names, then the questions, '|' between
        QTest::addColumn<QString>("err");
        QTest::addColumn<QByteArray>("file"); // the chapter's bytes; null: not compared
        auto row = [](const char *tag, const QString &name, const QByteArray &content, const QString &option,
                      const QString &chapter, const QString &err = {}, const QByteArray &file = {}) {
            QTest::newRow(tag) << name << content << option << chapter << err << file;
        };
        const QByteArray named = "Question,Answer,Note\nHund,dog,\nKatze,cat,\n";
        const QString told = u"vxedit: w.csv: line 1 is taken as column names, not a card (--no-header reads it as "
                             "a card)\n"_s;
        row("names detected", u"w.csv"_s, named, QString(), u"Windows-1252|Hund|Katze"_s, told);
        row("names read as a card", u"w.csv"_s, named, u"--no-header"_s, u"Windows-1252|Question|Hund|Katze"_s);
        row("names said", u"w.csv"_s, named, u"--header"_s, u"Windows-1252|Hund|Katze"_s);
        row("a card said to be names", u"w.tsv"_s, "Hund\tdog\nKatze\tcat\nMaus\tmouse\n", u"--header"_s,
            u"Windows-1252|Katze|Maus"_s);
        row("names under header lines", u"w.tsv"_s,
            "#html:true\n<b>Vorderseite</b>\tR&uuml;ckseite\nHund\tdog\nKatze\tcat\n", QString(),
            u"Windows-1252|Hund|Katze"_s,
            u"vxedit: w.tsv: line 2 is taken as column names, not a card (--no-header reads it as a card)\n"_s);
        row("names and one card", u"w.csv"_s, "front,back\nHund,dog\n", u"--header"_s, QString(),
            u"vxedit: w.csv: only one card; a chapter needs two to be studied\n"_s);
        row("both said", u"w.csv"_s, named, u"--header --no-header"_s, QString(),
            u"vxedit: --header and --no-header exclude each other; leave both out to have the first line checked "
            "for column names\nusage: vxedit"_s);
        const QByteArray zhuk = "\xD0\xB6\xD1\x83\xD0\xBA", dom = "\xD0\xB4\xD0\xBE\xD0\xBC";
        row("russian list, utf-8 chapter", u"w.tsv"_s, zhuk + "\tbeetle\n" + dom + "\thouse\n", QString(),
            u"UTF-8|жук|дом"_s, QString(),
            bytes::header(kChapter, 4, 2, {}, "utf-8") + bytes::placeholder() + bytes::entry(zhuk, -1, "beetle", 0, {})
                    + bytes::entry(dom, -1, "house", 0, {}));
        row("german list, windows-1252 chapter", u"w.tsv"_s, "Gr\xC3\xBCn\tgreen\nrot\tred\n", QString(),
            u"Windows-1252|Grün|rot"_s, QString(),
            bytes::header(kChapter, 4, 2) + bytes::placeholder() + bytes::entry("Gr\xFCn", -1, "green", 0, {})
                    + bytes::entry("rot", -1, "red", 0, {}));
    }
    void importLists()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, content);
        QFETCH(QString, option);
        QFETCH(QString, chapter);
        QFETCH(QString, err);
        QFETCH(QByteArray, file);
        QTemporaryDir dir;
        QVERIFY(QDir::setCurrent(dir.path()));
        const auto back = qScopeGuard([] { QDir::setCurrent(QDir::tempPath()); });
        WriteFileBytes(name, content);
        const RunResult r =
                run(QStringList {u"import"_s, name, u"-o"_s, u"out.zel"_s} + option.split(u' ', Qt::SkipEmptyParts));
        const bool usage = err.endsWith(u"usage: vxedit"_s);
        QCOMPARE(usage ? r.err.left(err.size()) : r.err, err);
        QCOMPARE(r.status, usage ? 2 : chapter.isEmpty() ? 1 : 0);
        const QJsonObject json = dumpJson(u"out.zel"_s);
        QStringList got {json.value(u"encoding"_s).toString()};
        const QJsonArray entries = json.value(u"entries"_s).toArray();
        for (qsizetype i = 1; i < entries.size(); ++i)
            got << entries[i].toObject().value(u"key"_s).toString();
        QCOMPARE(got.join(u'|'), chapter);
        if (file.isNull())
            return;
        QCOMPARE(ReadFileBytes(u"out.zel"_s), file);
        QCOMPARE(run({u"export"_s, u"out.zel"_s, u"-o"_s, u"back.tsv"_s}).status, 0);
        QCOMPARE(run({u"import"_s, u"back.tsv"_s, u"-o"_s, u"again.zel"_s}).status, 0);
        QCOMPARE(ReadFileBytes(u"again.zel"_s), file);
    }

    void usage_data()
    {
        QTest::addColumn<QStringList>("args");
        for (const char *row :
             {"nothing|", "import without output|import a.tsv", "unknown option|dump --frobnicate x",
              "two files|dump x y", "missing value|import a.tsv -o", "unknown command|frobnicate a.zel",
              "unknown option first|--frobnicate", "header on export|export a.zel --no-header"}) {
            const QStringList parts = QString::fromLatin1(row).split(u'|');
            QTest::newRow(qPrintable(parts[0])) << parts[1].split(u' ', Qt::SkipEmptyParts);
        }
    }
    void usage()
    {
        QFETCH(QStringList, args);
        const RunResult r = run(args);
        QCOMPARE(r.status, 2);
        QVERIFY(r.err.contains(u"usage: vxedit"_s));
    }

    // A mistyped verb must reach the command line (a window needs a display);
    // a file, even a missing one, goes to the window, which says what is wrong.
    void windowOrCommandLine_data()
    {
        QTest::addColumn<QStringList>("args");
        QTest::addColumn<bool>("commandLine");
        for (const char *row : {"nothing||0", "chapter file|words.zel|0", "path without suffix|cards/words|0",
                                "existing file without suffix|notes|0", "verb|export words.zel|1",
                                "mistyped verb|exprot words.zel|1", "option|--version|1"}) {
            const QStringList parts = QString::fromLatin1(row).split(u'|');
            QTest::newRow(qPrintable(parts[0])) << parts[1].split(u' ', Qt::SkipEmptyParts) << (parts[2] == u"1"_s);
        }
    }
    void windowOrCommandLine()
    {
        QFETCH(QStringList, args);
        QFETCH(bool, commandLine);
        QTemporaryDir dir;
        WriteFileBytes(dir.filePath(u"notes"_s), "a\tb\n");
        const QString before = QDir::currentPath();
        QDir::setCurrent(dir.path());
        const bool result = commandline::IsCommandLine(args);
        QDir::setCurrent(before);
        QCOMPARE(result, commandLine);
    }

    // A settings file: numbers, notes and a text, as dump shows them.
    void dumpShowsSettings()
    {
        QTemporaryDir dir;
        const QString master = dir.filePath(u"sys.zel"_s);
        WriteFileBytes(master,
                       bytes::header("KORVA Database File; KORVA Lite version", 4, 3)
                               + bytes::entry({}, 0, {}, 0, "color_metrics") + bytes::entry("flist_count", 0, {}, 1, {})
                               + bytes::entry("flist_name_1", -1, "/home/anna/ex1.zel", 0, {})
                               + bytes::entry("backcolor_b", 0, {}, 14570825, "color_metrics"));
        const QByteArray out = run({u"dump"_s, master}).out; // the head is as a chapter's
        QCOMPARE(out.mid(out.indexOf("\n    {")), QByteArray(R"(
    {"key": "", "is_text": 0, "text": "", "number": 0, "note": "color_metrics"},
    {"key": "flist_count", "is_text": 0, "text": "", "number": 1, "note": ""},
    {"key": "flist_name_1", "is_text": -1, "text": "/home/anna/ex1.zel", "number": 0, "note": ""},
    {"key": "backcolor_b", "is_text": 0, "text": "", "number": 14570825, "note": "color_metrics"}
  ]
}
)"));
    }

    // `vxedit print`, run as a user runs it: in a terminal without a display.
    void printCommand_data()
    {
        QTest::addColumn<QStringList>("args"); // '@' stands for the folder
        QTest::addColumn<int>("status");
        QTest::addColumn<QStringList>("printed"); // the questions, in order
        QTest::addColumn<QString>("chapters");    // as the header names them
        QTest::addColumn<QString>("err");
        auto row = [](const char *tag, const QString &args, int status, const QString &printed, const QString &chapters,
                      const QString &err = {}) {
            QTest::newRow(tag) << args.split(u' ') << status << printed.split(u' ', Qt::SkipEmptyParts) << chapters
                               << err;
        };
        row("a chapter under its title", u"@chapter.zel -o @out.pdf"_s, 0, u"Hund Katze Tür"_s, u"Tiere"_s);
        row("progress: the trouble cards", u"--trouble-only @progress.vxs -o @out.pdf"_s, 0, u"Katze"_s, u"Tiere"_s);
        row("progress: every card, every chapter", u"@progress.vxs -o @out.pdf"_s, 0, u"Hund Katze Rot"_s,
            u"Tiere, Farben"_s);
        row("a chapter keeps no trouble marks", u"@chapter.zel -o @out.pdf --trouble-only"_s, 1, {}, {},
            u"vxedit: @chapter.zel: a chapter file keeps no trouble marks (a progress file does); leave out "
            "--trouble-only to print every card\n"_s);
        row("no trouble card marked", u"@none.vxs -o @out.pdf --trouble-only"_s, 1, {}, {},
            u"vxedit: @none.vxs: no card is marked as a trouble card; leave out --trouble-only to print all 2\n"_s);
        row("no chapter", u"@other.zel -o @out.pdf"_s, 1, {}, {},
            u"vxedit: @other.zel: not a chapter file (its description is 'x')\n"_s);
        row("a damaged progress file", u"@bad.vxs -o @out.pdf"_s, 1, {}, {},
            u"vxedit: @bad.vxs: not a progress file, or a damaged one: "_s);
        row("a folder as the output", u"@chapter.zel -o @"_s, 1, {}, {}, u"vxedit: @: "_s);
        row("no output", u"@chapter.zel"_s, 2, {}, {}, u"vxedit: print needs -o OUT.pdf\nusage:"_s);
    }
    void printCommand()
    {
        QFETCH(QStringList, args);
        QFETCH(int, status);
        QFETCH(QStringList, printed);
        QFETCH(QString, chapters);
        QFETCH(QString, err);
        QTemporaryDir dir;
        writeSources(dir);
        QProcess p;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        for (const char *name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM", "XDG_RUNTIME_DIR"})
            env.remove(QString::fromLatin1(name));
        p.setProcessEnvironment(env);
        p.start(QStringLiteral(VXEDIT_BINARY), QStringList {u"print"_s} + withFolder(args, dir));
        QVERIFY(p.waitForFinished(60000));
        QCOMPARE(p.exitCode(), status);
        QVERIFY2(QString::fromUtf8(p.readAllStandardError()).startsWith(withFolder({err}, dir)[0]), qPrintable(err));
        const QString out = dir.filePath(u"out.pdf"_s);
        QCOMPARE(QFileInfo::exists(out), status == 0);
        if (status != 0)
            return;
        const PdfText pdf = ReadPdf(out);
        QVERIFY(pdf.read);
        QStringList got;
        for (const PdfWord &w : pdf.words)
            if (QStringList({u"Hund"_s, u"Katze"_s, u"Tür"_s, u"Rot"_s}).contains(w.text))
                got << w.text;
        QCOMPARE(got, printed);
        QVERIFY(pdf.page(1).contains(chapters));
        QVERIFY(pdf.page(1).contains(QLocale().toString(QDate::currentDate(), QLocale::LongFormat)));
    }

    // The languages kept beside a chapter come with its cards; a damaged file
    // is logged and left out, and the chapter loads as before.
    void chapterLanguages_data()
    {
        QTest::addColumn<QByteArray>("file");   // null: none; "/": a folder in its place
        QTest::addColumn<QString>("languages"); // "question,answer"
        QTest::addColumn<QString>("why");
        QTest::newRow("none") << QByteArray() << u","_s << QString();
        QTest::newRow("both, with comments, blanks and CRLF")
                << QByteArray("# x\r\nquestion = de\r\n\r\nanswer=en_gb\r\n") << u"de,en-GB"_s << QString();
        QTest::newRow("not a language") << QByteArray("question=klingonisch\n") << u","_s
                                        << u"'klingonisch' is not a language (try a tag such as de or en-GB)"_s;
        QTest::newRow("not UTF-8") << QByteArray("question=d\xFF\n") << u","_s << u"the text is not UTF-8"_s;
        QTest::newRow("a folder in its place") << QByteArray("/") << u","_s << u"it is a folder, not a file"_s;
    }
    void chapterLanguages()
    {
        QFETCH(QByteArray, file);
        QFETCH(QString, languages);
        QFETCH(QString, why);
        TestEnvironment env;
        FlushData(true);
        const QByteArray chapter = bytes::header(kChapter, 4, 2) + bytes::placeholder()
                + bytes::entry("Hund", -1, "dog", 0, "") + bytes::entry("Katze", -1, "cat", 0, "");
        WriteFileBytes(env.path(u"a.zel"_s), chapter);
        if (file == "/")
            QDir().mkpath(env.path(u"a.zel.lang"_s));
        else if (!file.isNull())
            WriteFileBytes(env.path(u"a.zel.lang"_s), file);
        g_Deck.SetLanguages(u"A"_s, {u"fr"_s, u"fr"_s}); // what an earlier load left
        env.log->clear();
        LoadChapterFile(env.path(u"a.zel"_s), u"A"_s);
        QCOMPARE(g_Deck.UBound(), 2);
        QCOMPARE(g_Deck[1].question, u"Katze"_s);
        const ChapterLanguages got = g_Deck.Languages(u"A"_s);
        QCOMPARE(got.question + u',' + got.answer, languages);
        QStringList log {u"file loaded; using 30 bytes of memory/n"_s};
        if (!why.isEmpty())
            log << u" .. languages left out: a.zel.lang: "_s + why + u"/n"_s;
        QCOMPARE(env.logLines(), log);
        QVERIFY(env.prompter.boxes.empty());
        QCOMPARE(ReadFileBytes(env.path(u"a.zel"_s)), chapter);
    }

    // `vxedit languages`: the file beside a chapter shown, set and cleared;
    // the chapter itself never written.
    void languagesCommand_data()
    {
        QTest::addColumn<QByteArray>("before"); // the file beside the chapter; null: none
        QTest::addColumn<QStringList>("args");
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("out");
        QTest::addColumn<QByteArray>("after");
        const QByteArray kept = "question=de\nanswer=en\n";
        const QByteArray head = "# Vocabrix: the languages this chapter's cards are spoken in\n";
        QTest::newRow("shown") << kept << QStringList() << 0 << QString::fromUtf8(kept) << kept;
        QTest::newRow("set, a region written right") << QByteArray() << QStringList {u"--set"_s, u"de,EN_gb"_s} << 0
                                                     << QString() << head + "question=de\nanswer=en-GB\n";
        QTest::newRow("cleared") << kept << QStringList {u"--clear"_s} << 0 << QString() << QByteArray();
        QTest::newRow("no language: nothing written")
                << kept << QStringList {u"--set"_s, u"xx,en"_s} << 2 << QString() << kept;
        QTest::newRow("a damaged file is told")
                << QByteArray("question de\n") << QStringList() << 1 << QString() << QByteArray("question de\n");
    }
    void languagesCommand()
    {
        QFETCH(QByteArray, before);
        QFETCH(QStringList, args);
        QFETCH(int, status);
        QFETCH(QString, out);
        QFETCH(QByteArray, after);
        QTemporaryDir dir;
        writeSources(dir);
        const QString chapter = dir.filePath(u"chapter.zel"_s), beside = chapter + u".lang"_s;
        const QByteArray chapterBytes = ReadFileBytes(chapter);
        if (!before.isNull())
            WriteFileBytes(beside, before);
        const RunResult r = run(QStringList {u"languages"_s, chapter} + args);
        QCOMPARE(r.status, status);
        QCOMPARE(QString::fromUtf8(r.out), out);
        QCOMPARE(r.err.isEmpty(), status == 0);
        QCOMPARE(QFileInfo::exists(beside), !after.isNull());
        QCOMPARE(ReadFileBytes(beside), after);
        QCOMPARE(ReadFileBytes(chapter), chapterBytes);

        const QString other = dir.filePath(u"other.zel"_s);
        QCOMPARE(run({u"languages"_s, other, u"--set"_s, u"de,en"_s}).status, 1);
        QVERIFY(!QFileInfo::exists(other + u".lang"_s));
    }
};

QTEST_GUILESS_MAIN(VxeditTest)
#include "tst_vxedit.moc"
