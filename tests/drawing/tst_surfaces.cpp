// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/osversion.h"
#include "drawing/cmemdc.h"
#include "drawing/colourcontrast.h"
#include "drawing/logicalfont.h"
#include "drawing/paintedicon.h"
#include "drawing/programicon.h"
#include "drawing/windowsurface.h"
#include "drawing/zelsplashdraw.h"
#include "screens.h"
#include "testsupport.h"

#include <QCryptographicHash>
#include <QDir>
#include <QGuiApplication>
#include <QPainter>
#include <QPalette>
#include <QRegularExpression>

#include <tuple>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr QRgb kMarker = 0xFF13A7C1; // a colour no picture here uses

// The pictures drawn from code alone (no settings): each row draws one.
QImage designedPicture(const QString &name)
{
    const QStringList part = name.split(u' ');
    const int size = part.last().toInt();
    if (part.first() == u"program"_s)
        return ProgramIcon().pixmap(QSize(size, size), 1.0).toImage();
    if (part.first() == u"command"_s)
        return CommandIconFor(CommandIcon(part.at(1).toInt())).pixmap(QSize(size, size), 1.0).toImage();
    int w = 460, h = 260;
    cMemDC dc;
    dc.Create(w, h);
    zelSplashDraw splash;
    splash.SetStatusText(u"starting the KORVA class driver ..."_s);
    for (int step = 0; step < size; ++step)
        splash.Advance();
    splash.Paint(dc, w, h);
    return dc.Image();
}

} // namespace

// The drawing surface and the pictures drawn from code: the icons and the splash.
class SurfacesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { InstallFontSubstitutes(); }
    // Every picture drawn from code, pixel for pixel as designed and reviewed.
    // A deliberate change of one: look at the picture the failure saves, then
    // put its new digest here.
    void picturesAsDesigned_data()
    {
        QTest::addColumn<QString>("digest");
        const char *const rows[][2] =
                {{"program icon 16", "c7b15ceea6f4381d"},  {"program icon 64", "73d200facd587603"},
                 {"program icon 256", "3cb4176be22eb7bb"}, {"command 0 16", "0d7a89fac1d8d136"},
                 {"command 1 16", "e9303fd7ea834c1a"},     {"command 2 16", "d5d3417c2079acf5"},
                 {"command 3 16", "f44f79e6b66e69c7"},     {"command 4 16", "3ad17c364ddbdaa6"},
                 {"command 0 32", "e3736d0c2e21dc45"},     {"command 1 32", "05c06ee08582e849"},
                 {"command 2 32", "2e823002f58ae367"},     {"command 3 32", "25f3346c71be6ae0"},
                 {"command 4 32", "33990c6ee8feaa60"},     {"splash at step 17", "3872c9b038012e85"}};
        for (const auto &row : rows)
            QTest::newRow(row[0]) << QString::fromLatin1(row[1]);
    }
    void picturesAsDesigned()
    {
        QFETCH(QString, digest);
        QTest::failOnWarning(QRegularExpression(u".*"_s)); // an unbalanced painter, say
        const QString name = QString::fromLatin1(QTest::currentDataTag());
        QImage picture = designedPicture(name).convertToFormat(QImage::Format_ARGB32);
        const QByteArray bytes(reinterpret_cast<const char *>(picture.constBits()), picture.sizeInBytes());
        const QString actual =
                QString::fromLatin1(QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex().left(16));
        if (actual != digest)
            picture.save(QDir::temp().filePath(u"vocabrix-"_s + QString(name).replace(u' ', u'-') + u".png"_s));
        QCOMPARE(actual, digest);
    }

    // A window's watcher hears every change until the one who set it goes.
    void changeWatcherBelongsToItsKey()
    {
        WindowSurface surface;
        surface.Resize(QSize(8, 8));
        int heard = 0;
        const int owner = 0, stranger = 0;
        surface.SetChangeWatcher(&owner, [&] { ++heard; });
        surface.Changed(QRect(0, 0, 1, 1));
        surface.ClearChangeWatcher(&stranger);
        surface.Changed(QRect(0, 0, 1, 1));
        QCOMPARE(heard, 2);
        surface.ClearChangeWatcher(&owner);
        surface.Changed(QRect(0, 0, 1, 1));
        QCOMPARE(heard, 2);
    }

    void cleanup() { SetOsVersionOverride(std::nullopt); }

    void gradientPaths_data()
    {
        QTest::addColumn<int>("versionCode");
        QTest::addColumn<QList<QRgb>>("row"); // at x = 0, 50 and the end; the column past it is not painted
        // Black to white over x = 0..100 on a surface 102 wide.
        const QList<QRgb> system {qRgb(0, 0, 0), qRgb(128, 128, 128), qRgb(252, 252, 252)};
        QTest::newRow("system fill") << 500 << system;
        QTest::newRow("system fill from 4.11 on") << 411 << system;
        QTest::newRow("hand-painted, mirrored")
                << 410 << QList<QRgb> {qRgb(255, 255, 255), qRgb(128, 128, 128), qRgb(0, 0, 0)};
    }
    void gradientPaths()
    {
        QFETCH(int, versionCode);
        QFETCH(QList<QRgb>, row);
        SetOsVersionOverride(OsVersion {versionCode / 100, versionCode % 100, 0});
        WindowSurface window(QColor::fromRgb(kMarker));
        window.Resize(QSize(102, 10));
        cMemDC dc;
        int w = 102, h = 10;
        dc.Create(w, h, &window, &window); // drawing straight into the window's picture
        QCOMPARE(dc.OsVersionCode(), versionCode);
        dc.Gradient(0, 0, 100, 10, 0x000000, 0xFFFFFF);
        const QImage &img = dc.Image();
        const int end = versionCode >= 411 ? 99 : 100;
        QCOMPARE(QList<QRgb>(
                         {img.pixel(0, 5), img.pixel(50, 5), img.pixel(50, 9), img.pixel(end, 5), img.pixel(101, 5)}),
                 QList<QRgb>({row[0], row[1], row[1], row[2], kMarker})); // every row alike
    }

    void blendHalvesToEven_data()
    {
        QTest::addColumn<quint32>("a");
        QTest::addColumn<quint32>("b");
        QTest::addColumn<double>("t");
        QTest::addColumn<quint32>("blend");
        QTest::newRow("t = 0 gives colour2") << 0x102030u << 0xA0B0C0u << 0.0 << 0xA0B0C0u;
        QTest::newRow("t = 1 gives colour1") << 0x102030u << 0xA0B0C0u << 1.0 << 0x102030u;
        QTest::newRow("0.5 rounds down to even") << 0x000001u << 0u << 0.5 << 0u;
        QTest::newRow("1.5 rounds up to even") << 0x000003u << 0u << 0.5 << 0x000002u;
        QTest::newRow("quarter of white") << 0xFFFFFFu << 0u << 0.25 << 0x404040u;
        QTest::newRow("three parts colour, one white") << 0xFF0000u << 0xFFFFFFu << 0.75 << 0xFF4040u;
    }
    void blendHalvesToEven()
    {
        QFETCH(quint32, a);
        QFETCH(quint32, b);
        QFETCH(double, t);
        QFETCH(quint32, blend);
        QCOMPARE(cMemDC::BlendColour(a, b, t), blend);
    }

    void rectanglesExcludeTheirFarEdges()
    {
        WindowSurface window(Qt::black);
        window.Resize(QSize(10, 10));
        cMemDC dc;
        int w = 10, h = 10;
        dc.Create(w, h, &window, &window);
        dc.FillRect(2, 2, 5, 5, 0x0000FF);
        QCOMPARE(dc.Image().pixel(4, 4), qRgb(255, 0, 0));
        QCOMPARE(dc.Image().pixel(5, 5), qRgb(0, 0, 0));
        dc.FillRect(5, 2, 2, 5, 0x00FF00); // reversed either way: nothing
        dc.FillRect(2, 5, 5, 2, 0x00FF00);
        QCOMPARE(dc.Image().pixel(3, 3), qRgb(255, 0, 0));
        dc.Rectangle(0, 0, 10, 10, 0xFFFFFF, 0x00FF00);
        QCOMPARE(dc.Image().pixel(0, 0), qRgb(255, 255, 255));
        QCOMPARE(dc.Image().pixel(9, 9), qRgb(255, 255, 255));
        QCOMPARE(dc.Image().pixel(1, 1), qRgb(0, 255, 0));
        // A line's ends are flat: it covers its length, and no more.
        dc.FillRect(0, 0, 10, 10, 0);
        dc.Line(2, 5, 7, 5, 0xFFFFFF, 2);
        QList<QRgb> row;
        for (int x : {1, 2, 6, 7})
            row << dc.Image().pixel(x, 5);
        QCOMPARE(row, QList<QRgb>({qRgb(0, 0, 0), qRgb(255, 255, 255), qRgb(255, 255, 255), qRgb(0, 0, 0)}));
        // Colours with the high bit set are the system's: 0 is a scroll bar's colour, 4, 5 and 30 a menu's, the
        // window's and the menu bar's, 24 a tooltip's background, 25 none (black).
        QCOMPARE(cMemDC::TranslateColor(0x12345678u), 0x345678u);
        const QPalette palette = QGuiApplication::palette();
        const std::pair<quint32, QColor> system[] = {{0, palette.color(QPalette::Button)},
                                                     {4, palette.color(QPalette::Base)},
                                                     {5, palette.color(QPalette::Base)},
                                                     {30, palette.color(QPalette::Base)},
                                                     {24, palette.color(QPalette::ToolTipBase)},
                                                     {25, Qt::black}};
        for (const auto &[index, c] : system)
            QCOMPARE(cMemDC::TranslateColor(0x80000000u | index), quint32(c.red() | c.green() << 8 | c.blue() << 16));
    }

    // Contrast as people see it, and the text colour that stays readable.
    void contrast_data()
    {
        QTest::addColumn<quint32>("preferred");
        QTest::addColumn<quint32>("background");
        QTest::addColumn<double>("ratio");
        QTest::addColumn<quint32>("readable");
        QTest::newRow("black and white") << 0u << 0xFFFFFFu << 21.0 << 0u;
        QTest::newRow("the same colour") << 0x123456u << 0x123456u << 1.0 << 0xFFFFFFu;
        QTest::newRow("red on black") << 0x0000FFu << 0u << 5.252 << 0x0000FFu;
        QTest::newRow("green on black") << 0x00FF00u << 0u << 15.304 << 0x00FF00u;
        QTest::newRow("blue on black: white instead") << 0xFF0000u << 0u << 2.444 << 0xFFFFFFu;
        QTest::newRow("grey on light grey: black instead") << 0x808080u << 0xC0C0C0u << 2.171 << 0u;
        QTest::newRow("the system's window text") << 0x80000008u << 0xFFFFFFu << 21.0 << 0u;
    }
    void contrast()
    {
        QFETCH(quint32, preferred);
        QFETCH(quint32, background);
        QFETCH(double, ratio);
        QFETCH(quint32, readable);
        QVERIFY2(qAbs(ContrastRatio(preferred, background) - ratio) < 0.001,
                 qPrintable(QString::number(ContrastRatio(preferred, background))));
        QCOMPARE(ContrastRatio(background, preferred), ContrastRatio(preferred, background));
        QCOMPARE(ReadableOn(preferred, background), readable);
    }

    // An icon painted into a place on a window lands there, and only there.
    void iconPaintedInPlace()
    {
        QImage at(40, 40, QImage::Format_ARGB32_Premultiplied);
        at.fill(Qt::transparent);
        QPainter painter(&at);
        ProgramIcon().paint(&painter, QRect(20, 20, 16, 16));
        painter.end();
        for (int y = 0; y < 40; ++y)
            for (int x = 0; x < 40; ++x)
                if (qAlpha(at.pixel(x, y)) != 0)
                    QVERIFY2(QRect(20, 20, 16, 16).contains(x, y), qPrintable(u"%1,%2"_s.arg(x).arg(y)));
        QVERIFY(qAlpha(at.pixel(28, 30)) != 0);
        // Disabled, it is faded.
        QImage faded(40, 40, QImage::Format_ARGB32_Premultiplied);
        faded.fill(Qt::transparent);
        painter.begin(&faded);
        ProgramIcon().paint(&painter, QRect(20, 20, 16, 16), Qt::AlignCenter, QIcon::Disabled);
        painter.end();
        QVERIFY(qAlpha(faded.pixel(28, 30)) > 0 && qAlpha(faded.pixel(28, 30)) < qAlpha(at.pixel(28, 30)) * 3 / 4);
    }

    // Every window shares the one icon, made once.
    void programIconMadeOnce() { QCOMPARE(ProgramIcon().cacheKey(), ProgramIcon().cacheKey()); }

    // A control's font reaches its surface with every attribute it has, and is drawn with them.
    void fontFromWidget()
    {
        QFont font(u"DejaVu Sans"_s);
        font.setPixelSize(32);
        for (const bool on : {false, true}) {
            font.setBold(on);
            font.setItalic(on);
            font.setUnderline(on);
            font.setStrikeOut(on);
            const LogicalFont s = LogicalFont::fromQFont(font);
            QCOMPARE(std::tuple(s.name, s.size, s.weight), std::tuple(u"DejaVu Sans"_s, 24.0, on ? 700 : 400));
            QCOMPARE(QList<bool>({s.bold, s.italic, s.underline, s.strikethrough}), QList<bool>(4, on));
            const QFont back = s.toQFont(); // and the surface draws with all of them
            QCOMPARE(QList<bool>({back.bold(), back.italic(), back.underline(), back.strikeOut()}), QList<bool>(4, on));
        }
        QCOMPARE(LogicalFont::fromQFont(QFont(u"DejaVu Sans"_s, 1)).size, 1.0); // the smallest size in points
    }

    void textMeasures()
    {
        cMemDC dc;
        QCOMPARE(dc.TextWidth(u"not created"_s), 0);
        int l = 0, t = 0, r = 100, b = 20;
        QCOMPARE(dc.DrawText(u"not created"_s, l, t, r, b, 0), 0);
        int none = 0;
        dc.Create(none, none);
        QCOMPARE(dc.DrawText(u"made without room"_s, l, t, r, b, 0), 0);
        int w = 200, h = 50;
        dc.Create(w, h);
        LogicalFont font;
        font.size = 12;
        dc.SetFont(font);
        l = 10, t = 20, r = 11, b = 21;
        const int height = dc.DrawText(u"Guten Morgen"_s, l, t, r, b, cMemDC::DT_CALCRECT | cMemDC::DT_SINGLELINE);
        QCOMPARE(l, 10);
        QCOMPARE(t, 20);
        QCOMPARE(r - l, dc.TextWidth(u"Guten Morgen"_s));
        QCOMPARE(b - t, dc.TextHeight(u"Guten Morgen"_s));
        QCOMPARE(height, b - t);
        QVERIFY(r - l > 50);
        QCOMPARE(font.pixelHeight(), 16);
        QCOMPARE((LogicalFont {u"Tahoma"_s, 72.0}).pixelHeight(), 96); // an inch at 96 dots an inch
        r = l + 1; // one word a line when words may break the line, one line when they may not
        QCOMPARE(dc.DrawText(u"Guten Morgen"_s, l, t, r, b, cMemDC::DT_CALCRECT | cMemDC::DT_WORDBREAK), 2 * height);
        r = l + 1;
        QCOMPARE(dc.DrawText(u"Guten Morgen"_s, l, t, r, b, cMemDC::DT_CALCRECT), height);
        // Drawn, a text too long for its box is cut off at the box's edges.
        dc.FillRect(0, 0, w, h, 0);
        dc.SetForeColor(0xFFFFFF);
        l = 80, t = 10, r = 120, b = 40;
        dc.DrawText(u"Guten Morgen"_s, l, t, r, b, cMemDC::DT_CENTER | cMemDC::DT_VCENTER | cMemDC::DT_SINGLELINE);
        auto lit = [&dc](const QRect &area) {
            const QImage part = dc.Image().copy(area);
            for (int y = 0; y < part.height(); ++y)
                for (int x = 0; x < part.width(); ++x)
                    if (part.pixel(x, y) != qRgb(0, 0, 0))
                        return true;
            return false;
        };
        QVERIFY(lit(QRect(80, 10, 40, 30)));
        QVERIFY(!lit(QRect(0, 0, 80, h)) && !lit(QRect(120, 0, w - 120, h)));
    }

    // A surface made for a window writes in the window's text colour and
    // font; one made for the screen in black and the small default font.
    void surfaceTakesTheWindowsText_data()
    {
        QTest::addColumn<bool>("forWindow");
        QTest::addColumn<qint64>("textColor"); // the window's, blue in the high byte; -1: as it starts
        QTest::addColumn<QRgb>("drawn");
        QTest::addColumn<bool>("tall");
        QTest::newRow("a new window: black") << true << qint64(-1) << qRgb(0, 0, 0) << true;
        QTest::newRow("a window in red") << true << qint64(0x0000FF) << qRgb(0xFF, 0, 0) << true;
        QTest::newRow("the screen") << false << qint64(0x0000FF) << qRgb(0, 0, 0) << false;
    }
    void surfaceTakesTheWindowsText()
    {
        QFETCH(bool, forWindow);
        QFETCH(qint64, textColor);
        QFETCH(QRgb, drawn);
        QFETCH(bool, tall);
        WindowSurface window(Qt::white);
        window.Resize(QSize(60, 60));
        if (textColor >= 0)
            window.textColor = quint32(textColor);
        window.font.size = 30;
        window.font.bold = true;
        cMemDC dc;
        int w = 60, h = 60, l = 0, t = 0, r = w, b = h;
        dc.Create(w, h, forWindow ? &window : nullptr);
        dc.FillRect(0, 0, w, h, 0xFFFFFF);
        dc.DrawText(u"W"_s, l, t, r, b, cMemDC::DT_CENTER | cMemDC::DT_VCENTER | cMemDC::DT_SINGLELINE);
        const QImage &image = dc.Image();
        QRgb darkest = qRgb(0xFF, 0xFF, 0xFF); // a pixel the letter covers whole
        int inked = 0;
        for (int y = 0; y < image.height(); ++y) {
            bool inRow = false;
            for (int x = 0; x < image.width(); ++x) {
                const QRgb p = image.pixel(x, y);
                darkest = qGray(p) < qGray(darkest) ? p : darkest;
                inRow = inRow || p != qRgb(0xFF, 0xFF, 0xFF);
            }
            inked += inRow ? 1 : 0;
        }
        QCOMPARE(darkest, drawn);
        QCOMPARE(inked / dc.DevicePixelRatio() > 20, tall);
    }

    // Made again, a surface starts clean: the clip it had is gone. Copied
    // without a place, it lands at the window's origin. One never made, or
    // made empty, draws nothing; destroyed, it forgets its window too.
    void surfaceLifecycle()
    {
        cMemDC dc;
        int w = 8, h = 8;
        dc.Create(w, h);
        dc.SetClip(QRect(0, 0, 2, 2));
        dc.Create(w, h);
        dc.FillRect(0, 0, 8, 8, 0x0000FF);
        QCOMPARE(dc.Image().pixel(7, 7), qRgb(0xFF, 0, 0));
        WindowSurface window(QColor::fromRgb(kMarker));
        window.Resize(QSize(9, 9));
        dc.Blit(&window); // the whole surface
        QCOMPARE(window.image().pixel(0, 0), qRgb(0xFF, 0, 0));
        QCOMPARE(window.image().pixel(7, 7), qRgb(0xFF, 0, 0));
        QCOMPARE(window.image().pixel(8, 8), kMarker);

        window.image().fill(kMarker);
        cMemDC never;
        never.FillRect(0, 0, 20, 20, 0);
        never.Blit(&window);
        cMemDC zero;
        w = 0;
        zero.Create(w, h, &window);
        QVERIFY(zero.IsValid());
        zero.FillRect(0, 0, 20, 20, 0);
        zero.Gradient(0, 0, 20, 20, 0, 0xFFFFFF);
        zero.Blit();
        zero.AlphaBlit(nullptr, 0, 0, 0, 0, 0, 0, 128);
        QCOMPARE(window.image().pixel(4, 4), kMarker);
        w = 8, h = -5; // a size below zero is none
        zero.Create(w, h, &window);
        QCOMPARE(QSize(zero.Width(), zero.Height()), QSize(8, 0));
        zero.Blit();
        QCOMPARE(window.image().pixel(4, 4), kMarker);
        zero.Destroy();
        QVERIFY(!zero.IsValid() && !zero.Target());
    }

    void alphaCopies_data()
    {
        QTest::addColumn<int>("alpha");
        QTest::addColumn<QRgb>("result");
        QTest::newRow("255 is a plain copy") << 255 << qRgb(200, 100, 50);
        QTest::newRow("0 leaves the window") << 0 << qRgb(0, 0, 0);
        QTest::newRow("90 moves 90/255 of the way") << 90 << qRgb(71, 35, 18);
    }
    void alphaCopies()
    {
        QFETCH(int, alpha);
        QFETCH(QRgb, result);
        WindowSurface window(Qt::black);
        window.Resize(QSize(8, 8));
        cMemDC dc;
        int w = 8, h = 8;
        dc.Create(w, h, &window);
        dc.FillRect(0, 0, 8, 8, 0x3264C8);
        dc.AlphaBlit(nullptr, 0, 0, 0, 0, 0, 0, alpha);
        QVERIFY(distance(window.image().pixel(3, 3), result) <= 1);
    }

    // The splash repaints only the part that changed; the parts never overlap,
    // so a picture kept up to date part by part equals one painted whole.
    void splashPaintsOnlyWhatChanged()
    {
        const int w = 460, h = 260;
        int wk = w, hk = h;
        cMemDC kept, whole, marked;
        kept.Create(wk, hk);
        whole.Create(wk, hk);
        marked.Create(wk, hk);
        zelSplashDraw splash;
        splash.Paint(kept, w, h);
        for (int line = 0; line < 5; ++line) {
            splash.SetStatusText(u"starting the KORVA class driver .. %1"_s.arg(line));
            splash.Paint(kept, w, h, zelSplashDraw::StatusRect(w, h));
            splash.Advance();
            splash.Paint(kept, w, h, zelSplashDraw::SweepRect(w));
        }
        splash.Paint(whole, w, h);
        QCOMPARE(kept.Image(), whole.Image());

        // A part painted alone leaves everything around it as it was.
        marked.FillRect(0, 0, w, h, 0xC1A713);
        const QRect status = zelSplashDraw::StatusRect(w, h);
        splash.Paint(marked, w, h, status);
        QCOMPARE(marked.Image().pixel(status.left(), status.top() - 1), kMarker);
        QCOMPARE(marked.Image().pixel(status.left(), status.bottom() + 1), kMarker);
        QCOMPARE(marked.Image().copy(status), whole.Image().copy(status));
    }
};

QTEST_MAIN(SurfacesTest)
#include "tst_surfaces.moc"
