// SPDX-License-Identifier: GPL-3.0-or-later
#include "cardpreview.h"
#include "cardtext.h"
#include "chaptermodel.h"
#include "chapterrules.h"
#include "editcommands.h"
#include "editorwindow.h"
#include "findreplace.h"
#include "importdialog.h"
#include "languagesdialog.h"
#include "uitestsupport.h"
#include "windows/screenfit.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QRegularExpression>
#include <QScreen>
#include <QSettings>
#include <QSignalSpy>
#include <QStatusBar>
#include <QTableView>
#include <QUndoStack>

using namespace Qt::Literals::StringLiterals;

namespace {

const QByteArray kChapter = "generated automatically by the Vocabrix Editor v1.21";

QStringList questions(const ChapterModel &model)
{
    QStringList out;
    for (int r = 0; r < model.rowCount(); ++r)
        out << model.Text(r, ChapterModel::Question);
    return out;
}

QByteArray chapterFile(const QList<std::array<QByteArray, 3>> &cards, const QByteArray &title = "Titel")
{
    QByteArray file = bytes::header(kChapter, 4, qint16(cards.size()), title) + bytes::placeholder();
    for (const auto &c : cards)
        file += bytes::entry(c[0], -1, c[1], 0, c[2]);
    return file;
}

} // namespace

class EditorTest : public QObject
{
    Q_OBJECT

    std::unique_ptr<TestEnvironment> m_env;
    std::unique_ptr<EditorWindow> m_window;

    QString path(const QString &name) const { return m_env->path(name); }

    // A window with a chapter of these questions open (answers a1.., notes n1..).
    ChapterModel &open(const QStringList &qs)
    {
        QList<std::array<QByteArray, 3>> cards;
        for (int i = 0; i < qs.size(); ++i)
            cards.append({qs[i].toLatin1(), "a" + QByteArray::number(i + 1), "n" + QByteArray::number(i + 1)});
        WriteFileBytes(path(u"open.zel"_s), chapterFile(cards));
        [&] { QVERIFY(m_window->OpenFile(path(u"open.zel"_s))); }();
        return *m_window->Model();
    }

private Q_SLOTS:
    void initTestCase()
    {
        InstallFontSubstitutes();
        QCoreApplication::setOrganizationName(u"Quillmere-test"_s);
        QCoreApplication::setApplicationName(u"vxedit-test"_s);
    }

    void init()
    {
        m_env = std::make_unique<TestEnvironment>();
        QSettings().clear();
        m_window = std::make_unique<EditorWindow>();
    }

    void cleanup()
    {
        m_window.reset();
        UnloadAllForms();
        m_env.reset();
    }

    // The editor's windows fit a 1024x600 screen with their frames.
    void windowsFitASmallScreen()
    {
        // It opens within the screen it is on (here, a small one).
        QVERIFY(QGuiApplication::primaryScreen()->availableGeometry().contains(m_window->geometry()));
        const QRect screen(0, 0, 1024, 600);
        const QSize room(1024 - 2 * kFrameSides, 600 - kFrameTop - kFrameSides);
        ImportDialog importer("a\tb\n"_ba, u"list.tsv"_s);
        FindReplaceDialog finder(*m_window->Model(), *m_window->UndoStack(), m_window.get());
        LanguagesDialog languages({u"de"_s, u"en"_s}, m_window.get());
        for (QWidget *w : {static_cast<QWidget *>(m_window.get()), static_cast<QWidget *>(&importer),
                           static_cast<QWidget *>(&finder), static_cast<QWidget *>(&languages)}) {
            FitInto(w, screen);
            const QSize smallest = w->minimumSizeHint().expandedTo(w->minimumSize());
            QVERIFY2(w->width() <= room.width() && w->height() <= room.height() && smallest.width() <= room.width()
                             && smallest.height() <= room.height(),
                     w->metaObject()->className());
            QVERIFY(screen.contains(w->geometry()));
            // And every control is reached by Tab in reading order, each
            // Alt+letter by one control.
            w->show();
            checkTabOrder(w);
            checkMnemonics(w);
            if (QTest::currentTestFailed())
                return;
            if (w == &languages)
                w->adjustSize(); // the size it opens at, having no size of its own
            if (w != m_window.get())
                QVERIFY(SaveScreenshot(w->grab().toImage(), u"editor-"_s + w->objectName() + u".png"_s));
        }
    }

    // The menus as a person reads them: entries with their keys, "-" between groups.
    void menus()
    {
        QStringList seen;
        for (QAction *menu : m_window->menuBar()->actions()) {
            QStringList entries;
            for (QAction *a : menu->menu()->actions())
                entries << (a->isSeparator() ? u"-"_s : (a->text() + u' ' + a->shortcut().toString()).trimmed());
            seen << menu->text() + u": "_s + entries.join(u" | "_s);
        }
        QCOMPARE(seen,
                 QStringList({u"&File: &New Ctrl+N | &Open... Ctrl+O | Open &Recent | &Save Ctrl+S | Save &As... | - | "
                              "&Import Cards... Ctrl+I | &Export Cards... Ctrl+E | - | &Quit"_s,
                              u"&Edit: &Undo Ctrl+Z | &Redo Ctrl+Y | - | &Add Card Ctrl+Return | &Delete Cards Del | "
                              "Move &Up Ctrl+Up | Move Do&wn Ctrl+Down | - | &Sort | - | &Find and Replace... Ctrl+F | "
                              "Go to Next &Problem F8 | - | Chapter &Languages..."_s,
                              u"&Help: Vocabrix &Manual F1 | &About the Vocabrix Editor"_s}));
    }

    void titleTooLongForTheCardIsNoted_data()
    {
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("note");
        QTest::newRow("short") << u"German 1: Greetings"_s << QString();
        QTest::newRow("runs into the help line") << QString(60, u'W') << u"Long: the card shows it"_s;
        QTest::newRow("over the byte limit") << QString(200, u'a') << u"bytes"_s;
    }
    void titleTooLongForTheCardIsNoted()
    {
        QFETCH(QString, title);
        QFETCH(QString, note);
        QTest::keyClicks(m_window->TitleEdit(), title);
        const QString shown = m_window->TitleNote()->text();
        QVERIFY2(note.isEmpty() ? shown.isEmpty() : shown.contains(note), qPrintable(shown));
    }

    void editsUndoAndRedo()
    {
        ChapterModel &model = open({u"eins"_s, u"zwei"_s, u"drei"_s});
        QUndoStack *undo = m_window->UndoStack();
        QVERIFY(undo->isClean());

        QVERIFY(model.setData(model.index(1, ChapterModel::Answer), u"two"_s, Qt::EditRole));
        QCOMPARE(model.Text(1, ChapterModel::Answer), u"two"_s);
        QVERIFY(m_window->isWindowModified());
        undo->undo();
        QCOMPARE(model.Text(1, ChapterModel::Answer), u"a2"_s);
        QVERIFY(!m_window->isWindowModified());
        undo->redo();
        QCOMPARE(model.Text(1, ChapterModel::Answer), u"two"_s);

        // Deleting cards that are not next to each other, and bringing them back.
        m_window->Table()->selectionModel()->clearSelection();
        m_window->Table()->selectRow(0);
        m_window->Table()->selectionModel()->select(model.index(2, 0),
                                                    QItemSelectionModel::Select | QItemSelectionModel::Rows);
        m_window->DeleteCards();
        QCOMPARE(questions(model), QStringList({u"zwei"_s}));
        undo->undo();
        QCOMPARE(questions(model), QStringList({u"eins"_s, u"zwei"_s, u"drei"_s}));

        // Moving the last two cards up, then down again.
        m_window->Table()->selectionModel()->clearSelection();
        m_window->Table()->selectRow(1);
        m_window->Table()->selectionModel()->select(model.index(2, 0),
                                                    QItemSelectionModel::Select | QItemSelectionModel::Rows);
        m_window->MoveCards(-1);
        QCOMPARE(questions(model), QStringList({u"zwei"_s, u"drei"_s, u"eins"_s}));
        const int steps = undo->count();
        m_window->MoveCards(-1); // the first cannot go further up
        QCOMPARE(undo->count(), steps);
        undo->undo();
        QCOMPARE(questions(model), QStringList({u"eins"_s, u"zwei"_s, u"drei"_s}));

        // Sorting, and the same column again the other way round.
        QSignalSpy relaidOut(&model, &QAbstractItemModel::layoutChanged); // what the table redraws by
        m_window->SortBy(ChapterModel::Question);
        QCOMPARE(relaidOut.count(), 1);
        QCOMPARE(questions(model), QStringList({u"drei"_s, u"eins"_s, u"zwei"_s}));
        QCOMPARE(model.Text(2, ChapterModel::Answer), u"two"_s); // cards move whole
        m_window->SortBy(ChapterModel::Question);
        QCOMPARE(questions(model), QStringList({u"zwei"_s, u"eins"_s, u"drei"_s}));
        undo->undo();
        undo->undo();
        QCOMPARE(questions(model), QStringList({u"eins"_s, u"zwei"_s, u"drei"_s}));

        // Typing a title is one step.
        m_window->TitleEdit()->setText(QString());
        QTest::keyClicks(m_window->TitleEdit(), u"Neu"_s);
        QCOMPARE(m_window->Document().Title(), u"Neu"_s);
        undo->undo();
        QCOMPARE(m_window->Document().Title(), u"Titel"_s);
        QCOMPARE(m_window->TitleEdit()->text(), u"Titel"_s);
    }

    // A card added empty is edited at once and flagged until typed.
    void cardsAddedAndImported()
    {
        ChapterModel &model = open({u"eins"_s, u"zwei"_s});
        m_window->Table()->setCurrentIndex(model.index(0, 1));
        m_window->AddCard();
        QCOMPARE(model.rowCount(), 3);
        QCOMPARE(questions(model), QStringList({u"eins"_s, QString(), u"zwei"_s}));
        QCOMPARE(m_window->Table()->currentIndex(), model.index(1, ChapterModel::Question));
        QVERIFY(!m_window->Document().CardProblem(1).isEmpty()); // empty until typed
        QCOMPARE(model.ProblemCount(), 1);
        auto problemsShown = [this] {
            QStringList shown;
            for (QLabel *label : m_window->statusBar()->findChildren<QLabel *>())
                if (label->text().contains(u"saved yet"_s))
                    shown << label->text().remove(QRegularExpression(u"<[^>]*>"_s));
            return shown;
        };
        QCOMPARE(problemsShown(), QStringList({u"1 card can't be saved yet (F8)"_s}));
        m_window->UndoStack()->undo();
        QCOMPARE(model.rowCount(), 2);
        QCOMPARE(problemsShown(), QStringList());

        // Cards imported: one step, a card too long flagged to mend before saving.
        WriteFileBytes(path(u"more.csv"_s),
                       "Question,Answer,Note\ndrei,three,\nvier,\"four, 4\",\nfünf," + QByteArray(120, 'x') + ",\n");
        m_env->prompter.onModal = [](QObject *) { return int(QDialog::Accepted); }; // names line detected
        QVERIFY(m_window->ImportFile(path(u"more.csv"_s)));
        QCOMPARE(questions(model), QStringList({u"eins"_s, u"zwei"_s, u"drei"_s, u"vier"_s, u"fünf"_s}));
        QCOMPARE(model.Text(3, ChapterModel::Answer), u"four, 4"_s);
        QCOMPARE(model.ProblemCount(), 1);
        m_window->GoToNextProblem();
        QCOMPARE(m_window->Table()->currentIndex().row(), 4);
        m_window->UndoStack()->undo();
        QCOMPARE(model.rowCount(), 2);
    }

    // Question 50 + answer + note 6 bytes of the 116 the texts share: an
    // answer of 61 makes the card 129 bytes, refused; 60 fits exactly.
    void recordLimits()
    {
        ChapterModel &model = open({u"eins"_s, u"zwei"_s});
        model.setData(model.index(1, ChapterModel::Question), QString(50, u'q'), Qt::EditRole);
        model.setData(model.index(1, ChapterModel::Answer), QString(61, u'a'), Qt::EditRole);
        model.setData(model.index(1, ChapterModel::Note), u"nnnnnn"_s, Qt::EditRole);
        QCOMPARE(model.BytesLeft(1), -1);
        const QString target = path(u"limit.zel"_s);
        m_env->prompter.fileAnswers = {target};
        QVERIFY(!m_window->SaveAs());
        QVERIFY(!QFileInfo::exists(target));
        QCOMPARE(m_env->prompter.seen(),
                 QStringList(Box(u"Chapter Not Saved"_s,
                                 u"Card 2 can't be saved: the card takes 129 bytes, more than the 128 of a chapter "
                                 "record (question, answer and note may have 116 bytes together). Nothing was "
                                 "written."_s,
                                 MsgIcon::Exclamation)));
        QCOMPARE(m_window->Table()->currentIndex().row(), 1); // the card is shown
        QVERIFY(m_window->isWindowModified());

        model.setData(model.index(1, ChapterModel::Answer), QString(60, u'a'), Qt::EditRole);
        QCOMPARE(model.BytesLeft(1), 0);
        m_env->prompter.fileAnswers = {target};
        QVERIFY(m_window->SaveAs());
        QVERIFY(!m_window->isWindowModified());
        ikorvalite db;
        QVERIFY(db.Mount(target, false));
        QCOMPARE(db.GetEntry(2).text, QString(60, u'a'));
    }

    // Any script can be typed; the limits count UTF-8 bytes once the chapter
    // is UTF-8, and the status bar says which encoding a save writes.
    void anyScriptTypedAndSaved()
    {
        ChapterModel &model = open({u"eins"_s, u"zwei"_s});
        QCOMPARE(m_window->EncodingNote()->text(), u"Saved as Windows-1252"_s);
        const QString zhe = u"Ж"_s;
        // "eins" (4), the answer, "n1" (2) and 12 bytes of lengths, flag and number.
        for (const auto &[answer, shown] :
             {std::pair {QString(112, u'x'), u"Card 1: 2 bytes too long</span>"_s},
              std::pair {u"Борщ"_s, u"Card 1: 102 bytes left (UTF-8)"_s},
              std::pair {zhe.repeated(55), u"Card 1: 0 bytes left (UTF-8)"_s},
              std::pair {zhe.repeated(55) + u'x', u"Card 1: 1 bytes too long (UTF-8)"_s}}) {
            m_window->ShowTypingFeedback(0, ChapterModel::Answer, answer);
            QVERIFY2(m_window->LimitText().contains(shown), qPrintable(m_window->LimitText()));
        }

        model.setData(model.index(0, ChapterModel::Note), u"siehe → dort"_s, Qt::EditRole);
        QCOMPARE(model.ProblemCount(), 0);
        QCOMPARE(m_window->EncodingNote()->text(), u"Saved as UTF-8"_s);
        QVERIFY(m_window->Save());
        const QByteArray utf8 = bytes::header(kChapter, 4, 2, "Titel", "utf-8") + bytes::placeholder();
        QCOMPARE(ReadFileBytes(path(u"open.zel"_s)),
                 utf8 + bytes::entry("eins", -1, "a1", 0, "siehe \xE2\x86\x92 dort")
                         + bytes::entry("zwei", -1, "a2", 0, "n2"));
        // Saved as UTF-8, it stays so.
        model.setData(model.index(0, ChapterModel::Note), u"n1"_s, Qt::EditRole);
        QCOMPARE(m_window->EncodingNote()->text(), u"Saved as UTF-8"_s);
        QVERIFY(m_window->Save());
        QCOMPARE(ReadFileBytes(path(u"open.zel"_s)),
                 utf8 + bytes::entry("eins", -1, "a1", 0, "n1") + bytes::entry("zwei", -1, "a2", 0, "n2"));
    }

    // The preview checks cards as the chapter they go into will be written.
    void importPreviewInTheChapterEncoding_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<bool>("utf8Chapter");
        QTest::addColumn<QString>("summary");
        QTest::newRow("russian cards turn the chapter utf-8")
                << QByteArray("\xD0\xB6\xD1\x83\xD0\xBA,beetle\nHaus,house\n") << false
                << u"2 cards will be added. The chapter will be saved in UTF-8"_s;
        QTest::newRow("german cards stay windows-1252")
                << QByteArray("Haus,house\nMaus,mouse\n") << false << u"2 cards will be added."_s;
        QTest::newRow("umlauts too long once utf-8") << QByteArray("\xC3\xBC").repeated(60) + ",x\n"
                                                     << true << u"1 of them can't be stored"_s;
        QTest::newRow("the same umlauts fit windows-1252") << QByteArray("\xC3\xBC").repeated(60) + ",x\n"
                                                           << false << u"1 card will be added."_s;
    }
    void importPreviewInTheChapterEncoding()
    {
        QFETCH(QByteArray, content);
        QFETCH(bool, utf8Chapter);
        QFETCH(QString, summary);
        ImportDialog dialog(content, u"list.csv"_s);
        dialog.SetChapterEncoding(utf8Chapter ? korva::Encoding::Utf8 : korva::Encoding::Cp1252);
        QVERIFY2(dialog.summary->text().contains(summary), qPrintable(dialog.summary->text()));
        QCOMPARE(dialog.summary->text().contains(u"UTF-8"_s), summary.contains(u"UTF-8"_s));
    }

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
        QVERIFY(!file.isEmpty());
        WriteFileBytes(path(u"round.zel"_s), file);
        QVERIFY(m_window->OpenFile(path(u"round.zel"_s)));
        QVERIFY(!m_window->Document().ReadOnly());
        const bool russian = QTest::currentDataTag() == QByteArray("the russian example, utf-8");
        if (russian) {
            QCOMPARE(m_window->Model()->ProblemCount(), 0);
            QCOMPARE(m_window->EncodingNote()->text(), u"Saved as UTF-8"_s);
            m_window->Table()->setCurrentIndex(m_window->Model()->index(19, 0));
            QCOMPARE(m_window->Model()->Text(19, ChapterModel::Question), u"Вы говорите по-английски?"_s);
            // "Вы говорите по-английски?" 46 bytes, the answer 21, the note 24.
            QCOMPARE(m_window->LimitText(), u"Card 20: 25 bytes left (UTF-8)"_s);
            QVERIFY(HasColour(m_window->Preview()->Front(), qRgb(255, 255, 255))); // the question drawn
        } else {
            m_window->Table()->setCurrentIndex(m_window->Model()->index(8, 0));
        }
        if (QTest::currentDataTag() != QByteArray("odd fields")) {
            m_window->show();
            QVERIFY(SaveScreenshot(m_window->grab().toImage(), russian ? u"editor-russian.png"_s : u"editor.png"_s));
        }
        m_env->prompter.fileAnswers = {path(u"copy.zel"_s)};
        QVERIFY(m_window->SaveAs());
        QCOMPARE(ReadFileBytes(path(u"copy.zel"_s)), file);
    }

    // The chapter's languages: chosen in their dialog (undoably), written
    // beside the chapter when it is saved and only when they changed, taken
    // along to another name; a damaged file is told of and left alone.
    void chapterLanguages_data()
    {
        QTest::addColumn<QByteArray>("before");  // words.zel.lang; null: none
        QTest::addColumn<QStringList>("shown");  // what the dialog starts with
        QTest::addColumn<QStringList>("choose"); // empty: cancelled
        QTest::addColumn<QString>("then");       // "save" or "saveas"
        QTest::addColumn<QByteArray>("after");   // beside the saved chapter
        const QByteArray head = "# Vocabrix: the languages this chapter's cards are spoken in\n", fr = "question=fr\n";
        // The languages as "question,answer"; no choice: cancelled.
        auto row = [](const char *tag, const QByteArray &before, const char *shown, const char *choose,
                      const QString &then, const QByteArray &after) {
            auto split = [](const char *l) { return l ? QString::fromLatin1(l).split(u',') : QStringList(); };
            QTest::newRow(tag) << before << split(shown) << split(choose) << then << after;
        };
        row("chosen, saved beside it", {}, ",", "de,en", u"save"_s, head + "question=de\nanswer=en\n");
        row("unchanged: the file not written", fr, "fr,", nullptr, u"save"_s, fr);
        row("the same chosen again: nothing to undo", fr, "fr,", "fr,", u"save"_s, fr);
        row("back to the options': the file goes", fr, "fr,", ",", u"save"_s, {});
        row("saved as another chapter: taken along", fr, "fr,", nullptr, u"saveas"_s, head + fr);
        row("damaged: told, left alone", "question fr\n", ",", nullptr, u"save"_s, "question fr\n");
    }
    void chapterLanguages()
    {
        QFETCH(QByteArray, before);
        QFETCH(QStringList, shown);
        QFETCH(QStringList, choose);
        QFETCH(QString, then);
        QFETCH(QByteArray, after);
        const QByteArray chapter = chapterFile({{"Hund", "dog", ""}, {"Katze", "cat", ""}});
        const QString words = path(u"words.zel"_s);
        WriteFileBytes(words, chapter);
        if (!before.isNull())
            WriteFileBytes(words + u".lang"_s, before);
        QVERIFY(m_window->OpenFile(words));
        const bool damaged = QTest::currentDataTag() == QByteArray("damaged: told, left alone");
        QCOMPARE(m_env->prompter.boxTitles(), damaged ? QStringList {u"Chapter Languages Left Out"_s} : QStringList());

        QStringList started;
        m_env->prompter.onModal = [&](QObject *window) {
            auto *dialog = qobject_cast<LanguagesDialog *>(window);
            started = QStringList {dialog->QuestionLanguage->currentData().toString(),
                                   dialog->AnswerLanguage->currentData().toString()};
            QStringList labels; // each box named by its label, which Alt reaches it by
            for (QComboBox *box : {dialog->QuestionLanguage, dialog->AnswerLanguage})
                for (QLabel *label : dialog->findChildren<QLabel *>())
                    if (label->buddy() == box)
                        labels << label->text();
            [&] { QCOMPARE(labels, QStringList({u"&Question side:"_s, u"&Answer side:"_s})); }();
            if (choose.isEmpty())
                return int(QDialog::Rejected);
            dialog->QuestionLanguage->setCurrentIndex(dialog->QuestionLanguage->findData(choose[0]));
            dialog->AnswerLanguage->setCurrentIndex(dialog->AnswerLanguage->findData(choose[1]));
            return int(QDialog::Accepted);
        };
        m_window->EditLanguages();
        QCOMPARE(started, shown);
        QCOMPARE(m_window->UndoStack()->isClean(), choose.isEmpty() || choose == shown);
        const QString target = then == u"saveas"_s ? path(u"other.zel"_s) : words;
        m_env->prompter.fileAnswers = {target};
        QVERIFY(then == u"saveas"_s ? m_window->SaveAs() : m_window->Save());
        QCOMPARE(ReadFileBytes(target), chapter);
        QCOMPARE(QFileInfo::exists(target + u".lang"_s), !after.isNull());
        QCOMPARE(ReadFileBytes(target + u".lang"_s), after);
        if (then == u"saveas"_s)
            QCOMPARE(ReadFileBytes(words + u".lang"_s), before);
    }

    void otherKorvaFilesOnlyForALook()
    {
        const QByteArray settings = bytes::header("KORVA Database File; KORVA Lite version", 4, 1)
                + bytes::placeholder() + bytes::entry("backcolor_b", 0, {}, 14570825, "color_metrics");
        WriteFileBytes(path(u"sys.zel"_s), settings);
        m_env->prompter.answers = {MsgResult::No};
        QVERIFY(!m_window->OpenFile(path(u"sys.zel"_s)));
        QCOMPARE(m_env->prompter.seen(),
                 QStringList(Box(u"Not a Chapter"_s,
                                 u"The file '%1' is a Vocabrix data file, but not a chapter (its description is 'KORVA "
                                 "Database File; KORVA Lite version'), so it can't be edited here.\n\nOpen it "
                                 "read-only to look inside?"_s.arg(path(u"sys.zel"_s)),
                                 MsgIcon::Question, MsgButtons::YesNo)));
        QCOMPARE(m_window->Model()->rowCount(), 0);

        m_env->prompter.answers = {MsgResult::Yes};
        QVERIFY(m_window->OpenFile(path(u"sys.zel"_s)));
        QVERIFY(m_window->Document().ReadOnly());
        QCOMPARE(m_window->Model()->index(0, ChapterModel::Answer).data().toString(), u"(number) 14570825"_s);
        QVERIFY(!(m_window->Model()->flags(m_window->Model()->index(0, 0)) & Qt::ItemIsEditable));
        QVERIFY(m_window->windowTitle().contains(u"(read-only)"_s));
        QVERIFY(!m_window->Save());
        QCOMPARE(ReadFileBytes(path(u"sys.zel"_s)), settings);

        WriteFileBytes(path(u"junk.zel"_s), "not a KORVA file at all, just text\n");
        QVERIFY(!m_window->OpenFile(path(u"junk.zel"_s)));
        QCOMPARE(m_env->prompter.boxTitles().last(), u"Can't Open Chapter"_s);
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
        ikorvalite db;
        QVERIFY(db.Mount(path(u"open.zel"_s), false));
        QCOMPARE(db.GetEntry(1).key, u"changed"_s);
        QVERIFY(!m_window->isWindowModified());
    }

    void findAndReplace()
    {
        ChapterModel &model = open({u"der Hund"_s, u"die Katze"_s, u"der Vogel"_s});
        findreplace::Options o;
        o.text = u"der"_s;
        auto first = findreplace::FindNext(model, {-1, 0}, o);
        QVERIFY(first && first->row == 0 && first->column == 0);
        auto second = findreplace::FindNext(model, *first, o);
        QVERIFY(second && second->row == 2);
        auto wrapped = findreplace::FindNext(model, *second, o);
        QVERIFY(wrapped && wrapped->row == 0); // round again from the top
        o.inQuestion = false;
        QVERIFY(!findreplace::FindNext(model, {-1, 0}, o));

        o.inQuestion = true;
        o.text = u"DER"_s;
        QCOMPARE(findreplace::ReplaceAll(model, *m_window->UndoStack(), o, u"ein"_s), 2);
        QCOMPARE(questions(model), QStringList({u"ein Hund"_s, u"die Katze"_s, u"ein Vogel"_s}));
        m_window->UndoStack()->undo(); // one step
        QCOMPARE(questions(model), QStringList({u"der Hund"_s, u"die Katze"_s, u"der Vogel"_s}));
        o.matchCase = true;
        QCOMPARE(findreplace::ReplaceAll(model, *m_window->UndoStack(), o, u"ein"_s), 0);

        // The window says where it found the text, as a person counts cards.
        FindReplaceDialog dialog(model, *m_window->UndoStack());
        QSignalSpy found(&dialog, &FindReplaceDialog::found);
        dialog.findText->setText(u"Vogel"_s);
        dialog.findNext->click();
        QCOMPARE(dialog.result->text(), u"Card 3"_s);
        QCOMPARE(found.takeFirst(), QVariantList({2, 0}));
        dialog.findText->setText(u"Maus"_s);
        dialog.findNext->click();
        QCOMPARE(dialog.result->text(), u"Not found"_s);
        dialog.findText->setText(u"die"_s);
        dialog.replaceText->setText(u"eine"_s);
        dialog.replaceAll->click();
        QCOMPARE(dialog.result->text(), u"1 text changed"_s);
    }

    void importDetectsLayouts_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("cards"); // "question/answer/note", '|' between cards
        QTest::addColumn<bool>("header");   // the first line is taken for column names
        QTest::newRow("another program's export")
                << u"deck.txt"_s
                << QByteArray("#separator:tab\n#html:true\n#deck column:1\nDeutsch\t<b>Gr&uuml;n</b>\tgreen<br>colour\n"
                              "Deutsch\t\"Auf&nbsp;Wiedersehen\"\tgoodbye\n")
                << u"Grün/green colour/|Auf Wiedersehen/goodbye/"_s << false;
        QTest::newRow("semicolons in a .txt")
                << u"list.txt"_s << QByteArray("rot;red;Farbe\nblau;blue\n") << u"rot/red/Farbe|blau/blue/"_s << false;
        QTest::newRow("column names") << u"words.csv"_s
                                      << QByteArray("Term,Definition,Notes\nder Hund,the dog,pl. die Hunde\n"
                                                    "die Katze,the cat,\nrot,\"red, the colour\",\n")
                                      << u"der Hund/the dog/pl. die Hunde|die Katze/the cat/|rot/red, the colour/"_s
                                      << true;
    }
    void importDetectsLayouts()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, content);
        QFETCH(QString, cards);
        QFETCH(bool, header);
        ImportDialog dialog(content, name);
        QCOMPARE(dialog.headerRow->isChecked(), header);
        QCOMPARE(dialog.ParseError(), QString());
        dialog.show();
        QVERIFY(SaveScreenshot(dialog.grab().toImage(), u"editor-import-"_s + name + u".png"_s));
        QStringList got;
        for (const korva::Entry &c : dialog.Cards())
            got << c.key + u'/' + c.text + u'/' + c.note;
        QCOMPARE(got.join(u'|'), cards);

        // The person's choice (Alt+N) counts the first line in or out, and
        // outlasts another reading of the file.
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        QTest::keyClick(&dialog, Qt::Key_N, Qt::AltModifier);
        QTRY_COMPARE(dialog.headerRow->isChecked(), !header); // a key clicks a moment later
        const int count = int(got.size()) + (header ? 1 : -1);
        QCOMPARE(int(dialog.Cards().size()), count);
        QCOMPARE(dialog.summary->text().section(u'.', 0, 0),
                 count == 1 ? u"1 card will be added"_s : u"%1 cards will be added"_s.arg(count));
        const int delimiter = dialog.delimiter->currentIndex();
        dialog.delimiter->setCurrentIndex(delimiter == 0 ? 1 : 0);
        dialog.delimiter->setCurrentIndex(delimiter);
        QCOMPARE(dialog.headerRow->isChecked(), !header);
        QCOMPARE(int(dialog.Cards().size()), count);
    }

    void exportRefusesWhatTsvCannotCarry()
    {
        ChapterModel &model = open({u"eins"_s, u"zwei"_s});
        model.setData(model.index(1, ChapterModel::Answer), u"two\tthree"_s, Qt::EditRole);
        m_env->prompter.fileAnswers = {path(u"out.tsv"_s)};
        m_window->ExportCards();
        QCOMPARE(m_env->prompter.boxTitles(), QStringList(u"Cards Not Exported"_s));
        QVERIFY(!QFileInfo::exists(path(u"out.tsv"_s)));
        m_env->prompter.fileAnswers = {path(u"out.csv"_s)};
        m_window->ExportCards();
        QCOMPARE(ReadFileBytes(path(u"out.csv"_s)), QByteArray("eins,a1,n1\nzwei,two\tthree,n2\n"));

        // Neither the export nor an import may take the chapter being edited.
        const QByteArray chapter = ReadFileBytes(path(u"open.zel"_s));
        m_env->prompter.fileAnswers = {path(u"open.zel"_s)};
        m_window->ExportCards();
        QVERIFY(!m_window->ImportFile(path(u"open.zel"_s)));
        QCOMPARE(m_env->prompter.boxTitles(),
                 QStringList({u"Cards Not Exported"_s, u"Cards Not Exported"_s, u"Can't Import"_s}));
        QVERIFY(m_env->prompter.boxes[1].text.contains(u"is the chapter you are editing"_s));
        QVERIFY(m_env->prompter.boxes[2].text.contains(u"is the chapter you are editing"_s));
        QCOMPARE(ReadFileBytes(path(u"open.zel"_s)), chapter);
        QCOMPARE(model.rowCount(), 2);
    }

    void typedChapterSaved()
    {
        m_window->NewChapter();
        QTest::keyClicks(m_window->TitleEdit(), u"Meine W"_s);
        QTest::sendKeyEvent(QTest::Click, m_window->TitleEdit(), Qt::Key_O, u"ö"_s, Qt::NoModifier);
        QTest::keyClicks(m_window->TitleEdit(), u"rter"_s);
        ChapterModel *model = m_window->Model();
        for (const auto &[q, a] : {std::pair {u"grasc(252)n"_s, u"green"_s}, std::pair {u"blau"_s, u"blue"_s}}) {
            m_window->AddCard();
            const int row = m_window->Table()->currentIndex().row();
            model->setData(model->index(row, ChapterModel::Question), q, Qt::EditRole);
            model->setData(model->index(row, ChapterModel::Answer), a, Qt::EditRole);
        }
        const QString chapter = path(u"meine.zel"_s);
        m_env->prompter.fileAnswers = {chapter};
        QVERIFY(m_window->Save());
        QVERIFY(m_window->RecentFiles().contains(chapter));
        QCOMPARE(ReadFileBytes(chapter), // the escape as typed: the study program replaces it
                 bytes::header(kChapter, 4, 2, "Meine W\xF6rter") + bytes::placeholder()
                         + bytes::entry("grasc(252)n", -1, "green", 0, {}) + bytes::entry("blau", -1, "blue", 0, {}));
    }

    // The preview draws the card as studied: escapes replaced, both faces.
    void previewReplacesEscapes()
    {
        CardPreview escaped, plain;
        escaped.SetCard(u"Tasc(252)r"_s, u"door"_s);
        plain.SetCard(u"Tür"_s, u"door"_s);
        QVERIFY(escaped.Front() == plain.Front() && escaped.Back() == plain.Back());
        plain.SetCard(u"Tur"_s, u"doors"_s);
        QVERIFY(escaped.Front() != plain.Front() && escaped.Back() != plain.Back());
    }
};

QTEST_MAIN(EditorTest)
#include "tst_editor.moc"
