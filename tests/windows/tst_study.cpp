// SPDX-License-Identifier: GPL-3.0-or-later
// The study window's commands: every key, click and menu entry, undo, and the shuffle.
#include "cards/shuffler.h"
#include "core/extrasettings.h"
#include "uitestsupport.h"
#include "windows/frmprogress.h"

#include <QMenu>

using namespace Qt::Literals::StringLiterals;

namespace {

// Card i of n lands in slot n - 1 - i: a shuffle that turns the deck round.
class ReversingRandom final : public RandomSource
{
public:
    explicit ReversingRandom(int cards) : m_cards(cards) {}
    void Seed(double) override {}
    double Next() override
    {
        if (onDraw)
            onDraw();
        return (m_cards - 1 - m_draws++) / 10000.0;
    }
    std::function<void()> onDraw;

private:
    int m_cards;
    int m_draws = 0;
};

// What a person can tell of the session, as "name=value" tokens.
QStringList observe(const TestEnvironment &env)
{
    frmMain *main = frmMain::Existing();
    int views = 0, trouble = 0;
    QStringList order, open;
    for (const Card &c : g_Deck.cards()) {
        views += c.timesViewed;
        trouble += c.isTrouble() ? 1 : 0;
        order << c.question;
    }
    for (QWidget *w : forms::Open())
        if (w->isVisible())
            open << forms::Name(w);
    QStringList dialogs, launches;
    for (const FileDialogRequest &d : env.prompter.fileDialogs)
        dialogs << d.title + u':' + d.filter;
    for (const FakePrompter::Launch &l : env.prompter.launches)
        launches << l.program;
    auto on = [](bool b) { return b ? u"on"_s : u"off"_s; };
    const r_data *metrics = modrender::Metrics();
    auto corner = [&](r_data::Corner c) { return metrics ? metrics->CornerText(c) : u"-"_s; };
    QStringList tokens {
            u"card="_s + QString::number(modrender::CurrentCard),
            u"text="_s + (metrics ? metrics->MainText() : u"-"_s),
            u"tl="_s + corner(r_data::Corner::TopLeft),
            u"tr="_s + corner(r_data::Corner::TopRight),
            u"bl="_s + corner(r_data::Corner::BottomLeft),
            u"br="_s + corner(r_data::Corner::BottomRight),
            u"check1="_s + on(main && main->Check1->Checked()),
            u"check2="_s + on(main && main->Check2->Checked()),
            u"trouble="_s + QString::number(trouble),
            u"views="_s + QString::number(views),
            u"order="_s + order.join(u','),
            u"open="_s + open.join(u','),
            u"menu="_s + on(main && main->mP->isVisible()),
            u"boxes="_s + env.prompter.boxTitles().join(u','),
            u"dialogs="_s + dialogs.join(u','),
            u"modal="_s + QStringList(env.prompter.modalWindows.begin(), env.prompter.modalWindows.end()).join(u','),
            u"launches="_s + launches.join(u','),
            u"released="_s + on(g_ProcessReleased),
    };
    return tokens.replaceInStrings(u" "_s, u"_"_s);
}

// The tokens with some of them replaced.
QStringList changed(QStringList tokens, const QString &changes)
{
    for (const QString &change : changes.split(u' ', Qt::SkipEmptyParts)) {
        const QString name = change.section(u'=', 0, 0) + u'=';
        for (QString &t : tokens)
            if (t.startsWith(name))
                t = change;
    }
    return tokens;
}

} // namespace

class StudyTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { InstallFontSubstitutes(); }
    void cleanup() { ResetStudyWindow(); }

    // Every way into the study window's commands, from the third card of six
    // (q3 a trouble card): a key (on the window or on a control), a click, the
    // menu. "effect" lists what differs afterwards. A route may start with
    // set-up steps: "set:option=value", "jump:card".
    void commands_data()
    {
        QTest::addColumn<QString>("route");
        QTest::addColumn<QString>("effect");
        const QString next = u"card=3 text=q3 check1=on views=4 tl=showing_card_4_of_6;_1_trouble_cards"_s;
        const QString previous = u"card=1 text=q1 views=4 tl=showing_card_2_of_6;_1_trouble_cards tr=Times_viewed:_2"_s;
        const QString answer = u"text=a2 tl=Showing_answer_to_'q2' tr="_s;
        const QString marked = u"check1=on trouble=2"_s; // the status line's count stays as it was
        // The card now in the third place, shown again without a view.
        const QString reversed = u"order=q5,q4,q3,q2,q1,q0, card=2 text=q3 check1=on tr=Times_viewed:_0"_s;
        QTest::newRow("Right: next") << u"key Right"_s << next;
        QTest::newRow("Left: previous") << u"key Left"_s << previous;
        QTest::newRow("Return: the answer") << u"key Return"_s << answer;
        QTest::newRow("Return twice: the question again") << u"key Return,Return"_s << QString();
        QTest::newRow("Space: trouble mark") << u"key Space"_s << marked;
        QTest::newRow("S: shuffle, same place, no view") << u"key S"_s << reversed;
        QTest::newRow("O: options") << u"key O"_s << u"open=frmMain,frmOptions front=frmOptions"_s;
        QTest::newRow("F: find") << u"key F"_s << u"open=frmMain,frmFind front=frmFind"_s;
        QTest::newRow("V: every card") << u"key V"_s << u"open=frmMain,frmViewer front=frmViewer"_s;
        QTest::newRow("A: about") << u"key A"_s << u"modal=frmAbout"_s;
        const QString exited = u"text=- tl=- tr=- bl=- br=- trouble=0 views=0 order= open= released=on"_s;
        QTest::newRow("X: exit") << u"key X"_s << exited;
        QTest::newRow("Y, B, Escape, Up, Backspace: no command") << u"key Y,B,Esc,Up,Backspace"_s << QString();
        QTest::newRow("Right on the answer button") << u"key Right zelFlatButton4"_s << next;
        QTest::newRow("Space on the link") << u"key Space zelHL1"_s << marked;
        QTest::newRow("click >>") << u"click zelFlatButton2"_s << next;
        QTest::newRow("click <<") << u"click zelFlatButton3"_s << previous;
        QTest::newRow("click Answer") << u"click zelFlatButton4"_s << answer;
        QTest::newRow("click the trouble box") << u"click Check1"_s << marked;
        QTest::newRow("click trouble-only: no move") << u"click Check2"_s << u"check2=on"_s;
        QTest::newRow("click Menu") << u"click zelFlatButton1"_s << u"menu=on"_s;
        QTest::newRow("click the link") << u"click zelHL1"_s << u"launches=testbrowser"_s;
        QTest::newRow("right click on the card") << u"rightclick"_s << u"menu=on"_s;
        QTest::newRow("menu Save Progress") << u"menu mP_sp"_s << u"dialogs=Save_As:Vocabrix_Save_File_(*.vxs)"_s;
        QTest::newRow("menu Save Statistics") << u"menu mP_ss"_s << u"dialogs=Save_Statistics:*.txt_(*.txt)"_s;
        QTest::newRow("menu Quick Help") << u"menu mP_qh"_s << u"boxes=Quick_Help"_s;
        QTest::newRow("menu Options") << u"menu mP_o"_s << u"open=frmMain,frmOptions front=frmOptions"_s;
        QTest::newRow("menu Find Card") << u"menu mP_fc"_s << u"open=frmMain,frmFind front=frmFind"_s;
        QTest::newRow("menu View All") << u"menu mP_vac"_s << u"open=frmMain,frmViewer front=frmViewer"_s;
        QTest::newRow("menu Shuffle") << u"menu mP_sc"_s << reversed;
        QTest::newRow("menu About") << u"menu mP_a"_s << u"modal=frmAbout"_s;
        QTest::newRow("menu Exit") << u"menu mP_e"_s << exited;

        // The additions. Z (with or without Ctrl) takes back the latest
        // change: a move with the view it counted, a flip, a mark.
        const QString undone = u"card=1 text=q1 views=2 tl=showing_card_2_of_6;_1_trouble_cards"_s;
        QTest::newRow("Z: the last move taken back") << u"key Z"_s << undone;
        QTest::newRow("Left, Ctrl+Z: as before") << u"key Left,Ctrl+Z"_s << QString();
        QTest::newRow("Space, Z: the mark taken back") << u"key Space,Z"_s << QString();
        QTest::newRow("Return, Space, Z, Z: mark and flip taken back") << u"key Return,Space,Z,Z"_s << QString();
        QTest::newRow("Z three times: no further than the first card")
                << u"key Z,Z,Z"_s << u"card=0 text=q0 views=1 tl=showing_card_1_of_6;_1_trouble_cards"_s;
        QTest::newRow("S, Z: nothing before a shuffle") << u"key S,Z"_s << reversed;
        // The answer first: the corners say which side is on show, and give
        // the other away only once it has been seen.
        const QString answerFirst = next + u" text=a3 tl=showing_the_answer_of_card_4_of_6;_1_trouble_cards"_s;
        QTest::newRow("answer first: Right") << u"set:first_side=answer key Right"_s << answerFirst;
        QTest::newRow("answer first: Right, Return: the question")
                << u"set:first_side=answer key Right,Return"_s << next + u" text=q3 tl=Showing_question_to_'a3' tr="_s;
        QTest::newRow("random: the answer drawn") << u"set:first_side=random key Right"_s << answerFirst;
        // The empty slot after the last card (6): kept, or stepped over.
        const QString slot =
                u"card=6 text= check1=off views=7 tl=showing_card_7_of_6;_1_trouble_cards tr=Times_viewed:_1 br=from_''"_s;
        QTest::newRow("onto the empty slot") << u"key Right,Right,Right,Right"_s << slot;
        QTest::newRow("empty slot stepped over forwards")
                << u"set:skip_empty_slot=true key Right,Right,Right,Right"_s
                << u"card=0 text=q0 views=7 tl=showing_card_1_of_6;_1_trouble_cards tr=Times_viewed:_2"_s;
        // Trouble-only mode: the arrows go to the nearest trouble card, either way, round the ends.
        QTest::newRow("trouble-only: Left round the end") << u"key T,Left"_s << next + u" check2=on"_s;
        QTest::newRow("trouble-only: Right round the end") << u"jump:5 key T,Right"_s << next + u" check2=on views=5"_s;
        QTest::newRow("trouble-only, none left, the empty slot stepped over")
                << u"jump:3 set:skip_empty_slot=true key T,Space,Right"_s
                << u"card=1 text=q1 tl=showing_card_2_of_6;_0_trouble_cards tr=Times_viewed:_2 trouble=0 views=5 boxes=Card_Manager"_s;
    }
    void commands()
    {
        QFETCH(QString, route);
        QFETCH(QString, effect);
        TestEnvironment env;
        qputenv("BROWSER", "testbrowser");
        ReversingRandom reversing(6);
        SetRandomSource(&reversing);
        StudyDeck(6, {3});
        modrender::SetSideCoin([] { return true; }); // the random side: the answer
        frmMain *main = frmMain::Existing();
        modrender::ShowFirstCard();
        modrender::NextCard();
        modrender::NextCard();
        const QStringList before = observe(env);
        QVERIFY(before.contains(u"br=from_'Kapitel'"_s));

        QStringList how = route.split(u' ');
        // Set-up of the additions: an option, a jump.
        while (how.first().contains(u':')) {
            const QString step = how.takeFirst(), what = step.section(u':', 1);
            if (step.startsWith(u"set:"_s))
                g_Extras.SetString(u"study."_s + what.section(u'=', 0, 0), what.section(u'=', 1));
            else {
                modrender::CurrentCard = qint16(what.toInt());
                modrender::ShowCurrentCard();
            }
        }
        if (how[0] == u"key"_s) {
            const QKeySequence keys = QKeySequence::fromString(how[1]);
            QWidget *target = how.size() > 2 ? main->findChild<QWidget *>(how[2]) : main;
            QVERIFY(target);
            for (int k = 0; k < keys.count(); ++k)
                QTest::keyClick(target, keys[k].key(), keys[k].keyboardModifiers());
        } else if (how[0].endsWith(u"click"_s)) { // on a control, or on the card
            const Qt::MouseButton button = how[0] == u"click"_s ? Qt::LeftButton : Qt::RightButton;
            QWidget *on = how.size() > 1 ? main->findChild<QWidget *>(how[1]) : main;
            QTest::mouseClick(on, button, {}, how.size() > 1 ? QPoint(3, 3) : QPoint(320, 200));
        } else {
            main->findChild<QAction *>(how[1])->trigger();
        }
        const qsizetype front = effect.indexOf(u"front="_s);
        if (front >= 0) // the window opened or brought forward takes the keys
            QTRY_COMPARE(forms::Name(QApplication::activeWindow()), effect.mid(front + 6).section(u' ', 0, 0));
        QCOMPARE(observe(env), changed(before, effect));
    }

    // While the deck is shuffled: the progress form over the study window,
    // the card saying what happens, the controls off; keys and closing wait.
    void shuffleShowsItsProgress()
    {
        TestEnvironment env;
        g_Extras.SetBool(u"study.type_answer"_s, true); // the typing line goes off too
        ReversingRandom reversing(6);
        SetRandomSource(&reversing);
        StudyDeck(6);
        g_Extras.SetBool(u"study.show_notes"_s, true);
        g_Deck[0].note = u"a note"_s;
        modrender::ShowFirstCard();
        QCOMPARE(modrender::Metrics()->NoteText(), QString()); // under the question, no note
        modrender::ToggleAnswer(); // the answer with its note on show
        QCOMPARE(modrender::Metrics()->NoteText(), u"a note"_s);
        frmMain *main = frmMain::Existing();
        int draws = 0;
        reversing.onDraw = [&] {
            if (draws++ > 0)
                return;
            auto *progress = main->findChild<frmProgress *>();
            QVERIFY(progress && progress->isVisible());
            checkLayout(progress, u"progress-shuffling"_s);
            QCOMPARE(std::pair(modrender::Metrics()->MainText(), modrender::Metrics()->NoteText()),
                     std::pair(u"Randomizing .. "_s, QString()));
            QCOMPARE(modrender::Metrics()->CornerText(r_data::Corner::TopLeft), u"Pass 1 of 2"_s);
            QVERIFY(g_ShuffleRunning);
            checkLayout(main, u"study-shuffling"_s); // the controls and the typing line off
            QVERIFY(SaveScreenshot(progress->grab().toImage(), u"progress.png"_s));
            QTest::keyClick(main, Qt::Key_Right);
            main->close(); // refused
        };
        main->Shuffle();
        QCOMPARE(draws, 6);
        FlushDeletes();
        QVERIFY(!main->findChild<frmProgress *>());
        QCOMPARE(int(modrender::CurrentCard), 0); // not moved while shuffling
        QVERIFY(main->isVisible() && main->Check1->Enabled() && main->zelFlatButton4->Enabled());
        QVERIFY(!g_ShuffleRunning);
    }
};

QTEST_MAIN(StudyTest)
#include "tst_study.moc"
