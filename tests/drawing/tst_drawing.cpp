// SPDX-License-Identifier: GPL-3.0-or-later
#include "drawing/logicalfont.h"
#include "drawing/r_renderer.h"
#include "drawing/windowsurface.h"
#include "screens.h"
#include "settings/r_data.h"
#include "testsupport.h"

#include <QtMath>

using namespace Qt::Literals::StringLiterals;

namespace {

using Corner = r_data::Corner;

// The bounding box of the pixels that satisfy a test.
QRect boxOf(const QImage &image, const std::function<bool(QRgb)> &test)
{
    QRect box;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (test(image.pixel(x, y)))
                box |= QRect(x, y, 1, 1);
    return box;
}

constexpr QRgb kMarker = 0xFF13A7C1; // a colour the card never uses

// A window's picture, sized as the study window uses it, with its renderer.
struct CardWindow
{
    QObject window;
    WindowSurface surface;
    r_data metrics;
    r_renderer renderer;

    CardWindow(int width, int height, int heightTrim, qreal ratio = 1.0) : surface(QColor::fromRgb(kMarker), ratio)
    {
        surface.Resize(QSize(width, height));
        metrics.ColorDefaults();
        renderer.Initialize(&window, &surface, &metrics, 50.0f, 0, heightTrim, 0);
    }
    const QImage &picture() const { return surface.image(); }
    void setCard(quint32 colour)
    {
        metrics.SetColor(u"backcolor_a"_s, colour);
        metrics.SetColor(u"backcolor_b"_s, colour);
    }
};

void setAlpha(bool on, int level)
{
    g_OsAlpha = true;
    modrender::AlphaEffects = on;
    modrender::AlphaLevel = quint8(level);
}

} // namespace

class DrawingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { InstallFontSubstitutes(); }

    void cleanup() { SetMainRenderer(nullptr); }

    // Its setup and release in the log.
    void rendererLifecycle()
    {
        TestEnvironment env;
        CardWindow card(640, 480, 60);
        auto hex = [](auto v) { return QString::number(quintptr(v), 16).toUpper() + u"/n"_s; };
        QCOMPARE(env.logLines().mid(2), // after the colour defaults
                 QStringList(
                         {u"initializing renderer/n"_s, u" .. using DC @ 0x"_s + hex(card.surface.handle()),
                          u" .. using window @ 0x"_s + hex(&card.window), u" .. using window size of ( 640 , 480 )/n"_s,
                          u" .. using modded window size of ( 640 , 420 )/n"_s,
                          u" .. using r_data class @ "_s + hex(&card.metrics), u" .. set refresh rate to 50 msec/n"_s,
                          u" .. using ZEL DC drawing class @ "_s + hex(card.renderer.Surface()),
                          u"renderer initialized ok/n"_s}));
        const bool suppressed = std::exchange(g_SuppressRefresh, false);
        card.renderer.StartRefresh();
        g_SuppressRefresh = suppressed;
        env.log->clear();
        card.renderer.Release(true); // its timer stops with it
        QVERIFY(!card.renderer.IsRefreshing());
        QCOMPARE(env.logLines(), QStringList({u"renderer going down/n"_s, u" .. renderer released ok/n"_s}));
        QVERIFY(!card.renderer.Surface());
        card.renderer.Present(); // a late tick does nothing
    }

    // The card keeps its geometry in logical pixels at every scale: the
    // picture has ratio x ratio device pixels for each, and the separator,
    // the untouched rows below it and the corner texts land where 1x puts
    // them, scaled. A frame without the main text is copied plainly (never
    // blended), with the corners whose flag is set.
    void cardGeometryAtEveryScale_data()
    {
        QTest::addColumn<qreal>("ratio");
        QTest::newRow("1x") << 1.0;
        QTest::newRow("1.5x") << 1.5;
    }
    void cardGeometryAtEveryScale()
    {
        QFETCH(qreal, ratio);
        TestEnvironment env;
        setAlpha(true, 10);
        CardWindow card(640, 480, 60, ratio);
        card.setCard(0xFFFFFF);
        card.metrics.SetColor(u"tl_text_forecolor"_s, 0x0000FF);
        card.metrics.SetCornerText(Corner::TopLeft, u"WWW"_s);
        card.metrics.SetCornerText(Corner::BottomRight, u"WWWW"_s);
        card.metrics.SetCornerShown(Corner::BottomRight, false);
        card.metrics.SetMainText(u"x"_s);
        card.renderer.DrawBackground(); // the corners, not the main text
        const QImage &img = card.picture();
        QCOMPARE(img.size(), QSize(qCeil(640 * ratio), qCeil(480 * ratio)));
        QCOMPARE(img, card.renderer.Surface()->Image());
        auto device = [ratio](int logical) { return int(logical * ratio); };
        // The separator row (logical 420) is painted, what lies below keeps
        // the black the surface was made with.
        QCOMPARE(img.pixel(5, device(420)), qRgb(255, 255, 255));
        QCOMPARE(img.pixel(5, qCeil(421 * ratio)), qRgb(0, 0, 0));
        // The top-left text starts 2 logical pixels in from the left edge.
        const QRect red = boxOf(img.copy(0, 0, img.width() / 2, img.height() / 4),
                                [](QRgb p) { return qRed(p) > 200 && qGreen(p) < 120; });
        QVERIFY(!red.isEmpty());
        QVERIFY2(red.left() >= device(2) && red.left() <= device(4), qPrintable(QString::number(red.left())));
        for (const QRect &blank : {QRect(320, 360, 320, 60), QRect(160, 100, 320, 220)}) // a hidden corner, the middle
            QVERIFY(boxOf(img.copy(QRect(blank.topLeft() * ratio, blank.size() * ratio)), [](QRgb p) {
                        return p != qRgb(255, 255, 255);
                    }).isEmpty());
    }

    // A white card drawn over a black window: the first present blends once
    // (level/255 of the way), the ticks after it close in, and idle costs nothing:
    // once the window shows the frame (copied, or blended until a blend
    // changes nothing) the timer's presentations skip all work, until the
    // frame or the window's picture changes.
    void presentingStopsWhenNothingCanChange_data()
    {
        QTest::addColumn<bool>("alpha");
        QTest::addColumn<int>("level");
        QTest::addColumn<int>("maxTicks"); // presentations that still change the window
        QTest::newRow("plain copy") << false << 90 << 0;
        QTest::newRow("fading at 90") << true << 90 << 40;
        QTest::newRow("level 0 never changes") << true << 0 << 0;
    }
    void presentingStopsWhenNothingCanChange()
    {
        QFETCH(bool, alpha);
        QFETCH(int, level);
        QFETCH(int, maxTicks);
        TestEnvironment env;
        setAlpha(alpha, level);
        CardWindow card(120, 60, 0);
        card.setCard(0xFFFFFF);
        card.metrics.SetMainText(u"."_s);
        card.surface.image().fill(Qt::black);
        card.renderer.Draw(true);
        const QPoint at(3, 30);
        const int first = alpha ? level : 255;
        QVERIFY(distance(card.picture().pixel(at), qRgb(first, first, first)) <= 1);
        int ticks = 0;
        for (; ticks < 200 && !card.renderer.IsSettled(); ++ticks)
            card.renderer.Present();
        QVERIFY2(ticks <= maxTicks + 1, qPrintable(QString::number(ticks)));
        QVERIFY(distance(card.picture().pixel(at), qRgb(255, 255, 255)) <= 2 || level == 0);
        const quint64 revision = card.surface.Revision();
        for (int tick = 0; tick < 20; ++tick)
            card.renderer.Present();
        QCOMPARE(card.surface.Revision(), revision); // no copy, no repaint

        // Someone paints over the window: the timer shows the frame again,
        // rests once nothing can change, and wakes for a new frame or a
        // change to the window's picture.
        card.surface.image().fill(kMarker);
        card.surface.Changed(QRect(0, 0, 120, 60));
        SetMainRenderer(&card.renderer);
        card.renderer.StartRefresh();
        QTRY_VERIFY(card.renderer.IsResting()); // the timer still running, at rest
        QVERIFY(card.picture().pixel(60, 30) != kMarker || level == 0);
        card.renderer.Draw(true);
        QVERIFY(!card.renderer.IsResting());
        QTRY_VERIFY(card.renderer.IsResting());
        card.surface.Changed(QRect(0, 0, 1, 1));
        QVERIFY(!card.renderer.IsResting());
        QTRY_VERIFY(card.renderer.IsResting());
    }
};

QTEST_MAIN(DrawingTest)
#include "tst_drawing.moc"
