// SPDX-License-Identifier: GPL-3.0-or-later
#include "editorfixture.h"
#include "findreplace.h"
#include "languagesdialog.h"

#include <QLabel>
#include <QMenu>
#include <QTableView>
#include <QUndoStack>

class EditorTest : public EditorFixture
{
    Q_OBJECT

    QStringList questions() const
    {
        QStringList out;
        for (int r = 0; r < m_window->Model()->rowCount(); ++r)
            out << m_window->Model()->Text(r, ChapterModel::Question);
        return out;
    }
    void select(const QList<int> &rows)
    {
        m_window->Table()->selectionModel()->clearSelection();
        for (int r : rows)
            m_window->Table()->selectionModel()->select(m_window->Model()->index(r, 0),
                                                        QItemSelectionModel::Select | QItemSelectionModel::Rows);
    }

private Q_SLOTS:
    void initTestCase() { prepareEditor(); }
    void init() { beginTest(); }
    void cleanup() { endTest(); }

    // The editor window as a person reads it: its menus with their keys,
    // fields, lists and buttons; its languages dialog likewise.
    void windowsAndDialogs()
    {
        m_window->show();
        checkLayout(m_window.get(), u"editor-window"_s);
        FindReplaceDialog finder(*m_window->Model(), *m_window->UndoStack(), m_window.get());
        LanguagesDialog languages({u"de"_s, u"en"_s}, m_window.get());
        languages.show();
        languages.adjustSize();                                     // the size it opens at, having no size of its own
        checkLayout(&languages, u"editor-languages"_s);             // each box named by the label Alt reaches it by
        for (QWidget *w : QList<QWidget *> {&finder, &languages}) { // the manual's pictures
            w->show();
            QVERIFY(SaveScreenshot(w->grab().toImage(), u"editor-"_s + w->objectName() + u".png"_s));
        }
    }

    void editsUndoAndRedo()
    {
        ChapterModel &model = open({u"eins"_s, u"zwei"_s, u"drei"_s});
        QUndoStack *undo = m_window->UndoStack();
        const QStringList start {u"eins"_s, u"zwei"_s, u"drei"_s};
        model.setData(model.index(1, ChapterModel::Answer), u"two"_s, Qt::EditRole);
        undo->undo();
        QCOMPARE(model.Text(1, ChapterModel::Answer), u"a2"_s);
        QVERIFY(!m_window->isWindowModified());
        undo->redo();

        // Cards that are not next to each other deleted; two moved up.
        select({0, 2});
        m_window->DeleteCards();
        QCOMPARE(questions(), QStringList({u"zwei"_s}));
        undo->undo();
        QCOMPARE(questions(), start);
        select({1, 2});
        m_window->MoveCards(-1);
        QCOMPARE(questions(), QStringList({u"zwei"_s, u"drei"_s, u"eins"_s}));
        undo->undo();
        QCOMPARE(questions(), start);

        // Sorting: cards move whole.
        m_window->SortBy(ChapterModel::Question);
        QCOMPARE(questions(), QStringList({u"drei"_s, u"eins"_s, u"zwei"_s}));
        QCOMPARE(model.Text(2, ChapterModel::Answer), u"two"_s);
        undo->undo();
        QCOMPARE(questions(), start);
    }

    // A card added empty is edited at once and flagged until typed; cards
    // imported are one step, a card too long flagged to mend before saving.
    void cardsAddedAndImported()
    {
        ChapterModel &model = open({u"eins"_s, u"zwei"_s});
        m_window->show();
        m_window->Table()->setCurrentIndex(model.index(0, 1));
        m_window->AddCard();
        WriteFileBytes(path(u"more.csv"_s),
                       "Question,Answer,Note\ndrei,three,\nvier,\"four, 4\",\nfünf," + QByteArray(120, 'x') + ",\n");
        m_env->prompter.onModal = [](QObject *) { return int(QDialog::Accepted); }; // names line detected
        QVERIFY(m_window->ImportFile(path(u"more.csv"_s)));
        m_window->GoToNextProblem();
        checkLayout(m_window.get(), u"editor-imported"_s);
        m_window->UndoStack()->undo();
        m_window->UndoStack()->undo();
        QCOMPARE(questions(), QStringList({u"eins"_s, u"zwei"_s}));
    }

    // Question 50 + answer + note 6 bytes of the 116 the texts share: an
    // answer of 61 makes the card 129 bytes, refused; 60 fits exactly.
    void recordLimits()
    {
        ChapterModel &model = open({u"eins"_s, u"zwei"_s});
        model.setData(model.index(0, ChapterModel::Question), QString(50, u'q'), Qt::EditRole);
        model.setData(model.index(0, ChapterModel::Answer), QString(61, u'a'), Qt::EditRole);
        model.setData(model.index(0, ChapterModel::Note), u"nnnnnn"_s, Qt::EditRole);
        const QString target = path(u"limit.zel"_s);
        m_env->prompter.fileAnswers = {target};
        QVERIFY(!m_window->SaveAs());
        QVERIFY(!QFileInfo::exists(target));
        QCOMPARE(m_env->prompter.seen(),
                 QStringList(Box(u"Chapter Not Saved"_s,
                                 u"Card 1 can't be saved: the card takes 129 bytes, more than the 128 of a chapter "
                                 "record (question, answer and note may have 116 bytes together). Nothing was "
                                 "written."_s,
                                 MsgIcon::Exclamation)));
        QVERIFY(m_window->isWindowModified());

        model.setData(model.index(0, ChapterModel::Answer), QString(60, u'a'), Qt::EditRole);
        m_env->prompter.fileAnswers = {target};
        QVERIFY(m_window->SaveAs());
        QVERIFY(!m_window->isWindowModified());
        QCOMPARE(ReadFileBytes(target),
                 chapterFile({{QByteArray(50, 'q'), QByteArray(60, 'a'), "nnnnnn"}, {"zwei", "a2", "n2"}}));
        // A script Windows-1252 lacks makes the chapter UTF-8, and the status
        // bar says so; saved to the file it was saved as, without asking.
        model.setData(model.index(0, ChapterModel::Note), u"n→"_s, Qt::EditRole);
        QCOMPARE(m_window->EncodingNote()->text(), u"Saved as UTF-8"_s);
        QVERIFY(m_window->Save());
        QCOMPARE(ReadFileBytes(target),
                 bytes::header(kChapter, 4, 2, "Titel", "utf-8") + bytes::placeholder()
                         + bytes::entry(QByteArray(50, 'q'), -1, QByteArray(60, 'a'), 0, "n\xE2\x86\x92")
                         + bytes::entry("zwei", -1, "a2", 0, "n2"));
    }

    void findAndReplace()
    {
        ChapterModel &model = open({u"der Hund"_s, u"die Katze"_s, u"der Vogel"_s});
        findreplace::Options o;
        o.text = u"DER"_s;
        QCOMPARE(findreplace::ReplaceAll(model, *m_window->UndoStack(), o, u"ein"_s), 2);
        QCOMPARE(questions(), QStringList({u"ein Hund"_s, u"die Katze"_s, u"ein Vogel"_s}));
        m_window->UndoStack()->undo(); // one step: what follows finds both again

        // The window says where it found the text, as a person counts cards.
        FindReplaceDialog dialog(model, *m_window->UndoStack());
        dialog.show();
        checkLayout(&dialog, u"editor-find-replace"_s);
        auto find = [&dialog](const QString &text) {
            dialog.findText->setText(text);
            dialog.findNext->click();
            return dialog.result->text();
        };
        QCOMPARE(find(u"Vogel"_s), u"Card 3"_s);
        // Replace changes the card found, then finds the next.
        dialog.replaceText->setText(u"ein"_s);
        QCOMPARE(find(u"der"_s), u"Card 1"_s);
        dialog.replace->click();
        QCOMPARE(questions(), QStringList({u"ein Hund"_s, u"die Katze"_s, u"der Vogel"_s}));
        QCOMPARE(dialog.result->text(), u"Card 3"_s);
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
        QMenu *recent = nullptr; // and offered again under File
        for (QMenu *menu : m_window->findChildren<QMenu *>())
            recent = menu->title() == u"Open &Recent"_s ? menu : recent;
        Q_EMIT recent->aboutToShow();
        QCOMPARE(recent->actions().isEmpty() ? QString() : recent->actions().first()->toolTip(), chapter);
        QCOMPARE(ReadFileBytes(chapter), // the escape kept as typed
                 bytes::header(kChapter, 4, 2, "Meine W\xF6rter") + bytes::placeholder()
                         + bytes::entry("grasc(252)n", -1, "green", 0, {}) + bytes::entry("blau", -1, "blue", 0, {}));
    }
};

QTEST_MAIN(EditorTest)
#include "tst_editor.moc"
