// SPDX-License-Identifier: GPL-3.0-or-later
#include "programfixture.h"
#include "settings/settingskeys.h"

namespace {

// A kept session's deck of one card, by hand: "Hund"/"dog", a trouble card
// viewed 3 times, then the empty slot.
QByteArray keptDeck()
{
    using namespace bytes;
    return i16(1) + text("Hund") + text("dog") + text("note") + text("") + i16(-1) + i16(3) + text("K") + text("")
            + text("") + text("") + text("") + i16(0) + i16(0) + text("");
}

QByteArray keptState(const QByteArray &deck, const QByteArray &lines)
{
    return "format=1\ndeck_bytes=" + QByteArray::number(deck.size())
            + "\ndeck_sha256=" + QCryptographicHash::hash(deck, QCryptographicHash::Sha256).toHex() + "\n" + lines;
}

// What a person sees of the session: the deck's bytes, the card, its texts,
// the boxes.
QStringList sessionSeen()
{
    QByteArray deck;
    WriteProgressImage(g_Deck, deck, nullptr);
    const r_data *m = modrender::Metrics();
    using C = r_data::Corner;
    frmMain *main = frmMain::Existing();
    QStringList seen {QString::fromLatin1(deck.toHex()), QString::number(modrender::CurrentCard)};
    for (C corner : {C::TopLeft, C::TopRight, C::BottomLeft})
        seen << m->CornerText(corner);
    return seen << m->MainText() << m->NoteText() << (main->Check1->Checked() ? u"marked"_s : u"-"_s)
                << (main->Check2->Checked() ? u"trouble only"_s : u"-"_s);
}

} // namespace

// Studying, progress files, kept sessions and what a session changes.
class SessionsTest : public ProgramFixture
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { prepareProgramDirectory(); }
    void init() { beginTest(); }
    void cleanup() { endTest(); }

    // A study window placed off screen comes back on it; what the person set
    // up (transparency, the window's place) is there at the next start.
    void studyAndExit()
    {
        startProgram();
        g_MasterDb->SetValue(u"frmMain.left"_s, QString(), 50000, u"metrics"_s); // far off screen
        study({0, 2});
        frmMain *main = frmMain::Existing();
        QCOMPARE(main->pos().x(), 50000 / 15);
        QCOMPARE(main->focusWidget(), main); // the card window itself takes the keys
        modrender::AlphaLevel = 120;
        modrender::AlphaEffects = true;
        main->move(123, 45);
        main->HandleKey(88, 0); // X
        FlushDeletes();
        QVERIFY(g_ProcessReleased && !frmMain::Existing() && !g_Watcher); // the watcher let go before the process is
        ikorvalite db;
        QVERIFY(db.Mount(master(), false));
        for (const auto &[key, value] : {std::pair(u"alpha_level"_s, 120),
                                         {u"alpha_effects"_s, -1},
                                         {u"frmMain.left"_s, 1845},
                                         {u"frmMain.top"_s, 675}})
            QCOMPARE(db.GetNumber(key, 0).value, value);
    }

    // Progress saved; a new session keeps the study window, hidden and
    // cleared, and brings the chapter window back; the progress resumed from
    // it, then as a file opened with the program from the desktop.
    void newSessionAndProgressResumed()
    {
        startProgram();
        study({0});
        frmMain *main = frmMain::Existing();
        main->HandleKey(39, 0);
        main->HandleKey(32, 0); // card 2 becomes a trouble card
        const QString saved = m_env->path(u"saves/progress.vxs"_s);
        QVERIFY(QDir().mkpath(m_env->path(u"saves"_s)));
        m_env->prompter.fileAnswers = {saved};
        main->mP_sp->trigger();
        // The dialog opens in the home folder, the next time where the last progress file went.
        QCOMPARE(m_env->prompter.fileDialogs.back().fileName, g_BaseDirectory);

        main->Check2->SetChecked(true);
        m_env->log->clear();
        main->mP_n->trigger();
        FlushDeletes();
        QCOMPARE(frmMain::Existing(), main);
        QVERIFY(!main->isVisible() && !main->Studying() && !g_ProcessReleased);
        QVERIFY(!main->Check1->Checked() && !main->Check2->Checked());
        const QStringList renewed = m_env->logLines(); // the system brought up again, not the process
        QCOMPARE(renewed.mid(0, 2),
                 QStringList({u" ***************************/n"_s, u" -- Starting New Session --/n"_s}));
        QVERIFY(renewed.contains(u" .. skipping frmMain unloader/n"_s));
        QVERIFY(!renewed.contains(u" .. no previously running instance has been found./n"_s));
        for (const LogRecord::Line &line : m_env->log->lines)
            QCOMPARE(line.level, kLogProgress);
        QVERIFY(modMain::ChapterWindow() && modMain::ChapterWindow()->isVisible());
        QCOMPARE(g_Deck.UBound(), 0); // flushed

        frmChapter *chapters = modMain::ChapterWindow();
        const int listed = chapters->LV1->topLevelItemCount();
        chapters->LV1->clearSelection();
        chapters->LV1->topLevelItem(listed - 1)->setSelected(true);
        chapters->RemoveSelected(); // the shorter list reaches the disk once the progress is resumed
        m_env->prompter.fileAnswers = {saved};
        chapters->ToolbarCommand(u"lsaved"_s);
        FlushDeletes();
        QCOMPARE(m_env->prompter.fileDialogs.back().fileName, m_env->path(u"saves"_s));
        ikorvalite db;
        db.Mount(master(), false);
        QCOMPARE(db.GetNumber(settings::kFileListCount, 0).value, listed - 1);
        QVERIFY(main->isVisible() && !modMain::ChapterWindow());
        QCOMPARE(g_Deck.UBound(), 37);
        QVERIFY(g_Deck[1].isTrouble());
        QCOMPARE(g_Deck[0].timesViewed, qint16(2)); // shown again from the first card
        QVERIFY(m_env->logLines().contains(u" .. loaded 37 nodes/n"_s));

        main->mP_n->trigger();
        FlushDeletes();
        modMain::OpenFileArguments({saved});
        FlushDeletes();
        QVERIFY(main->isVisible() && !modMain::ChapterWindow() && g_Deck.UBound() == 37);
        main->close(); // the new session's window ends the program as the first one did
        FlushDeletes();
        QVERIFY(g_ProcessReleased);
    }

    // The session on show is kept when studying ends, and comes back as it
    // was left (no view counted), as long as the option keeps sessions.
    void keptSessionResumed_data()
    {
        QTest::addColumn<bool>("exit"); // else a new session
        QTest::addColumn<QString>("firstSide");
        QTest::addColumn<bool>("keep");
        QTest::addColumn<bool>("blocked"); // a folder where the deck goes
        QTest::newRow("exit, the answer on show") << true << u"question"_s << true << false;
        QTest::newRow("new session, answer first, flipped") << false << u"answer"_s << true << false;
        QTest::newRow("keeping off") << true << u"question"_s << false << false;
        QTest::newRow("the deck cannot be written") << false << u"question"_s << true << true;
    }
    void keptSessionResumed()
    {
        QFETCH(bool, exit);
        QFETCH(QString, firstSide);
        QFETCH(bool, keep);
        QFETCH(bool, blocked);
        startProgram();
        g_Extras.SetString(u"study.first_side"_s, firstSide);
        g_Extras.SetString(u"study.show_notes"_s, u"true"_s);
        g_Extras.SetBool(u"study.keep_session"_s, keep);
        study({1});
        frmMain *main = frmMain::Existing();
        for (int key : {39, 39, 32, 84, 13}) // two on, mark it, trouble cards only, flip
            main->HandleKey(key, 0);
        const QStringList seen = sessionSeen();
        const QString deck = inHome(u"lastsession.vxs"_s);
        if (blocked)
            QVERIFY(QDir().mkdir(deck));
        if (exit) {
            main->HandleKey(88, 0);
            FlushDeletes();
            QVERIFY(g_ProcessReleased);
            restartProgram();
        } else {
            main->mP_n->trigger();
        }
        FlushDeletes();
        QCOMPARE(m_env->prompter.boxTitles(), blocked ? QStringList(u"Session Not Kept"_s) : QStringList());
        frmChapter *chapters = modMain::ChapterWindow();
        QCOMPARE(chapters->findChild<QAction *>(u"lsession"_s)->isVisible(), keep && !blocked);
        QCOMPARE(chapters->Notice->isVisibleTo(chapters), blocked); // the folder is set aside
        QCOMPARE(QFileInfo(deck).isFile(), keep && !blocked);
        if (!keep || blocked)
            return;
        if (!exit) // the manual's picture of a kept session on offer
            QVERIFY(SaveScreenshot(chapters->grab().toImage(), u"chapter-window-session.png"_s));
        QVERIFY(QTest::qWaitForWindowActive(chapters));
        QTest::keyClick(chapters->LV1, Qt::Key_L, Qt::ControlModifier);
        FlushDeletes();
        QVERIFY(!modMain::ChapterWindow() && frmMain::Existing()->isVisible());
        QCOMPARE(sessionSeen(), seen);
        QVERIFY(!modrender::CanUndo());
    }

    // A damaged kept session is set aside, said in one line under the list,
    // and not offered; nothing else is asked or lost.
    void damagedSessionSetAside_data()
    {
        QTest::addColumn<QByteArray>("deck"); // "huge": just over the largest a deck may be
        QTest::addColumn<QByteArray>("state");
        QTest::addColumn<QString>("why"); // empty: intact
        const QByteArray deck = keptDeck(), cut = deck.chopped(3);
        const QByteArray fine = "card=0\nside=question\nfirst_side=question\ntrouble_only=false\n";
        auto row = [](const char *name, const QByteArray &file, const QByteArray &state, const QString &why) {
            QTest::newRow(name) << file << state << why;
        };
        QByteArray largest = keptState(deck, fine) + '#';
        largest += QByteArray(64 * 1024 - largest.size(), '#');
        row("intact, as large as a state may be", deck, largest, QString());
        row("the deck cut short", cut, keptState(cut, fine), u"lastsession.vxs: it ends inside card 2 of 2"_s);
        row("the state of another deck", deck, keptState(deck + "x", fine),
            u"lastsession.vxs is not the deck that lastsession.txt belongs to"_s);
        row("a card past the deck", deck, keptState(deck, QByteArray(fine).replace("card=0", "card=2")),
            u"lastsession.txt names no card of the deck"_s);
        row("a deck far too large", "huge", keptState(deck, fine),
            u"lastsession.vxs: it is far larger than a kept session can be"_s);
        row("not a session", deck, "\x01\x02junk", u"lastsession.txt is not a session this version keeps"_s);
    }
    void damagedSessionSetAside()
    {
        QFETCH(QByteArray, deck);
        QFETCH(QByteArray, state);
        QFETCH(QString, why);
        const QString vxs = inHome(u"lastsession.vxs"_s), txt = inHome(u"lastsession.txt"_s);
        QVERIFY(QDir().mkpath(inHome({})));
        if (QFile huge(vxs); deck == "huge") // just over 64 MiB, sparse
            QVERIFY(huge.open(QIODevice::WriteOnly) && huge.resize(64 * 1024 * 1024 + 1));
        else
            WriteFileBytes(vxs, deck);
        WriteFileBytes(txt, state);
        startProgram();
        frmChapter *chapters = modMain::ChapterWindow();
        QCOMPARE(chapters->findChild<QAction *>(u"lsession"_s)->isVisible(), why.isEmpty());
        QVERIFY(m_env->prompter.boxes.empty());
        if (why.isEmpty()) {
            QVERIFY(!chapters->Notice->isVisibleTo(chapters));
            chapters->ToolbarCommand(u"lsession"_s);
            QCOMPARE(modrender::Metrics()->MainText(), u"Hund"_s);
            QCOMPARE(g_Deck[0].timesViewed, qint16(3));
            return;
        }
        QCOMPARE(chapters->Notice->text(),
                 u"The last session couldn't be resumed: "_s + why
                         + u"; its files were set aside as lastsession-damaged.vxs and lastsession-damaged.txt."_s);
        QVERIFY(!QFileInfo::exists(vxs) && !QFileInfo::exists(txt));
        QCOMPARE(ReadFileBytes(inHome(u"lastsession-damaged.txt"_s)), state);
        QVERIFY(QFileInfo::exists(inHome(u"lastsession-damaged.vxs"_s)));
    }
};

QTEST_MAIN(SessionsTest)
#include "tst_sessions.moc"
