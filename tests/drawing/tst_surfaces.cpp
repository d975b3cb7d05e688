// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/osversion.h"
#include "drawing/cmemdc.h"
#include "drawing/colourcontrast.h"
#include "drawing/logicalfont.h"
#include "drawing/paintedicon.h"
#include "drawing/programicon.h"
#include "drawing/windowsurface.h"
#include "drawing/zelsplashdraw.h"
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

    // Black to white over x = 0..100 on a surface 102 wide, every row alike,
    // the column past it not painted: the system fill from 4.11 on, up to its
    // exclusive end; before it, painted by hand, both ends in and mirrored.
    void gradientPaths()
    {
        for (const int versionCode : {411, 410}) {
            SetOsVersionOverride(OsVersion {versionCode / 100, versionCode % 100, 0});
            WindowSurface window(QColor::fromRgb(kMarker));
            window.Resize(QSize(102, 10));
            cMemDC dc;
            int w = 102, h = 10;
            dc.Create(w, h, &window, &window); // drawing straight into the window's picture
            dc.Gradient(0, 0, 100, 10, 0x000000, 0xFFFFFF);
            const QImage &img = dc.Image();
            const bool system = versionCode >= 411;
            QCOMPARE(QList<QRgb>(
                             {img.pixel(0, 5), img.pixel(50, 9), img.pixel(system ? 99 : 100, 5), img.pixel(101, 5)}),
                     QList<QRgb>({system ? qRgb(0, 0, 0) : qRgb(255, 255, 255), qRgb(128, 128, 128),
                                  system ? qRgb(252, 252, 252) : qRgb(0, 0, 0), kMarker}));
        }
    }

    // Contrast as people see it, and the text colour that stays readable: the
    // one asked for, or else black or white, whichever stands out more.
    void contrast()
    {
        const double onBlack[] {5.252, 15.304, 2.444}; // red, green and blue
        for (int i = 0; i < 3; ++i)
            QVERIFY2(qAbs(ContrastRatio(0xFFu << (8 * i), 0) - onBlack[i]) < 0.001, qPrintable(QString::number(i)));
        QCOMPARE(ContrastRatio(0, 0xFFFFFF), 21.0);
        // Red kept; blue on black and grey on light grey give way; the system's window text on white.
        QCOMPARE(QList<quint32>({ReadableOn(0x0000FF, 0), ReadableOn(0xFF0000, 0), ReadableOn(0x808080, 0xC0C0C0),
                                 ReadableOn(0x80000008, 0xFFFFFF)}),
                 QList<quint32>({0x0000FF, 0xFFFFFF, 0, 0}));
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
};

QTEST_MAIN(SurfacesTest)
#include "tst_surfaces.moc"
