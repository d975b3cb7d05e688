// SPDX-License-Identifier: GPL-3.0-or-later
// The program's windows as a person meets them, and the options window's pages.
#include "core/extrasettings.h"
#include "dialogfixture.h"
#include "korva/korvaformat.h"
#include "settings/settingskeys.h"
#include "windows/frmabout.h"
#include "windows/frmchapter.h"
#include "windows/frmoptions.h"
#include "windows/frmprogress.h"
#include "windows/frmsetup.h"
#include "windows/frmsplash.h"
#include "windows/frmviewer.h"
#include "windows/qtplatform.h"
#include "windows/screenfit.h"
#include "windows/typedanswer.h"
#include "windows/windowplacement.h"

#include <QAbstractButton>
#include <QColorDialog>
#include <QListWidget>
#include <QRadioButton>
#include <QTabBar>

namespace {

// A window of the study program by its name; made here unless the program
// keeps one of its own.
QWidget *openWindow(const QString &window, std::unique_ptr<QWidget> &owned)
{
    const std::map<QString, std::function<QWidget *()>>
            open {{u"frmMain"_s, [] { return frmMain::Existing(); }},
                  {u"frmFind"_s, [] { return frmFind::Instance(); }},
                  {u"frmViewer"_s, [] { return frmViewer::Instance(); }},
                  {u"frmOptions"_s, [] { return frmOptions::Instance(); }},
                  {u"frmChapter"_s, [&] { return (owned = std::make_unique<frmChapter>()).get(); }},
                  {u"frmSetup"_s, [&] { return (owned = std::make_unique<frmSetup>()).get(); }},
                  {u"frmAbout"_s, [&] { return (owned = std::make_unique<frmAbout>()).get(); }},
                  {u"frmProgress"_s, [&] { return (owned = std::make_unique<frmProgress>()).get(); }},
                  {u"frmSplash"_s, [&] { return (owned = std::make_unique<frmSplash>()).get(); }}};
    return open.at(window)();
}

// The Study page's switches: Check5, the three Option1, Check6, Check7, Check8.
QList<QAbstractButton *> studyControls(frmOptions *o)
{
    return {o->Check5, o->Option1[0], o->Option1[1], o->Option1[2], o->Check6, o->Check7, o->Check8};
}

} // namespace

class DialogsTest : public DialogFixture
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { InstallFontSubstitutes(); }
    void init() { beginTest(); }
    void cleanup() { endTest(); }

    // Every window fits a 1024x600 screen with its frame, at its opening size and at its smallest. Every
    // control of it, on every page, is reached by keyboard, and no two on show answer to the same Alt+letter.
    void everyWindow_data()
    {
        QTest::addColumn<QString>("window");
        for (const char *name : {"frmMain", "frmChapter", "frmFind", "frmViewer", "frmOptions", "frmSetup", "frmAbout",
                                 "frmProgress", "frmSplash"})
            QTest::newRow(name) << QString::fromLatin1(name);
    }
    void everyWindow()
    {
        QFETCH(QString, window);
        std::unique_ptr<QWidget> owned;
        QWidget *w = openWindow(window, owned);
        w->show();
        auto *tabs = w->findChild<QTabBar *>(u"ts"_s);
        for (int page = 0; page < (tabs ? tabs->count() : 1); ++page) {
            if (tabs)
                tabs->setCurrentIndex(page);
            checkTabOrder(w);
            checkMnemonics(w);
            if (QTest::currentTestFailed())
                return;
            const QString name = u"window-"_s + window + (tabs ? u"-%1"_s.arg(page + 1) : QString());
            checkLayout(w, name);
            QVERIFY(SaveScreenshot(w->grab().toImage(), name + u".png"_s)); // for the manual
        }
        if (tabs)
            tabs->setCurrentIndex(0); // the page it opens at
        w->adjustSize();
        const QSize room(1024 - 2 * kFrameSides, 600 - kFrameTop - kFrameSides);
        QVERIFY2(w->width() <= room.width() && w->height() <= room.height(),
                 qPrintable(u"%1x%2"_s.arg(w->width()).arg(w->height())));
        const QSize smallest = w->minimumSizeHint().expandedTo(w->minimumSize());
        QVERIFY(smallest.width() <= room.width() && smallest.height() <= room.height());
    }

    // A window that opens where it likes is made to fit the screen's free area with its frame, and moved onto it.
    void fitInto_data()
    {
        QTest::addColumn<QRect>("window"); // where it is, and its size
        QTest::addColumn<QSize>("minimum");
        QTest::addColumn<QRect>("fitted"); // on a screen whose free area is 1024x600 at (100, 50)
        QTest::newRow("past the right and the bottom")
                << QRect(1000, 600, 400, 300) << QSize(0, 0) << QRect(716, 342, 400, 300);
        QTest::newRow("past the left and the top") << QRect(0, 0, 400, 300) << QSize(0, 0) << QRect(108, 82, 400, 300);
        QTest::newRow("larger than the screen") << QRect(0, 0, 2000, 1000) << QSize(0, 0) << QRect(108, 82, 1008, 560);
        QTest::newRow("a minimum larger than the screen")
                << QRect(500, 400, 1200, 700) << QSize(1200, 700) << QRect(108, 82, 1200, 700);
    }
    void fitInto()
    {
        QFETCH(QRect, window);
        QFETCH(QSize, minimum);
        QFETCH(QRect, fitted);
        QWidget w;
        w.setMinimumSize(minimum);
        w.setGeometry(window);
        FitInto(&w, QRect(100, 50, 1024, 600));
        QCOMPARE(QRect(w.pos(), w.size()), fitted);
    }

    // A chapter whose path the settings file cannot hold is refused and not listed.
    void chapterList()
    {
        frmChapter chapters;
        const QString path = m_env->path(QString(120, u'd') + u"/c.zel"_s);
        WriteFileBytes(path,
                       bytes::header("generated automatically by the Vocabrix Editor v1.21", 4, 1)
                               + bytes::placeholder() + bytes::entry("a", -1, "b", 0, {}));
        const int listed = chapters.LV1->topLevelItemCount();
        chapters.AddChapterFile(path);
        QCOMPARE(m_env->prompter.seen(),
                 QStringList(Box(u"Chapter Not Added"_s,
                                 u"The chapter '"_s + path
                                         + u"' can't be remembered: its path is too long for the settings file. Move "
                                           "it to a folder with a shorter name and add it again."_s,
                                 MsgIcon::Exclamation)));
        QCOMPARE(chapters.LV1->topLevelItemCount(), listed);
    }

    // The options come with their own renderer (told in the log); alpha off
    // greys its controls; Escape closes like Close, keeping the switches as
    // changed and the window's place.
    void optionsLoad()
    {
        modrender::AlphaLevel = 77;
        modrender::AlphaEffects = true;
        g_OsAlpha = true;
        g_ShowMouseHover = false;
        m_env->log->clear();
        frmOptions *options = frmOptions::Instance();
        options->show();
        QVERIFY(m_env->logLines().contains(u" .. frmOptions renderer loaded/n"_s));
        QTest::mouseClick(options->ts, Qt::LeftButton, {}, options->ts->tabRect(1).center());
        auto click = [](QWidget *box) { QTest::mouseClick(box, Qt::LeftButton, {}, QPoint(8, box->height() / 2)); };
        click(options->Check1);
        QVERIFY(!modrender::AlphaEffects);
        checkLayout(options, u"options-alpha-off"_s);
        click(options->Check2);
        QVERIFY(g_ShowMouseHover);

        m_env->log->clear();
        QTest::keyClick(options, Qt::Key_Escape);
        FlushDeletes();
        QVERIFY(!frmOptions::Existing());
        QCOMPARE(m_env->logLines().first(), u" .. frmOptions renderer halted/n"_s);
        QVERIFY(g_MasterDb->GetNumber(u"frmOptions.left"_s, 0).found);
        QVERIFY(!modrender::AlphaEffects && g_ShowMouseHover);
    }

    // The Study page: every control by its key, saved at once in the
    // additions' own file ("sys.zel" stays as it was), and shown so when the page opens again.
    void studyPage_data()
    {
        QTest::addColumn<int>("control");   // of studyControls()
        QTest::addColumn<QString>("saved"); // none: the file cannot be written
        QTest::newRow("keep no sessions") << 0 << u"study.keep_session=false"_s;
        QTest::newRow("answer first") << 2 << u"study.first_side=answer"_s;
        QTest::newRow("either side at random") << 3 << u"study.first_side=random"_s;
        QTest::newRow("notes, at once") << 4 << u"study.show_notes=true"_s;
        QTest::newRow("step over the empty slot") << 5 << u"study.skip_empty_slot=true"_s;
        QTest::newRow("type the answer, at once") << 6 << u"study.type_answer=true"_s;
        QTest::newRow("the file cannot be written") << 4 << QString();
    }
    void studyPage()
    {
        QFETCH(int, control);
        QFETCH(QString, saved);
        const bool writable = !saved.isEmpty();
        const QByteArray master = ReadFileBytes(m_env->path(u"sys.zel"_s));
        if (!writable)
            QVERIFY(QDir(m_env->home()).mkdir(u"extras.conf"_s));
        g_Deck[0].note = u"a note"_s;
        modrender::ToggleAnswer(); // the answer on show
        frmOptions *options = frmOptions::Instance();
        options->show();
        QVERIFY(QTest::qWaitForWindowActive(options));
        QTest::mouseClick(options->ts, Qt::LeftButton, {}, options->ts->tabRect(2).center());
        const QImage card = modrender::Renderer()->Surface()->Image();
        QAbstractButton *target = studyControls(options)[control];
        const QChar key = target->text().at(target->text().indexOf(u'&') + 1).toUpper();
        QTest::keyClick(options, char(key.unicode()), Qt::AltModifier);
        QTRY_VERIFY(target->isChecked() != (control == 0)); // a key clicks a moment later
        const QByteArray file = ReadFileBytes(ExtraSettings::Path());
        QCOMPARE(file.contains(saved.toUtf8() + '\n'), writable);
        QCOMPARE(m_env->prompter.boxTitles(), writable ? QStringList() : QStringList(u"Options Not Saved"_s));
        QCOMPARE(modrender::Metrics()->NoteText(), control == 4 ? u"a note"_s : QString());
        if (control == 4) // the card drawn again, with the note
            QTRY_VERIFY(modrender::Renderer()->Surface()->Image() != card);
        QCOMPARE(frmMain::Existing()->Typing->isVisible(), control == 6);
        QCOMPARE(ReadFileBytes(m_env->path(u"sys.zel"_s)), master);
        forms::Unload(options);
        FlushDeletes();
        QCOMPARE(studyControls(frmOptions::Instance())[control]->isChecked(), control != 0);
    }

    // "Make cards trouble by default": now (every card reset), at the next run (latched: it stays so when the
    // window opens again, until the box is let go of), or not at all.
    void troubleDefaultLatch_data()
    {
        QTest::addColumn<MsgResult>("answer");
        QTest::addColumn<bool>("byKey");
        QTest::newRow("yes: now") << MsgResult::Yes << false;
        QTest::newRow("no: next run") << MsgResult::No << false;
        QTest::newRow("cancel") << MsgResult::Cancel << false;
        QTest::newRow("yes by the keyboard") << MsgResult::Yes << true;
    }
    void troubleDefaultLatch()
    {
        QFETCH(MsgResult, answer);
        QFETCH(bool, byKey);
        const QString plain = u"Make cards trouble by default"_s, latched = plain + u" (latched: True)"_s;
        frmOptions *options = frmOptions::Instance();
        options->show();
        options->ts->setCurrentIndex(1);
        m_env->prompter.answers = {answer};
        const QPoint onTheBox(8, options->Check3->height() / 2);
        g_ShuffleRunning = true; // while the deck is shuffled the box stays as it is, unasked
        QTest::mouseClick(options->Check3, Qt::LeftButton, {}, onTheBox);
        g_ShuffleRunning = false;
        QVERIFY(m_env->prompter.boxes.empty() && !options->Check3->isChecked());
        if (byKey)
            QTest::keyClick(options->Check3, Qt::Key_Space);
        else
            QTest::mouseClick(options->Check3, Qt::LeftButton, {}, onTheBox);
        QCOMPARE(m_env->prompter.seen(),
                 QStringList(Box(u"Persistency"_s,
                                 u"You can enforce this change immediately or at the program's next run. If you "
                                 "enforce it immediately, then all cards' trouble status will be reset."_s,
                                 MsgIcon::Question, MsgButtons::YesNoCancel)));
        const bool now = answer == MsgResult::Yes;
        QCOMPARE(g_TroubleDefaultCurrent, now);
        QCOMPARE(g_TroubleByDefault, answer != MsgResult::Cancel);
        QCOMPARE(options->Check3->isChecked(), now); // shows the value in force
        QCOMPARE(options->Check3->text(), answer == MsgResult::No ? latched : plain);
        QCOMPARE(frmMain::Existing()->Check2->Checked(), now);
        QCOMPARE(frmMain::Existing()->Check1->Checked(), now); // the card on show again
        for (const Card &card : g_Deck.cards())
            QCOMPARE(card.isTrouble(), now); // every slot, the empty one too
        if (answer != MsgResult::No)
            return;
        forms::Unload(options);
        QVERIFY(!options->isVisible()); // gone from the screen at once, deleted a moment later
        FlushDeletes();
        options = frmOptions::Instance();
        options->show();
        options->ts->setCurrentIndex(1);
        QCOMPARE(options->Check3->text(), latched);
        QVERIFY(!options->Check3->isChecked());
        // Pressed, then let go off the box: no change, and the latch goes.
        m_env->prompter.boxes.clear();
        QTest::mousePress(options->Check3, Qt::LeftButton, {}, onTheBox);
        QTest::mouseRelease(options->Check3, Qt::LeftButton, {}, QPoint(-40, onTheBox.y()));
        QVERIFY(m_env->prompter.boxes.empty());
        QVERIFY(!options->Check3->isChecked());
        QVERIFY(!g_TroubleByDefault);
        QCOMPARE(options->Check3->text(), plain);
    }

    void colorsCloseVersusApply()
    {
        const QByteArray before = ReadFileBytes(m_env->path(u"sys.zel"_s));
        frmOptions *options = frmOptions::Instance();
        options->LV->setCurrentRow(1); // backcolor b
        QCOMPARE(options->SwatchColor(), 14570825u);
        QVERIFY(options->Command3->isEnabled());
        QtPrompter dialogs; // the real colour dialog: it offers the swatch's colour, its choice is taken
        SetPrompter(&dialogs);
        QColor offered;
        QTimer::singleShot(0, [&offered] {
            auto *dialog = qobject_cast<QColorDialog *>(QApplication::activeModalWidget());
            QVERIFY(dialog);
            offered = dialog->currentColor();
            dialog->setCurrentColor(QColor(0x12, 0xFF, 0x57));
            dialog->accept();
        });
        options->Command3->click();
        SetPrompter(&m_env->prompter);
        QCOMPARE(offered, QColor(0x49, 0x55, 0xDE));
        QCOMPARE(options->SwatchColor(), 0x57FF12u);
        const QImage &preview = options->Picture2->Surface()->image(); // shown at once
        QCOMPARE(preview.pixel(preview.width() / 2, 10), qRgb(0x12, 0xFF, 0x57));
        options->Command2->click();
        FlushDeletes();
        QCOMPARE(ReadFileBytes(m_env->path(u"sys.zel"_s)), before);
        QCOMPARE(modrender::Metrics()->Color(u"backcolor_b"_s, 0), 14570825u);

        options = frmOptions::Instance();
        options->LV->setCurrentRow(1);
        m_env->prompter.colorAnswers = {0x00FF00u};
        options->Command3->click();
        options->Command1->click();
        FlushDeletes();
        QVERIFY(!frmOptions::Existing()); // OK closes it
        ikorvalite db;
        QVERIFY(db.Mount(m_env->path(u"sys.zel"_s), false));
        QCOMPARE(db.GetNumber(u"backcolor_b"_s, 0).value, 0x00FF00);
        // The card window and its controls take the scheme at once.
        const QImage &card = frmMain::Existing()->CardSurface()->image();
        QCOMPARE(card.pixel(320, 10), qRgb(0, 255, 0));
        QCOMPARE(frmMain::Existing()->zelFlatButton2->BackcolorMouse(), 0x00FF00u);

        // Defaults on the preview.
        options = frmOptions::Instance();
        options->Command4->click();
        QCOMPARE(options->PreviewMetrics()->Color(u"backcolor_b"_s, 0), 14570825u);
    }

    // Last: once the program has ended, a modal window of a later test would close at once.
    void resetHappensOnlyAtExit()
    {
        frmOptions *options = frmOptions::Instance();
        options->Check4->click();
        QCOMPARE(m_env->prompter.seen(),
                 QStringList(Box(u"Preferences"_s,
                                 u"You will lose all custom settings if you continue with this option. If you "
                                 "are unsure, uncheck the box before closing the Preferences dialog."_s,
                                 MsgIcon::Information)));
        options->Command1->click();
        FlushDeletes();
        QVERIFY(g_DeleteMasterOnExit);
        QVERIFY(QFileInfo::exists(m_env->path(u"sys.zel"_s))); // the program goes on normally
        QVERIFY(frmMain::Existing()->isVisible());
        g_Extras.SetBool(u"study.show_notes"_s, true); // the additions' settings go too
        QVERIFY(g_Extras.Save());
        modMain::DestroySystem(0, false);
        FlushDeletes();
        QVERIFY(!QFileInfo::exists(m_env->path(u"sys.zel"_s)));
        QVERIFY(!QFileInfo::exists(ExtraSettings::Path()));
        QVERIFY(!g_Extras.Contains(u"study.show_notes"_s)); // nothing left for a late save to write back
    }
};

QTEST_MAIN(DialogsTest)
#include "tst_dialogs.moc"
