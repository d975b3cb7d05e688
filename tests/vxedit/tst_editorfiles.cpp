// SPDX-License-Identifier: GPL-3.0-or-later
#include "editorfixture.h"
#include "importdialog.h"
#include "languagesdialog.h"

#include <QComboBox>
#include <QTableView>
#include <QUndoStack>

class EditorFilesTest : public EditorFixture
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { prepareEditor(); }
    void init() { beginTest(); }
    void cleanup() { endTest(); }

    void unchangedFilesKeepTheirBytes_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::newRow("an example chapter") << ReadFileBytes(QCoreApplication::applicationDirPath() + u"/ex2.zel"_s);
        // Whatever the file carries beyond the cards goes back as it came.
        QTest::newRow("odd fields") << bytes::header(kChapter, 7, 3, "T", "reserved text")
                        + bytes::entry({}, 0, {}, 99, "note of the placeholder")
                        + bytes::entry("zahl", -1, "number", -5, "a text entry with a number")
                        + bytes::entry("a", -1, "b", 0, {}) + bytes::entry("c", 1, "d", 0, "flag 1");
        QTest::newRow("the russian example, utf-8")
                << ReadFileBytes(QCoreApplication::applicationDirPath() + u"/ex5.zel"_s);
    }
    void unchangedFilesKeepTheirBytes()
    {
        QFETCH(QByteArray, file);
        WriteFileBytes(path(u"round.zel"_s), file);
        QVERIFY(m_window->OpenFile(path(u"round.zel"_s)));
        if (QByteArray(QTest::currentDataTag()) == "an example chapter") { // the manual's picture of the editor
            m_window->Table()->setCurrentIndex(m_window->Model()->index(8, 0));
            m_window->show();
            QVERIFY(SaveScreenshot(m_window->grab().toImage(), u"editor.png"_s));
        }
        m_env->prompter.fileAnswers = {path(u"copy.zel"_s)};
        QVERIFY(m_window->SaveAs());
        QCOMPARE(ReadFileBytes(path(u"copy.zel"_s)), file);
    }

    // The chapter's languages: chosen in their dialog (undoably), written
    // beside the chapter when it is saved; a damaged file is told of and left
    // alone. Ones that cannot be written fail the save, which says so, and
    // stay unsaved.
    void chapterLanguages_data()
    {
        QTest::addColumn<QByteArray>("before");  // words.zel.lang; null: none
        QTest::addColumn<QStringList>("choose"); // empty: cancelled
        QTest::addColumn<bool>("blocked");       // a folder where the file goes
        QTest::addColumn<QByteArray>("after");   // beside the saved chapter
        const QByteArray head = "# Vocabrix: the languages this chapter's cards are spoken in\n";
        // The languages as "question,answer"; no choice: cancelled.
        auto row = [](const char *tag, const QByteArray &before, const char *choose, bool blocked,
                      const QByteArray &after) {
            auto split = [](const char *l) { return l ? QString::fromLatin1(l).split(u',') : QStringList(); };
            QTest::newRow(tag) << before << split(choose) << blocked << after;
        };
        row("chosen, saved beside it", {}, "de,en", false, head + "question=de\nanswer=en\n");
        row("back to the options': the file goes", "question=fr\n", ",", false, {});
        row("damaged: told, left alone", "question fr\n", nullptr, false, "question fr\n");
        row("not written: told, the change kept", {}, "de,", true, {});
    }
    void chapterLanguages()
    {
        QFETCH(QByteArray, before);
        QFETCH(QStringList, choose);
        QFETCH(bool, blocked);
        QFETCH(QByteArray, after);
        const QByteArray chapter = chapterFile({{"Hund", "dog", ""}, {"Katze", "cat", ""}});
        const QString words = path(u"words.zel"_s);
        WriteFileBytes(words, chapter);
        if (!before.isNull())
            WriteFileBytes(words + u".lang"_s, before);
        QVERIFY(m_window->OpenFile(words));
        const bool damaged = QTest::currentDataTag() == QByteArray("damaged: told, left alone");
        QCOMPARE(m_env->prompter.boxTitles(), damaged ? QStringList {u"Chapter Languages Left Out"_s} : QStringList());

        m_env->prompter.onModal = [&](QObject *window) {
            auto *dialog = qobject_cast<LanguagesDialog *>(window);
            if (choose.isEmpty())
                return int(QDialog::Rejected);
            dialog->QuestionLanguage->setCurrentIndex(dialog->QuestionLanguage->findData(choose[0]));
            dialog->AnswerLanguage->setCurrentIndex(dialog->AnswerLanguage->findData(choose[1]));
            return int(QDialog::Accepted);
        };
        m_window->EditLanguages();
        QCOMPARE(m_window->UndoStack()->isClean(), choose.isEmpty());
        if (blocked)
            QVERIFY(QDir().mkpath(words + u".lang"_s));
        QCOMPARE(m_window->Save(), !blocked);
        QCOMPARE(m_window->UndoStack()->isClean(), !blocked);
        QCOMPARE(ReadFileBytes(words), chapter);
        if (blocked) {
            QCOMPARE(m_env->prompter.boxTitles(), QStringList(u"Languages Not Saved"_s));
            return;
        }
        QCOMPARE(ReadFileBytes(words + u".lang"_s), after);
    }

    void unsavedChangesAreAskedFor()
    {
        ChapterModel &model = open({u"eins"_s, u"zwei"_s});
        model.setData(model.index(0, 0), u"changed"_s, Qt::EditRole);
        m_env->prompter.answers = {MsgResult::Cancel};
        QVERIFY(!m_window->MaybeSave());
        QCOMPARE(m_env->prompter.seen(),
                 QStringList(Box(u"Save Changes?"_s,
                                 u"The chapter 'open.zel' has changes that are not saved. Save them before going on?"_s,
                                 MsgIcon::Question, MsgButtons::YesNoCancel)));
        m_env->prompter.answers = {MsgResult::No};
        QVERIFY(m_window->MaybeSave());
        m_env->prompter.answers = {MsgResult::Yes};
        QVERIFY(m_window->MaybeSave()); // saved to the file it came from
        QCOMPARE(ReadFileBytes(path(u"open.zel"_s)), chapterFile({{"changed", "a1", "n1"}, {"zwei", "a2", "n2"}}));

        // Opening another chapter: with changes kept by Cancel, not at all.
        WriteFileBytes(path(u"other.zel"_s), chapterFile({{"drei", "a3", "n3"}}));
        m_env->prompter.fileAnswers = {path(u"other.zel"_s)};
        m_window->OpenChapter();
        QCOMPARE(m_window->Model()->index(0, 0).data().toString(), u"drei"_s);
        m_window->Model()->setData(m_window->Model()->index(0, 0), u"vier"_s, Qt::EditRole);
        m_env->prompter.answers = {MsgResult::Cancel};
        const size_t dialogs = m_env->prompter.fileDialogs.size();
        m_window->OpenChapter();
        QCOMPARE(m_env->prompter.fileDialogs.size(), dialogs);
        m_window->NewChapter(); // a new chapter has no change to undo
        QVERIFY(!m_window->UndoStack()->canUndo());
    }

    // What the import dialog makes of a list (how it reads it, which column
    // is which, the first cards and its summary), checked as the chapter they
    // go into will be written.
    void importDetectsLayouts_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<bool>("utf8Chapter");
        QTest::addColumn<QString>("layout");
        auto row = [](const char *tag, const QString &name, const QByteArray &content, bool utf8,
                      const QString &layout) { QTest::newRow(tag) << name << content << utf8 << layout; };
        row("another program's export", u"deck.txt"_s,
            "#separator:tab\n#html:true\n#deck column:1\nDeutsch\t<b>Gr&uuml;n</b>\tgreen<br>colour\n"
            "Deutsch\t\"Auf&nbsp;Wiedersehen\"\tgoodbye\n",
            false, u"deck"_s);
        row("semicolons in a .txt", u"list.txt"_s, "rot;red;Farbe\nblau;blue\n", false, u"list"_s);
        row("umlauts too long once utf-8", u"list.csv"_s, QByteArray("\xC3\xBC").repeated(60) + ",x\nHaus,house\n",
            true, u"umlauts-utf8"_s);
        row("a quote never closed", u"quote.csv"_s, "rot,\"red\nblau,blue\n", false, u"unreadable"_s);
    }
    void importDetectsLayouts()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, content);
        QFETCH(bool, utf8Chapter);
        QFETCH(QString, layout);
        ImportDialog dialog(content, name);
        dialog.SetChapterEncoding(utf8Chapter ? korva::Encoding::Utf8 : korva::Encoding::Cp1252);
        dialog.show();
        checkLayout(&dialog, u"editor-import-"_s + layout);
        QVERIFY(SaveScreenshot(dialog.grab().toImage(), u"editor-import-"_s + name + u".png"_s)); // for the manual
    }

    // Exported as CSV what a tab-separated file cannot carry (the command
    // line's refusals show that refusal); never onto the chapter being edited.
    void exportCards()
    {
        ChapterModel &model = open({u"eins"_s, u"zwei"_s});
        model.setData(model.index(1, ChapterModel::Answer), u"two\tthree"_s, Qt::EditRole);
        model.setData(model.index(0, ChapterModel::Note), u"line\rend"_s, Qt::EditRole); // quoted in CSV
        m_env->prompter.fileAnswers = {path(u"out.csv"_s)};
        m_window->ExportCards();
        QCOMPARE(ReadFileBytes(path(u"out.csv"_s)), QByteArray("eins,a1,\"line\rend\"\nzwei,two\tthree,n2\n"));
        const QByteArray chapter = ReadFileBytes(path(u"open.zel"_s));
        m_env->prompter.fileAnswers = {path(u"open.zel"_s)};
        m_window->ExportCards();
        QCOMPARE(m_env->prompter.boxTitles(), QStringList(u"Cards Not Exported"_s));
        QCOMPARE(ReadFileBytes(path(u"open.zel"_s)), chapter);
    }

    // An import that would overfill the chapter, that reads the chapter
    // itself, or whose list is too large to read says why; one cancelled in
    // its dialog says nothing. None of them changes the chapter.
    void importRefusals()
    {
        ChapterModel &model = open({u"eins"_s, u"zwei"_s});
        QByteArray many; // with the two there, one card more than a chapter holds
        for (int i = 0; i < korva::kMaxEntries - 1; ++i)
            many += "q" + QByteArray::number(i) + "\ta\n";
        WriteFileBytes(path(u"list.txt"_s), many);
        for (const bool accepted : {false, true}) {
            m_env->prompter.onModal = [accepted](QObject *) {
                return accepted ? QDialog::Accepted : QDialog::Rejected;
            };
            QVERIFY(!m_window->ImportFile(path(u"list.txt"_s)));
        }
        QVERIFY(!m_window->ImportFile(path(u"open.zel"_s)));
        QFile huge(path(u"huge.txt"_s)); // never read into memory
        QVERIFY(huge.open(QIODevice::WriteOnly) && huge.resize(64 * 1024 * 1024 + 1));
        QVERIFY(!m_window->ImportFile(huge.fileName()));
        QCOMPARE(m_env->prompter.seen(),
                 QStringList({Box(u"Can't Import"_s,
                                  u"With these 32766 cards the chapter would have 32768, more than the 32767 a "
                                  "chapter holds."_s,
                                  MsgIcon::Exclamation),
                              Box(u"Can't Import"_s,
                                  u"The file '%1' can't be read: it is the chapter you are editing; cards are imported "
                                  "from a list of text."_s.arg(path(u"open.zel"_s)),
                                  MsgIcon::Exclamation),
                              Box(u"Can't Import"_s,
                                  u"The file '%1' is too large for a list of cards."_s.arg(huge.fileName()),
                                  MsgIcon::Exclamation)}));
        QCOMPARE(model.rowCount(), 2);
    }
};

QTEST_MAIN(EditorFilesTest)
#include "tst_editorfiles.moc"
