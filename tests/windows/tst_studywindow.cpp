// SPDX-License-Identifier: GPL-3.0-or-later
// The study window as a person sees, hears about and reads it.
#include "drawing/colourcontrast.h"
#include "uitestsupport.h"

#include <QMouseEvent>

using namespace Qt::Literals::StringLiterals;

namespace {

// How far the clearest pixel of a control stands out from its background
// (the colour most of it has).
double legibility(QWidget *control)
{
    const QImage img = control->grab().toImage();
    QHash<QRgb, int> counts;
    QRgb background = 0;
    for (int y = 0; y < img.height(); ++y)
        for (int x = 0; x < img.width(); ++x)
            if (const QRgb pixel = img.pixel(x, y); ++counts[pixel] > counts.value(background))
                background = pixel;
    const auto ole = [](QRgb c) { return quint32(qRed(c) | qGreen(c) << 8 | qBlue(c) << 16); };
    double best = 1;
    for (auto it = counts.cbegin(); it != counts.cend(); ++it)
        best = qMax(best, ContrastRatio(ole(it.key()), ole(background)));
    return best;
}

} // namespace

class StudyWindowTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { InstallFontSubstitutes(); }
    void cleanup() { ResetStudyWindow(); }

    void hoverHelp()
    {
        TestEnvironment env;
        g_ShowMouseHover = true;
        StudyDeck(4);
        modrender::ShowFirstCard();
        frmMain *main = frmMain::Existing();
        auto help = [] { return modrender::Metrics()->CornerText(r_data::Corner::BottomLeft); };
        const QImage before = modrender::Renderer()->Surface()->Image().copy();
        // A real move event (QTest::mouseMove goes astray on a scaled screen).
        const QPointF nearRight(main->zelFlatButton2->width() - 3, 3); // x and y apart: neither read for the other
        QMouseEvent move(QEvent::MouseMove, nearRight, main->zelFlatButton2->mapToGlobal(nearRight), Qt::NoButton,
                         Qt::NoButton, Qt::NoModifier);
        QCoreApplication::sendEvent(main->zelFlatButton2, &move);
        QCOMPARE(help(), u"Next Card"_s);
        QVERIFY(modrender::Renderer()->Surface()->Image() != before); // on the card at once
        main->zelFlatButton2->HandleMouseMove(-3, 3);
        QVERIFY(main->Timer1->isActive());
        main->Timer1->setInterval(1);
        QTRY_COMPARE(help(), u"Roll mouse over controls to see descriptions"_s);

        // Leaving a control right after a click on it starts the timer too.
        main->zelFlatButton3->HandleMouseMove(3, 3);
        QVERIFY(!main->Timer1->isActive());
        QTest::mouseClick(main->zelFlatButton3, Qt::LeftButton, {}, QPoint(3, 3));
        QEvent leave(QEvent::Leave);
        QCoreApplication::sendEvent(main->zelFlatButton3, &leave);
        QVERIFY(main->Timer1->isActive());
        g_ShowMouseHover = false; // the other tests' default
    }

    // The study window as a person sees it: the card, its separator row, and
    // the controls on the strip below.
    void composedWindow()
    {
        TestEnvironment env;
        StudyDeck(37, {2});
        g_SuppressRefresh = false; // the card window presents on its own timer, then rests
        modrender::StartRendering();
        g_SuppressRefresh = true;
        modrender::CurrentCard = 2;
        modrender::ShowCurrentCard();
        QTRY_VERIFY(modrender::Renderer()->IsResting());
        frmMain *main = frmMain::Existing();
        const QImage shot = main->grab().toImage();
        // Logical positions at whatever scale the screen has.
        const qreal ratio = shot.devicePixelRatio();
        auto at = [&shot, ratio](int x, int y) { return shot.pixel(int(x * ratio), int(y * ratio)); };
        // The separator 60 rows above the bottom runs opposite to the card.
        QVERIFY(distance(at(1, 420), rgb(14570825)) <= 8);
        QVERIFY(distance(at(318, 420), rgb(0)) <= 8);
        QVERIFY(distance(at(1, 419), rgb(0)) <= 8);
    }

    void controlsStayLegible_data()
    {
        QTest::addColumn<quint32>("backA");
        QTest::addColumn<quint32>("backB");
        QTest::addColumn<quint32>("text");
        QTest::addColumn<bool>("kept"); // the card's text colour is readable on the strip
        QTest::newRow("the default blue") << 0u << 14570825u << 0xFFFFFFu << true;
        QTest::newRow("light card, dark text") << 0u << 0xF0F0F0u << 0u << false;
        QTest::newRow("white everywhere, black text") << 0xFFFFFFu << 0xFFFFFFu << 0u << true;
        QTest::newRow("grey on grey") << 0x777777u << 0x888888u << 0x808080u << false;
        QTest::newRow("yellow edges, white text") << 0x00FFFFu << 0x0000FFu << 0xFFFFFFu << false;
        QTest::newRow("system colours") << 0x80000005u << 0x8000000Fu << 0x80000008u << true;
    }
    void controlsStayLegible()
    {
        QFETCH(quint32, backA);
        QFETCH(quint32, backB);
        QFETCH(quint32, text);
        QFETCH(bool, kept);
        TestEnvironment env;
        r_data scheme; // saved, as the study window starts with it
        scheme.ColorDefaults();
        scheme.SetColor(u"backcolor_a"_s, backA);
        scheme.SetColor(u"backcolor_b"_s, backB);
        scheme.SetColor(u"main_text_forecolor"_s, text);
        scheme.WriteColors();
        StudyDeck(3);
        frmMain *main = frmMain::Existing();
        QCOMPARE(main->zelFlatButton2->Forecolor() == cMemDC::TranslateColor(text), kept);
        const QList<zelControl *> controls {main->Check1,         main->Check2,         main->zelFlatButton1,
                                            main->zelFlatButton2, main->zelFlatButton3, main->zelFlatButton4,
                                            main->zelHL1};
        for (zelControl *c : controls) {
            QVERIFY2(legibility(c) >= 4.5, qPrintable(c->objectName()));
            c->HandleMouseMove(3, 3);
            QVERIFY2(legibility(c) >= 4.5, qPrintable(c->objectName() + u" under the mouse"_s));
            c->HandleMouseMove(-3, -3);
        }
        main->EnableStudyControls(false);
        for (zelControl *c : controls)
            QVERIFY2(legibility(c) >= 1.5, qPrintable(c->objectName() + u" disabled"_s));
    }
};

QTEST_MAIN(StudyWindowTest)
#include "tst_studywindow.moc"
