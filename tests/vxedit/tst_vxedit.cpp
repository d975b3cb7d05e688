// SPDX-License-Identifier: GPL-3.0-or-later
#include "cards/deck.h"
#include "pdftext.h"
#include "vxeditrun.h"

#include <QProcess>

namespace {

// The files the print verb reads, byte by byte, in a folder: a chapter
// "Tiere" and a progress file (Katze its one trouble card).
void writeSources(const QTemporaryDir &dir)
{
    using namespace bytes;
    WriteFileBytes(dir.filePath(u"chapter.zel"_s),
                   header(kChapter, 4, 3, "Tiere") + placeholder() + entry("Hund", -1, "dog", 0, "")
                           + entry("Katze", -1, "cat, Kasc(228)tzchen", 0, "")
                           + entry("Tasc(252)r", -1, "door", 0, ""));
    auto card = [](const QByteArray &q, const QByteArray &chapter, qint16 trouble) {
        return text(q) + text("a") + text("") + text("") + i16(trouble) + i16(1) + text(chapter);
    };
    WriteFileBytes(dir.filePath(u"progress.vxs"_s),
                   i16(3) + card("Hund", "Tiere", 0) + card("Katze", "Tiere", -1) + card("Rot", "Farben", 0)
                           + card("", "", 0)); // the deck's empty slot last
}

// A chapter of two cards, the first with this question.
QByteArray chapterOf(const QByteArray &first, const QByteArray &second = "c")
{
    return bytes::header(kChapter, 4, 2) + bytes::placeholder() + bytes::entry(first, -1, "b", 0, {})
            + bytes::entry(second, -1, "d", 0, {});
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
    // Refused with one line and status 1 (2 and the usage for a mistyped
    // command); no file is written, half-written or changed. '@' stands for
    // the folder.
    void refusals_data()
    {
        QTest::addColumn<QString>("name");       // the file read
        QTest::addColumn<QByteArray>("content"); // null: no such file
        QTest::addColumn<QStringList>("args");
        QTest::addColumn<QString>("message");
        QTest::addColumn<QByteArray>("existing"); // @out.zel before; null: none
        auto row = [](const char *tag, const QString &name, const QByteArray &content, const QString &args,
                      const QString &message, const QByteArray &existing = {}) {
            QTest::newRow(tag) << name << content << args.split(u' ') << u"vxedit: "_s + message + u'\n' << existing;
        };
        auto import = [&](const char *tag, const QString &name, const QByteArray &content, const QString &message,
                          const QByteArray &existing = {}) {
            row(tag, name, content, u"import @%1 -o @out.zel"_s.arg(name), u'@' + name + u": "_s + message, existing);
        };
        // The output is the input itself under another name; the file is known by what it
        // is, not by its name, so its own name needs no row of its own.
        row("export onto a link to its chapter", u"a.zel"_s, chapterOf("a"), u"export @a.zel -o @link"_s,
            u"@link: the output is the chapter being exported; write the cards to another file"_s);
        row("a first card like a header line, to a tab-separated file", u"h.zel"_s, chapterOf("#deck:Spanisch"),
            u"export @h.zel -o @h.tsv"_s,
            u"@h.zel: card 1: '#deck:Spanisch' would read back as a header line (export to .csv instead)"_s);
        row("a later card with a tab, to a tab-separated file", u"t.zel"_s, chapterOf("a", "c\td"),
            u"export @t.zel -o @t.tsv"_s,
            u"@t.zel: card 2: 'c\td' holds a tab or line break, which a tab-separated file cannot carry (export to "
            ".csv instead)"_s);
        row("print: a damaged progress file", u"bad.vxs"_s, bytes::i16(3), u"print @bad.vxs -o @out.pdf"_s,
            u"@bad.vxs: not a progress file, or a damaged one: it ends inside card 1 of 4"_s);
        import("too few fields, an existing chapter kept", u"w.tsv"_s, "a\tb\nonly question\n",
               u"line 2: a card needs a question and an answer separated by a tab"_s, "the chapter that was there");
        import("empty answer", u"w.csv"_s, "a,b\nc,\n", u"line 2: the answer is empty"_s);
        import("one card", u"w.tsv"_s, "a\tb\n", u"only one card; a chapter needs two to be studied"_s);
        import("a later Cyrillic card makes an earlier one too long", u"w.tsv"_s,
               QByteArray("\xC3\xBC").repeated(60) + "\tx\n\xD0\xB6\xD1\x83\xD0\xBA\tbeetle\n",
               u"line 1: the card takes 133 bytes in UTF-8, more than the 128 of a chapter record (question, answer "
               "and note may have 116 bytes together) (line 2 makes the chapter UTF-8)"_s);
        row("truncated", u"f.zel"_s, bytes::header(kChapter, 4, 3), u"dump @f.zel"_s,
            u"@f.zel: not a KORVA file, or a damaged one: the file ends after 0 of its 3 entries"_s);
        // Mistakes in the command itself: the usage follows, status 2.
        for (const char *usage :
             {"nothing||nothing to do", "unknown option|dump --frobnicate x|unknown option --frobnicate",
              "not a language|languages a.zel --set xx,en|'xx' is not a language (try a tag such as de or en-GB)"}) {
            const QStringList parts = QString::fromLatin1(usage).split(u'|');
            QTest::newRow(qPrintable(parts[0]))
                    << u"f.zel"_s << QByteArray() << parts[1].split(u' ', Qt::SkipEmptyParts)
                    << u"vxedit: "_s + parts[2] + u"\nusage: vxedit"_s << QByteArray();
        }
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
        if (args.contains(u"@link"_s))
            QVERIFY(QFile::link(dir.filePath(name), dir.filePath(u"link"_s)));
        const QStringList files = QDir(dir.path()).entryList(QDir::Files | QDir::Hidden);
        const RunResult r = run(withFolder(args, dir));
        const bool usage = message.endsWith(u"usage: vxedit"_s);
        QCOMPARE(r.status, usage ? 2 : 1);
        QCOMPARE(usage ? r.err.left(message.size()) : r.err, withFolder({message}, dir)[0]);
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden), files);
        QCOMPARE(ReadFileBytes(dir.filePath(name)), content);
        QCOMPARE(ReadFileBytes(dir.filePath(u"out.zel"_s)), existing);
    }

    // `vxedit print`, run as a user runs it: in a terminal without a display
    // (its refusals are among the others above).
    void printCommand_data()
    {
        QTest::addColumn<QStringList>("args");    // '@' stands for the folder
        QTest::addColumn<QStringList>("printed"); // the questions, in order
        QTest::addColumn<QString>("chapters");    // as the header names them
        auto row = [](const char *tag, const QString &args, const QString &printed, const QString &chapters) {
            QTest::newRow(tag) << args.split(u' ') << printed.split(u' ') << chapters;
        };
        row("a chapter under its title", u"@chapter.zel -o @out.pdf"_s, u"Hund Katze Tür"_s, u"Tiere"_s);
        row("progress: the trouble cards", u"--trouble-only @progress.vxs -o @out.pdf"_s, u"Katze"_s, u"Tiere"_s);
        row("progress: every card, every chapter", u"@progress.vxs -o @out.pdf"_s, u"Hund Katze Rot"_s,
            u"Tiere, Farben"_s);
    }
    void printCommand()
    {
        QFETCH(QStringList, args);
        QFETCH(QStringList, printed);
        QFETCH(QString, chapters);
        QTemporaryDir dir;
        writeSources(dir);
        QProcess p;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        for (const char *name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM", "XDG_RUNTIME_DIR"})
            env.remove(QString::fromLatin1(name));
        p.setProcessEnvironment(env);
        p.start(QStringLiteral(VXEDIT_BINARY), QStringList {u"print"_s} + withFolder(args, dir));
        QVERIFY(p.waitForFinished(60000));
        QVERIFY2(p.exitCode() == 0, p.readAllStandardError().constData());
        const PdfText pdf = ReadPdf(dir.filePath(u"out.pdf"_s));
        QStringList got;
        for (const PdfWord &w : pdf.words)
            if (QStringList({u"Hund"_s, u"Katze"_s, u"Tür"_s, u"Rot"_s}).contains(w.text))
                got << w.text;
        QCOMPARE(got, printed);
        if (args.first().endsWith(u"chapter.zel"_s))
            QVERIFY(pdf.page(1).contains(u"Kätzchen"_s)); // answers spelt out as well
        QVERIFY(pdf.page(1).contains(chapters));
    }

    // The languages kept beside a chapter, as `vxedit languages` shows them
    // and the study program loads them with the chapter's cards; a damaged
    // file is told, and is logged and left out when the chapter loads.
    void chapterLanguages_data()
    {
        QTest::addColumn<QByteArray>("file"); // beside the chapter
        QTest::addColumn<QString>("loaded");  // "question,answer"
        QTest::addColumn<QString>("why");     // told (status 1) and logged as the load leaves them out; empty: not
        QTest::newRow("comments, blanks and CRLF")
                << QByteArray("# x\r\nquestion = de\r\n\r\nanswer=en_gb\r\n") << u"de,en-GB"_s << QString();
        QTest::newRow("not a language") << QByteArray("question=klingonisch\n") << u","_s
                                        << u"'klingonisch' is not a language (try a tag such as de or en-GB)"_s;
    }
    void chapterLanguages()
    {
        QFETCH(QByteArray, file);
        QFETCH(QString, loaded);
        QFETCH(QString, why);
        TestEnvironment env;
        FlushData(true);
        const QString chapter = env.path(u"a.zel"_s);
        WriteFileBytes(chapter, chapterOf("a"));
        WriteFileBytes(chapter + u".lang"_s, file);
        const RunResult r = run({u"languages"_s, chapter});
        QCOMPARE(r.status, why.isEmpty() ? 0 : 1);
        QCOMPARE(QString::fromUtf8(r.out), why.isEmpty() ? u"question=de\nanswer=en-GB\n"_s : QString());
        QCOMPARE(r.err, why.isEmpty() ? QString() : u"vxedit: "_s + chapter + u": a.zel.lang: "_s + why + u'\n');

        g_Deck.SetLanguages(u"A"_s, {u"fr"_s, u"fr"_s}); // what an earlier load left
        env.log->clear();
        LoadChapterFile(chapter, u"A"_s);
        const ChapterLanguages got = g_Deck.Languages(u"A"_s);
        QCOMPARE(got.question + u',' + got.answer, loaded);
        QStringList log {u"file loaded; using 8 bytes of memory/n"_s};
        if (!why.isEmpty())
            log << u" .. languages left out: a.zel.lang: "_s + why + u"/n"_s;
        QCOMPARE(env.logLines(), log);
    }
};

QTEST_GUILESS_MAIN(VxeditTest)
#include "tst_vxedit.moc"
