// SPDX-License-Identifier: GPL-3.0-or-later
#include "cardtext.h"
#include "vxeditrun.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QScopeGuard>

using Rows = QList<QStringList>;

class CardListsTest : public QObject
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
        row("the last line without its end", "ja\tyes\nnein", false, {{u"ja"_s, u"yes"_s}, {u"nein"_s}}, {1, 2});
        row("header lines of an export", "#separator:tab\n#html:false\nja\tyes\n#not a header\tx\n", false,
            {{u"ja"_s, u"yes"_s}, {u"#not a header"_s, u"x"_s}}, {3, 4});
        row("csv quoting", "\"Hallo, Welt\",\"hello, \"\"world\"\"\",note\n\"zwei\nZeilen\",two lines,\r\nplain,text\n",
            true,
            {{u"Hallo, Welt"_s, u"hello, \"world\""_s, u"note"_s},
             {u"zwei\nZeilen"_s, u"two lines"_s, QString()},
             {u"plain"_s, u"text"_s}},
            {1, 2, 4});
        // The text is read a megabyte at a time; a field may go on across.
        const QByteArray longest(65535, 'x'), across = QByteArray("y\n").repeated(30000);
        const QString longestText = QString::fromLatin1(longest);
        row("csv field across the first megabyte",
            (longest + ',').repeated(15) + QByteArray(40000, 'x') + "\n\"" + across + "\",z\nw\n", true,
            {QStringList(15, longestText) << QString(40000, u'x'), {QString::fromLatin1(across), u"z"_s}, {u"w"_s}},
            {1, 2, 30003});
        const QString tooLong = u"line %1: a field of more than 65,535 characters; no card holds that much"_s;
        row("a field of 65,536 characters, named before a later one", "a,b\n" + longest + "x,y\n" + longest + "xx\n",
            true, {}, {}, tooLong.arg(2));
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

    void htmlToText()
    {
        const std::pair<QString, QString> cases[] = {
                {u"<b class=\"x\">Gr&uuml;n</b><>"_s, u"Grün"_s},
                {u"green<br/>colour</DIV>x< /p >y</li>z"_s, u"green colour x y z"_s}, // tags that break lines
                {u"a<brx>b</pre>c</div2>d"_s, u"abcd"_s},                             // names that only begin alike
                {u"&lt;b&gt;x&amp;lt;"_s, u"<b>x&lt;"_s},                             // what an entity gives is text
                {u"a&NBSP;b&Lt;&QUOT;&AMP;&Apos;"_s, u"a b<\"&'"_s},                  // entities in any case
                {u"&Auml;&auml;&AUML;&szlig"_s, u"Ää&AUML;&szlig"_s},                 // named characters in their case
                {u"&#252;&#xFC;&#39;&#0;&#1a;&#x110000;&#X41;&#x;&#99999999999;"_s, u"üü'&#X41;&#x;"_s},
                {u"a > b && c < d;"_s, u"a > b && c < d;"_s}, // what is no tag or entity
                {u"  a&nbsp;&nbsp;\t\n b  "_s, u"a b"_s},
        };
        for (const auto &[html, text] : cases)
            QCOMPARE(cardtext::HtmlToText(html), text);
    }

    // Lists imported (run in their folder): the first line is column names
    // when it reads so; the chapter is Windows-1252 when that holds every
    // card, else UTF-8. It exports as the list it came from and imports
    // again to the same bytes.
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
        row("names detected", u"w.csv"_s, "Question,Answer,Note\nHund,dog,\nKatze,cat,\n", QString(),
            u"Windows-1252|Hund|Katze"_s,
            u"vxedit: w.csv: line 1 is taken as column names, not a card (--no-header reads it as a card)\n"_s);
        row("another program's export, marked at its start", u"deck.txt"_s,
            "\xEF\xBB\xBF#separator:tab\n#deck column:1\nObst\tApfel\tapple\nObst\tBirne\tpear\n", QString(),
            u"Windows-1252|Apfel|Birne"_s);
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
        QCOMPARE(r.err, err);
        QCOMPARE(r.status, 0);
        const QJsonObject json = QJsonDocument::fromJson(run({u"dump"_s, u"out.zel"_s}).out).object();
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
        QCOMPARE(run(QStringList {u"import"_s, back, u"-o"_s, u"again.zel"_s} + options).status, 0);
        QCOMPARE(ReadFileBytes(u"again.zel"_s), file);
    }
};

QTEST_GUILESS_MAIN(CardListsTest)
#include "tst_cardlists.moc"
