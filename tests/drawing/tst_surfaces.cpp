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
#include <QRegularExpression>

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

    // A surface never made measures nothing; a size below zero counts as none.
    void negativeSizeIsNone()
    {
        cMemDC dc;
        QCOMPARE(dc.TextWidth(u"not created"_s), 0);
        int w = -3, h = -5;
        dc.Create(w, h);
        QCOMPARE(QSize(dc.Width(), dc.Height()), QSize(0, 0));
    }

    // Every window shares the one icon, made once.
    void programIconMadeOnce() { QCOMPARE(ProgramIcon().cacheKey(), ProgramIcon().cacheKey()); }
};

QTEST_MAIN(SurfacesTest)
#include "tst_surfaces.moc"
