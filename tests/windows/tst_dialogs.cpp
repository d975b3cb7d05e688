// SPDX-License-Identifier: GPL-3.0-or-later
// The program's windows as a person meets them, and the options window's pages.
#include "core/extrasettings.h"
#include "dialogfixture.h"
#include "windows/frmabout.h"
#include "windows/frmchapter.h"
#include "windows/frmoptions.h"
#include "windows/frmprogress.h"
#include "windows/frmsetup.h"
#include "windows/frmsplash.h"
#include "windows/frmviewer.h"
#include "windows/screenfit.h"

#include <QListWidget>
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

} // namespace

class DialogsTest : public DialogFixture
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { InstallFontSubstitutes(); }
    void init() { beginTest(); }
    void cleanup() { endTest(); }

    // Every window fits a 1024x600 screen with its frame at its opening size. Every
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

    // "Make cards trouble by default": now (every card reset), at the next run (latched: it stays so when the
    // window opens again, until the box is let go of), or not at all. Cancelled from the keyboard: Space asks too.
    void troubleDefaultLatch_data()
    {
        QTest::addColumn<MsgResult>("answer");
        QTest::newRow("yes: now") << MsgResult::Yes;
        QTest::newRow("no: next run") << MsgResult::No;
        QTest::newRow("cancel, by the keyboard") << MsgResult::Cancel;
    }
    void troubleDefaultLatch()
    {
        QFETCH(MsgResult, answer);
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
        if (answer == MsgResult::Cancel)
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

    // Last: once the program has ended, a modal window of a later test would close at once.
    // Apply puts a picked colour in force and in "sys.zel"; a study switch is kept in the additions' own file at
    // once. "Reset all settings" waits for the program's end, then takes both files along.
    void applyThenResetAtExit()
    {
        frmOptions *options = frmOptions::Instance();
        QVERIFY(m_env->logLines().contains(u" .. frmOptions renderer loaded/n"_s));
        options->Check6->click(); // show the notes
        QVERIFY(ReadFileBytes(ExtraSettings::Path()).contains("study.show_notes=true\n"));
        QVERIFY(QFile::remove(ExtraSettings::Path()) && QDir().mkdir(ExtraSettings::Path()));
        options->Check7->click(); // a switch that cannot be saved says so
        QCOMPARE(m_env->prompter.boxTitles(), QStringList(u"Options Not Saved"_s));
        QVERIFY(QDir().rmdir(ExtraSettings::Path()));
        m_env->prompter.boxes.clear();
        options->LV->setCurrentRow(1); // backcolor b
        m_env->prompter.colorAnswers = {0x57FF12u};
        options->Command3->click();
        options->Check4->click();
        QCOMPARE(m_env->prompter.seen(),
                 QStringList(Box(u"Preferences"_s,
                                 u"You will lose all custom settings if you continue with this option. If you "
                                 "are unsure, uncheck the box before closing the Preferences dialog."_s,
                                 MsgIcon::Information)));
        options->Command1->click();
        FlushDeletes();
        QVERIFY(m_env->logLines().contains(u" .. frmOptions renderer halted/n"_s));
        QVERIFY(g_DeleteMasterOnExit);
        ikorvalite db; // the program goes on normally
        QVERIFY(db.Mount(m_env->path(u"sys.zel"_s), false));
        QCOMPARE(db.GetNumber(u"backcolor_b"_s, 0).value, 0x57FF12);
        QCOMPARE(frmMain::Existing()->CardSurface()->image().pixel(320, 10), qRgb(0x12, 0xFF, 0x57));
        modMain::DestroySystem(0, false);
        FlushDeletes();
        QVERIFY(!QFileInfo::exists(m_env->path(u"sys.zel"_s)));
        QVERIFY(!QFileInfo::exists(ExtraSettings::Path()));
        QVERIFY(!g_Extras.Contains(u"study.show_notes"_s)); // nothing left for a late save to write back
    }
};

QTEST_MAIN(DialogsTest)
#include "tst_dialogs.moc"
