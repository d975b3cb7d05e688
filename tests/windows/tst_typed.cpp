// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/extrasettings.h"
#include "uitestsupport.h"
#include "windows/cardarea.h"
#include "windows/typedanswer.h"

#include <QElapsedTimer>
#include <QLabel>

using namespace Qt::Literals::StringLiterals;

namespace {

// What a person can tell of typing the answer: the card and its main text
// (marked letters in brackets, a right answer between "="), the line, the
// counts, the trouble marks, where the keys go, what else opened.
QStringList seen(const TestEnvironment &env)
{
    frmMain *main = frmMain::Existing();
    const TypedAnswer *typing = main->Typing;
    const r_data *metrics = modrender::Metrics();
    const QString text = metrics->MainText();
    QString face;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const bool mark = metrics->MainMarking() == r_data::Marking::Letters && metrics->MarkedLetters().value(i);
        face += (mark && (i == 0 || !metrics->MarkedLetters()[i - 1]) ? u"["_s : QString()) + text[i]
                + (mark && !metrics->MarkedLetters().value(i + 1) ? u"]"_s : QString());
    }
    if (metrics->MainMarking() == r_data::Marking::Right)
        face = u'=' + face + u'=';
    static const char16_t *states[] = {u"off", u"asking", u"revealed", u"wrong", u"right"};
    QStringList open, modal(env.prompter.modalWindows.begin(), env.prompter.modalWindows.end());
    for (QWidget *w : forms::Open())
        open << forms::Name(w);
    QStringList tokens {
            u"card=%1"_s.arg(modrender::CurrentCard),
            u"text="_s + face,
            u"state="_s + QString::fromUtf16(states[int(typing->CurrentState())]),
            u"line="_s + typing->Line()->text() + (typing->Line()->isReadOnly() ? u"(ro)"_s : QString()),
            u"counts="_s + typing->Counts()->text(),
            u"trouble="_s + QString::number(modrender::CountTroubleCards())
                    + (main->Check1->Checked() ? u"(on)"_s : QString()),
            u"keys="_s + (main->focusWidget() == typing->Line() ? u"line"_s : u"window"_s),
            u"open="_s + (open + modal).join(u','),
            u"launches="_s + QString::number(env.prompter.launches.size()),
    };
    if (!typing->isVisible())
        tokens = tokens.mid(0, 3) + tokens.mid(5);
    return tokens.replaceInStrings(u" "_s, u"_"_s);
}

} // namespace

class TypedTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { InstallFontSubstitutes(); }
    void cleanup() { ResetStudyWindow(); }

    // Steps: "type:TEXT", a key sequence, "menu:ACTION", "click:CONTROL",
    // "wait" (the right answer's moment), "set:KEY=VALUE" before the first card.
    void typing_data()
    {
        QTest::addColumn<QString>("steps");
        QTest::addColumn<QString>("effect");
        const QString right = u" counts=right_1_·_wrong_0"_s, wrong1 = u" counts=right_0_·_wrong_1"_s;
        const QString asking = u"card=0 text=der_Hund state=asking line= counts=right_0_·_wrong_0 trouble=0 keys=line "
                               "open=frmMain launches=0"_s;
        QTest::newRow("the first card asks") << QString() << asking;
        QTest::newRow("right") << u"type:Dog Return"_s << u"text==the_dog= state=right line=Dog(ro)"_s + right;
        QTest::newRow("right, a moment, the next card")
                << u"type:the_dog. Return wait"_s << u"card=1 text=die_Katze"_s + right;
        const QString wrong = u"text=the_d[og] state=wrong line=dgo(ro)"_s + wrong1 + u" trouble=1(on)"_s;
        QTest::newRow("wrong: marked, a trouble card") << u"type:dgo Return"_s << wrong;
        QTest::newRow("wrong, Return: the next card")
                << u"type:dgo Return Return"_s << u"card=1 text=die_Katze"_s + wrong1 + u" trouble=1"_s;
        QTest::newRow("wrong, undone twice: asked again")
                << u"type:dgo Return menu:mP_u menu:mP_u"_s << u"counts=right_0_·_wrong_1"_s;
        QTest::newRow("nothing typed: wrong, nothing marked")
                << u"Return"_s << u"text=the_dog state=wrong line=(ro)"_s + wrong1 + u" trouble=1(on)"_s;
        QTest::newRow("command letters and Space stay on the line") << u"type:svaxz_o Space"_s << u"line=svaxz_o_"_s;
        QTest::newRow("F1 still opens the manual") << u"F1"_s << u"launches=1"_s;
        QTest::newRow("Right on an empty line: the next card") << u"Right"_s << u"card=1 text=die_Katze"_s;
        QTest::newRow("Left on a typed line: the cursor") << u"type:Hu Left Left"_s << u"line=Hu"_s;
        QTest::newRow("the empty slot asks nothing") << u"Left Return"_s << QString();
        QTest::newRow("Escape: the study keys again") << u"Escape Space"_s << u"trouble=1(on) keys=window"_s;
        QTest::newRow("a click on the card: the line again") << u"Escape click:frmMain"_s << QString();
        QTest::newRow("turned by hand: Return goes on")
                << u"click:zelFlatButton4"_s << u"text=the_dog state=revealed line=(ro)"_s;
        QTest::newRow("answer first: the question typed") << u"set:first_side=answer type:hund Return"_s
                                                          << u"text==der_Hund= state=right line=hund(ro)"_s + right;
        QTest::newRow("option off: no line, the keys as before")
                << u"set:type_answer=false Space"_s << u"state=off trouble=1(on) keys=window"_s;
    }
    void typing()
    {
        QFETCH(QString, steps);
        QFETCH(QString, effect);
        TestEnvironment env;
        qputenv("BROWSER", "testbrowser");
        g_Extras.SetBool(u"study.type_answer"_s, true);
        StudyDeck({{u"der Hund"_s, u"the dog"_s}, {u"die Katze"_s, u"the cat"_s}, {u"das Haus"_s, u"house; home"_s}});
        frmMain *main = frmMain::Existing();
        QStringList todo = steps.split(u' ', Qt::SkipEmptyParts);
        while (!todo.isEmpty() && todo.first().startsWith(u"set:"_s)) {
            const QString set = todo.takeFirst().mid(4);
            g_Extras.SetString(u"study."_s + set.section(u'=', 0, 0), set.section(u'=', 1));
        }
        modrender::ShowFirstCard();
        const QStringList before = seen(env);
        for (const QString &step : todo) {
            QWidget *keys = main->focusWidget() ? main->focusWidget() : main;
            if (step.startsWith(u"type:"_s)) {
                QTest::keyClicks(keys, step.mid(5).replace(u'_', u' '));
            } else if (step.startsWith(u"menu:"_s)) {
                main->findChild<QAction *>(step.mid(5))->trigger();
            } else if (step.startsWith(u"click:"_s)) {
                QWidget *target = step.mid(6) == u"frmMain"_s ? main : main->findChild<QWidget *>(step.mid(6));
                QTest::mouseClick(target, Qt::LeftButton, {}, QPoint(3, 3));
            } else if (step == u"wait"_s) {
                QElapsedTimer moment;
                moment.start();
                QTRY_VERIFY(main->Typing->CurrentState() != TypedAnswer::State::Right);
                QVERIFY(moment.elapsed() >= TypedAnswer::kRightMs * 9 / 10); // time to see it was right
            } else {
                QTest::keyClick(keys, QKeySequence::fromString(step)[0].key());
            }
        }
        QStringList expected = before;
        for (const QString &change : effect.split(u' ', Qt::SkipEmptyParts))
            for (QString &token : expected)
                if (token.section(u'=', 0, 0) == change.section(u'=', 0, 0))
                    token = change;
        if (steps.isEmpty())
            QCOMPARE(before.join(u' '), effect);
        QCOMPARE(seen(env), expected);
    }

    // On the card: a right answer in its green, a wrong one in gold; Tab
    // reaches the line first.
    void marksOnTheCard()
    {
        TestEnvironment env;
        g_Extras.SetBool(u"study.type_answer"_s, true);
        StudyDeck({{u"der Hund"_s, u"the dog"_s}, {u"die Katze"_s, u"the cat"_s}});
        modrender::ShowFirstCard();
        frmMain *main = frmMain::Existing();
        checkTabOrder(main);
        QLineEdit *line = main->Typing->Line();
        const QRgb green = rgb(r_renderer::MarkColour(true, 14570825)),
                   gold = rgb(r_renderer::MarkColour(false, 14570825));
        auto marks = [green, gold] {
            const QImage &face = modrender::Renderer()->Surface()->Image();
            return std::pair(HasColour(face, green), HasColour(face, gold));
        };
        QTest::keyClicks(line, u"dog"_s);
        QTest::keyClick(line, Qt::Key_Return);
        QCOMPARE(marks(), std::pair(true, false));
        QTest::keyClick(line, Qt::Key_Return);
        QTest::keyClicks(line, u"the cut"_s);
        QTest::keyClick(line, Qt::Key_Return);
        QCOMPARE(marks(), std::pair(false, true));
        const QRect underline = ColourBounds(modrender::Renderer()->Surface()->Image(), gold);
        QVERIFY2(underline.width() < 30, qPrintable(u"%1 wide"_s.arg(underline.width()))); // the one wrong letter
        QVERIFY(SaveScreenshot(main->grab().toImage(), u"typed-wrong.png"_s));
        checkLayout(main, u"typed-wrong"_s);
        QCOMPARE(main->Card->Description(),
                 u"the cat (answer side), showing card 2 of 2, from 'Kapitel', typed answer wrong: 'the cut'"_s);
    }
};

QTEST_MAIN(TypedTest)
#include "tst_typed.moc"
