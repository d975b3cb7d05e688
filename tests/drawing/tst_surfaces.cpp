// SPDX-License-Identifier: GPL-3.0-or-later
#include "drawing/cmemdc.h"
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

// The pictures drawn from code alone (no settings): each row draws one.
QImage designedPicture(const QString &name)
{
    const QStringList part = name.split(u' ');
    const int size = part.last().toInt();
    if (part.first() == u"program"_s)
        return ProgramIcon().pixmap(QSize(size, size), 1.0).toImage();
    if (part.first() == u"command"_s)
        return CommandIconFor(CommandIcon(part.at(1).toInt()))
                .pixmap(QSize(size, size), 1.0, part.contains(u"disabled"_s) ? QIcon::Disabled : QIcon::Normal)
                .toImage();
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
        QTest::newRow("program icon 16") << u"c7b15ceea6f4381d"_s;
        QTest::newRow("program icon 256") << u"3cb4176be22eb7bb"_s;
        QTest::newRow("splash at step 17") << u"3872c9b038012e85"_s;
        const char *const commands[] {"0d7a89fac1d8d136", "e9303fd7ea834c1a", "d5d3417c2079acf5", "f44f79e6b66e69c7",
                                      "3ad17c364ddbdaa6"};
        for (int i = 0; i < 5; ++i)
            QTest::addRow("command %d 16", i) << QString::fromLatin1(commands[i]);
        QTest::newRow("command 1 disabled 16") << u"e44e14ae332f1e2e"_s; // greyed out, as on a toolbar
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

    // A surface never made measures nothing; a size below zero counts as none.
    void negativeSizeIsNone()
    {
        cMemDC dc;
        QCOMPARE(dc.TextWidth(u"not created"_s), 0);
        int w = -3, h = -5;
        dc.Create(w, h);
        QCOMPARE(QSize(dc.Width(), dc.Height()), QSize(0, 0));
    }

    // A window grown: what it showed stays, the new part is its background.
    void surfaceGrows()
    {
        WindowSurface surface(Qt::blue);
        surface.Resize(QSize(4, 4));
        surface.image().fill(Qt::red);
        surface.Resize(QSize(8, 8));
        QCOMPARE(std::pair(surface.image().pixel(1, 1), surface.image().pixel(6, 6)),
                 std::pair(qRgb(255, 0, 0), qRgb(0, 0, 255)));
    }
};

QTEST_MAIN(SurfacesTest)
#include "tst_surfaces.moc"
