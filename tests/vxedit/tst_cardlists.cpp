// SPDX-License-Identifier: GPL-3.0-or-later
#include "cardtext.h"
#include "chapterrules.h"
#include "headerrow.h"
#include "vxeditrun.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QScopeGuard>

namespace {

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

} // namespace

class CardListsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // What keeps a card out of a chapter, the first of it found.
    void cardChecks_data()
    {
        QTest::addColumn<QStringList>("card"); // question, answer, note
        QTest::addColumn<QString>("why");      // empty: it may be saved
        const QString cannot = u", which a chapter file cannot store"_s;
        QTest::newRow("fine") << QStringList({u"Hund"_s, u"dog"_s, u"m."_s}) << QString();
        QTest::newRow("a character outside the first plane")
                << QStringList({u"\U0001F600"_s, u"smile"_s, QString()}) << QString();
        QTest::newRow("no question") << QStringList({QString(), u"dog"_s, QString()}) << u"the question is empty"_s;
        QTest::newRow("no answer") << QStringList({u"Hund"_s, QString(), QString()}) << u"the answer is empty"_s;
        QTest::newRow("half a character in the answer")
                << QStringList({u"Hund"_s, u"d\xD83Dg"_s, u"\xDE00"_s}) << u"the answer holds U+D83D"_s + cannot;
        QTest::newRow("half a character in the note")
                << QStringList({u"Hund"_s, u"dog"_s, u"\xDE00"_s}) << u"the note holds U+DE00"_s + cannot;
    }
    void cardChecks()
    {
        QFETCH(QStringList, card);
        QFETCH(QString, why);
        QCOMPARE(chapterrules::CheckCard(card[0], card[1], card[2], korva::Encoding::Cp1252), why);
    }

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
        const QByteArray longest(65535, 'x'), across = QByteArray("y\n").repeated(30000);
        const QString longestText = QString::fromLatin1(longest);
        row("csv field across the first megabyte",
            (longest + ',').repeated(15) + QByteArray(40000, 'x') + "\n\"" + across + "\",z\nw\n", true,
            {QStringList(15, longestText) << QString(40000, u'x'), {QString::fromLatin1(across), u"z"_s}, {u"w"_s}},
            {1, 2, 30003});
        const QString tooLong = u"line %1: a field of more than 65,535 characters; no card holds that much"_s;
        row("a field of 65,535 characters", longest + ",y\n", true, {{longestText, u"y"_s}}, {1});
        row("a field of 65,536 characters, named before a later one", "a,b\n" + longest + "x,y\n" + longest + "xx\n",
            true, {}, {}, tooLong.arg(2));
        row("the same, last without its line end", "a,b\n" + longest + 'x', true, {}, {}, tooLong.arg(2));
        row("a quoted field of many lines", "a,b\n\"" + QByteArray("x\n").repeated(40000) + "\"\n", true, {}, {},
            tooLong.arg(2));
        row("csv quoted line break after stray returns", "\"x\r\r\ny\",z\r\nw\r\r\n", true,
            {{u"x\ny"_s, u"z"_s}, {u"w\r"_s}}, {1, 3});
        row("not utf-8", "a\tb\nGr\xFCn\tgreen\n", false, {}, {}, u"line 2: the text is not UTF-8"_s);
        row("not utf-8 on a last line without its end", "a\tb\nGr\xFCn", false, {}, {},
            u"line 2: the text is not UTF-8"_s);
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
        if (!error.isEmpty()) {
            QCOMPARE(parsed.size(), size_t(0)); // not even the rows before the fault
            return;
        }
        Rows got;
        QList<int> gotLines;
        for (const auto &r : parsed)
            got << r.fields, gotLines << r.line;
        QCOMPARE(got, rows);
        QCOMPARE(gotLines, lines);
    }

    // A plain .txt is read with the separator its first twenty lines use, a tab
    // before any other; other names keep their own. Beside a tab, fields may be quoted.
    void detectLayout_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("data");
        QTest::addColumn<QString>("delimiter");
        QTest::newRow("one line of semicolons") << u"l.txt"_s << QByteArray("Hund;dog\n") << u";"_s;
        QTest::newRow("commas") << u"l.txt"_s << QByteArray("a,b\nc,d\n") << u","_s;
        QTest::newRow("as many semicolons as commas") << u"l.txt"_s << QByteArray("a;b,c\n") << u";"_s;
        QTest::newRow("a tab first of all") << u"l.txt"_s << QByteArray("a\tb;c;d\n") << u"\t"_s;
        QTest::newRow("a semicolon after twenty lines") << u"l.txt"_s << QByteArray("x\n").repeated(20) + "a;b\n"
                                                        << u"\t"_s;
        QTest::newRow("a .tsv keeps its tab") << u"l.tsv"_s << QByteArray("a;b\n") << u"\t"_s;
        QTest::newRow("a .csv its comma") << u"l.csv"_s << QByteArray("a;b\n") << u","_s;
    }
    void detectLayout()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, data);
        QFETCH(QString, delimiter);
        const cardtext::Layout layout = cardtext::DetectLayout(data, name);
        QCOMPARE(QString(layout.delimiter), delimiter);
        QCOMPARE(layout.quoted, delimiter != u"\t"_s);
    }

    void htmlToText_data()
    {
        QTest::addColumn<QString>("html");
        QTest::addColumn<QString>("text");
        QTest::newRow("plain") << u"Haus"_s << u"Haus"_s;
        QTest::newRow("tags and named characters") << u"<b class=\"x\">Gr&uuml;n</b><>"_s << u"Grün"_s;
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

    // Lists imported (run in their folder): the first line is column names
    // when it reads so, or as told; the chapter is Windows-1252 when that
    // holds every card, else UTF-8. It exports as the list it came from
    // (a first card like a header line quoted in CSV) and imports again to
    // the same bytes.
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
        row("another program's export: its deck column is not card text", u"w.txt"_s,
            "#separator:tab\n#html:false\n#deck column:1\nSpanisch\tperro\tdog\nSpanisch\tgato\tcat\n", QString(),
            u"Windows-1252|perro|gato"_s);
        const QByteArray zhuk = "\xD0\xB6\xD1\x83\xD0\xBA", dom = "\xD0\xB4\xD0\xBE\xD0\xBC";
        row("russian list, utf-8 chapter", u"w.tsv"_s, zhuk + "\tbeetle\n" + dom + "\thouse\n", QString(),
            u"UTF-8|жук|дом"_s, QString(),
            bytes::header(kChapter, 4, 2, {}, "utf-8") + bytes::placeholder() + bytes::entry(zhuk, -1, "beetle", 0, {})
                    + bytes::entry(dom, -1, "house", 0, {}));
        row("german list with notes and a title, windows-1252 chapter", u"w.tsv"_s,
            "der Apfel\tthe apple\tpl. die \xC3\x84pfel\nGrasc(252)n\tgreen\nKomma, bitte\tcomma, please\t\"quoted\"\n",
            u"--title Obst&Farben"_s, u"Windows-1252|der Apfel|Grasc(252)n|Komma, bitte"_s, QString(),
            bytes::header(kChapter, 4, 3, "Obst&Farben") + bytes::placeholder()
                    + bytes::entry("der Apfel", -1, "the apple", 0, "pl. die \xC4pfel")
                    + bytes::entry("Grasc(252)n", -1, "green", 0, {})
                    + bytes::entry("Komma, bitte", -1, "comma, please", 0, "\"quoted\""));
        row("a first card like a header line, csv", u"w.csv"_s, "\"#deck:Spanisch\",\"comma, \"\"quoted\"\"\"\nc,d\n",
            QString(), u"Windows-1252|#deck:Spanisch|c"_s, QString(),
            bytes::header(kChapter, 4, 2) + bytes::placeholder()
                    + bytes::entry("#deck:Spanisch", -1, "comma, \"quoted\"", 0, {})
                    + bytes::entry("c", -1, "d", 0, {}));
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
        const auto home = qScopeGuard([] { QDir::setCurrent(QDir::tempPath()); });
        WriteFileBytes(name, content);
        const QStringList options = option.split(u' ', Qt::SkipEmptyParts);
        const RunResult r = run(QStringList {u"import"_s, name, u"-o"_s, u"out.zel"_s} + options);
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
        const QString back = u"back."_s + QFileInfo(name).suffix();
        QCOMPARE(run({u"export"_s, u"out.zel"_s, u"-o"_s, back}).status, 0);
        QCOMPARE(ReadFileBytes(back), content);
        if (back.endsWith(u".tsv"_s)) // and so to standard output
            QCOMPARE(run({u"export"_s, u"out.zel"_s}).out, content);
        QCOMPARE(run(QStringList {u"import"_s, back, u"-o"_s, u"again.zel"_s} + options).status, 0);
        QCOMPARE(ReadFileBytes(u"again.zel"_s), file);
    }
};

QTEST_GUILESS_MAIN(CardListsTest)
#include "tst_cardlists.moc"
