#include "uitestsupport.h"
#include "windows/cardarea.h"

#include <QAccessible>

using namespace Qt::Literals::StringLiterals;

namespace {

// 0x00BBGGRR as stored; qRgb for comparisons with image pixels.
QRgb rgb(quint32 ole)
{
    return qRgb(int(ole & 0xFF), int((ole >> 8) & 0xFF), int((ole >> 16) & 0xFF));
}

int distance(QRgb a, QRgb b)
{
    return qMax(qAbs(qRed(a) - qRed(b)), qMax(qAbs(qGreen(a) - qGreen(b)), qAbs(qBlue(a) - qBlue(b))));
}

QString corner(r_data::Corner c)
{
    return modrender::Metrics()->CornerText(c);
}

} // namespace

class StudyTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { InstallFontSubstitutes(); }
    void cleanup()
    {
        UnloadAllForms();
        SetMainRenderer(nullptr);
    }

    void stepping_data()
    {
        QTest::addColumn<int>("from");
        QTest::addColumn<bool>("forward");
        QTest::addColumn<int>("to");
        // A deck of 10 cards spans 0..10, the empty slot included.
        QTest::newRow("next") << 3 << true << 4;
        QTest::newRow("next on the upper bound wraps") << 10 << true << 0;
        QTest::newRow("next onto the empty slot") << 9 << true << 10;
        QTest::newRow("previous on the lower bound wraps") << 0 << false << 10;
    }
    void stepping()
    {
        QFETCH(int, from);
        QFETCH(bool, forward);
        QFETCH(int, to);
        TestEnvironment env;
        StudyDeck(10, {});
        QCOMPARE(modrender::StepIndex(forward ? modrender::Direction::Forward : modrender::Direction::Backward, from),
                 to);
    }

    void troubleOnlyNavigation_data()
    {
        QTest::addColumn<QList<int>>("trouble");
        QTest::addColumn<int>("current");
        QTest::addColumn<bool>("forward");
        QTest::addColumn<int>("shown");
        QTest::addColumn<bool>("box");
        QTest::newRow("next wraps to the nearest") << QList<int> {2, 9} << 9 << true << 2 << false;
        QTest::newRow("previous searches back") << QList<int> {2, 9} << 9 << false << 2 << false;
        QTest::newRow("next forward") << QList<int> {2, 5, 9} << 2 << true << 5 << false;
        QTest::newRow("only the current one") << QList<int> {4} << 4 << true << 4 << false;
        QTest::newRow("none at all") << QList<int> {} << 6 << true << 1 << true;
    }
    void troubleOnlyNavigation()
    {
        QFETCH(QList<int>, trouble);
        QFETCH(int, current);
        QFETCH(bool, forward);
        QFETCH(int, shown);
        QFETCH(bool, box);
        TestEnvironment env;
        StudyDeck(10, trouble);
        frmMain *main = frmMain::Existing();
        main->Check2->SetChecked(true);
        modrender::CurrentCard = qint16(current);
        const qint16 viewsBefore = g_Deck[shown].timesViewed;
        forward ? modrender::NextCard() : modrender::PreviousCard();
        QCOMPARE(int(modrender::CurrentCard), shown);
        QCOMPARE(g_Deck[shown].timesViewed, qint16(viewsBefore + 1)); // a view even when it stays
        QCOMPARE(modrender::Metrics()->MainText(), u"q%1"_s.arg(shown));
        if (box) {
            QCOMPARE(env.prompter.boxTitles(), QStringList(u"Card Manager"_s));
            QCOMPARE(env.prompter.boxes[0].text,
                     u"No trouble cards have been located. The first card will now be displayed"_s);
            QCOMPARE(env.prompter.boxes[0].icon, MsgIcon::Information);
            QVERIFY(!main->Check2->Checked()); // trouble-only mode is left
        } else {
            QVERIFY(env.prompter.boxes.empty());
            QVERIFY(main->Check2->Checked());
            QVERIFY(main->Check1->Checked());
        }
    }

    void cardTexts()
    {
        TestEnvironment env;
        StudyDeck(120, {1, 3, 5, 7, 9, 11, 13});
        modrender::Metrics()->SetCornerText(r_data::Corner::BottomLeft, u"Right click anywhere for menu"_s);
        modrender::ShowFirstCard();
        QCOMPARE(corner(r_data::Corner::BottomLeft), QString()); // the hint goes for good
        modrender::CurrentCard = 2;
        modrender::ShowCurrentCard(); // a jump: no trouble count
        QCOMPARE(corner(r_data::Corner::TopLeft), u"showing card 3 of 120"_s);
        QCOMPARE(corner(r_data::Corner::TopRight), u"Times viewed: 1"_s);
        QCOMPARE(corner(r_data::Corner::BottomRight), u"from 'Kapitel'"_s);
        modrender::NextCard();
        QCOMPARE(corner(r_data::Corner::TopLeft), u"showing card 4 of 120; 7 trouble cards"_s);
        QVERIFY(frmMain::Existing()->Check1->Checked());

        // Flipping counts no view; flipping back brings the trouble count.
        modrender::ToggleAnswer();
        QCOMPARE(modrender::Metrics()->MainText(), u"a3"_s);
        QCOMPARE(corner(r_data::Corner::TopLeft), u"Showing answer to 'q3'"_s);
        QCOMPARE(corner(r_data::Corner::TopRight), QString());
        modrender::ToggleAnswer();
        QCOMPARE(modrender::Metrics()->MainText(), u"q3"_s);
        QCOMPARE(corner(r_data::Corner::TopRight), u"Times viewed: 1"_s);

        // A new trouble mark leaves the count in the status line stale.
        modrender::SetCardTrouble(false);
        QVERIFY(!g_Deck[3].isTrouble());
        QCOMPARE(corner(r_data::Corner::TopLeft), u"showing card 4 of 120; 7 trouble cards"_s);
        QCOMPARE(modrender::CountTroubleCards(), 6);
    }

    // Screen readers read the card face: its main text, the side on show and
    // where the card stands.
    void cardIsReadableByAssistiveTools()
    {
        TestEnvironment env;
        StudyDeck({{u"der Hund"_s, u"the dog"_s}, {u"die Katze"_s, u"the cat"_s}});
        QAccessibleInterface *face = QAccessible::queryAccessibleInterface(frmMain::Existing()->Card);
        QVERIFY(face);
        QCOMPARE(face->text(QAccessible::Name), u"Card"_s);
        modrender::ShowFirstCard();
        const QString first = u"der Hund (question side), showing card 1 of 2, from 'Kapitel'"_s;
        QCOMPARE(face->text(QAccessible::Value), first);
        modrender::ToggleAnswer();
        QCOMPARE(face->text(QAccessible::Value), u"the dog (answer side), showing card 1 of 2, from 'Kapitel'"_s);
        modrender::NextCard();
        const QString second = u"die Katze (question side), showing card 2 of 2, from 'Kapitel'"_s;
        QCOMPARE(face->text(QAccessible::Value), second);
        QCOMPARE(frmMain::Existing()->Card->geometry(), QRect(0, 0, 640, 420));
        // Clicks go through it to the window.
        QVERIFY(frmMain::Existing()->Card->testAttribute(Qt::WA_TransparentForMouseEvents));
    }

    // The caption check agrees with the card itself: a caption that fits
    // leaves a gap to the longest help line, one that does not runs into it.
    void chapterCaptionFitsBesideTheHelpLine_data()
    {
        QTest::addColumn<QString>("chapter");
        QTest::addColumn<bool>("fits");
        QTest::newRow("example chapter") << u"German 3: Travel and Getting Around"_s << true;
        QTest::newRow("far too long") << QString(70, u'W') << false;
    }
    void chapterCaptionFitsBesideTheHelpLine()
    {
        QFETCH(QString, chapter);
        QFETCH(bool, fits);
        QCOMPARE(modrender::ChapterCaptionFits(chapter), fits);
        TestEnvironment env;
        StudyDeck({{u"a"_s, u"b"_s}, {u"c"_s, u"d"_s}});
        g_Deck[0].chapter = chapter;
        modrender::ShowFirstCard();
        r_data *metrics = modrender::Metrics();
        metrics->SetColor(u"backcolor_a"_s, 0);
        metrics->SetColor(u"backcolor_b"_s, 0);
        metrics->SetColor(u"bl_text_forecolor"_s, 0x0000FF); // red help line
        metrics->SetColor(u"br_text_forecolor"_s, 0xFF0000); // blue caption
        QString longest;
        for (const QString &line : frmMain::HoverHelpTexts())
            if (r_renderer::CornerTextWidth(line) > r_renderer::CornerTextWidth(longest))
                longest = line;
        metrics->SetCornerText(r_data::Corner::BottomLeft, longest);
        modrender::Renderer()->Draw(true);
        const QImage &face = modrender::Renderer()->Surface()->Image();
        int helpRight = -1, captionLeft = face.width();
        for (int y = face.height() * 3 / 4; y < face.height(); ++y)
            for (int x = 0; x < face.width(); ++x) {
                const QRgb p = face.pixel(x, y);
                if (qRed(p) > 128 && qBlue(p) < 64)
                    helpRight = qMax(helpRight, x);
                if (qBlue(p) > 128 && qRed(p) < 64)
                    captionLeft = qMin(captionLeft, x);
            }
        QVERIFY(helpRight >= 0 && captionLeft < face.width());
        QCOMPARE(captionLeft > helpRight, fits);
    }

    void deliberateQuirks()
    {
        TestEnvironment env;
        StudyDeck(3);
        // A card whose answer equals its question always flips to the answer.
        g_Deck[0].answer = g_Deck[0].question;
        g_Deck[0].timesViewed = 32766;
        modrender::ShowFirstCard();
        for (int press = 0; press < 3; ++press) {
            modrender::ToggleAnswer();
            QCOMPARE(corner(r_data::Corner::TopLeft), u"Showing answer to 'q0'"_s);
        }
        // The view count is 16 bits: it stops at its largest value.
        modrender::ShowFirstCard();
        QCOMPARE(g_Deck[0].timesViewed, qint16(32767));
        QCOMPARE(corner(r_data::Corner::TopRight), u"Times viewed: 32767"_s);
    }

    void studyWindowForReview()
    {
        TestEnvironment env;
        StudyDeck(37, {2});
        modrender::CurrentCard = 2;
        modrender::ShowCurrentCard();
        QImage shot = frmMain::Existing()->grab().toImage();
        const qreal ratio = shot.devicePixelRatio();
        QCOMPARE(shot.size(), DeviceSize(QSize(640, 480), ratio));
        // The card face above, the controls' strip below.
        QVERIFY(distance(shot.pixel(int(320 * ratio), int(200 * ratio)), rgb(14570825)) <= 2);
        QVERIFY(SaveScreenshot(shot, u"study-window.png"_s));
    }

    void alphaOptions()
    {
        TestEnvironment env;
        g_MasterDb = std::make_unique<ikorvalite>();
        QVERIFY(g_MasterDb->Mount(env.path(u"sys.zel"_s), false));
        env.log->clear();
        modrender::LoadAlphaOptions();
        QCOMPARE(env.logLines(), QStringList(u" .. alpha enabled in program: No using level of 90/n"_s));
        g_MasterDb->SetValue(u"alpha_effects"_s, QString(), -1, u"alpha_transparency"_s);
        g_MasterDb->SetValue(u"alpha_level"_s, QString(), 200, u"alpha_transparency"_s);
        modrender::LoadAlphaOptions();
        QCOMPARE(env.logLines().last(), u" .. alpha enabled in program: Yes using level of 200/n"_s);
        QVERIFY(modrender::AlphaEffects);
        modrender::AlphaLevel = 17;
        modrender::AlphaEffects = false;
        modrender::SaveAlphaOptions();
        QCOMPARE(g_MasterDb->GetNumber(u"alpha_level"_s, 0).value, 17);
        QCOMPARE(g_MasterDb->GetNumber(u"alpha_effects"_s, 5).value, 0);
        QCOMPARE(g_MasterDb->GetNote(u"alpha_effects"_s), u"alpha_transparency"_s);
    }
};

QTEST_MAIN(StudyTest)
#include "tst_study.moc"
