// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/propertybag.h"
#include "drawing/cmemdc.h"
#include "uitestsupport.h"

#include <QSignalSpy>

using namespace Qt::Literals::StringLiterals;

namespace {

// The pixel at a logical position, at whatever scale the screen has.
QRgb pixel(const zelControl &c, int x, int y)
{
    const qreal ratio = c.surface().devicePixelRatio();
    return c.surface().image().pixel(int(x * ratio), int(y * ratio));
}

bool shows(const zelControl &c, quint32 colour)
{
    return HasColour(c.surface().image(), rgb(colour));
}

// A new control of this kind ("zelFlatButton", "zelCheck", "zelHL") as
// placed on a window.
std::unique_ptr<zelControl> make(const QString &kind)
{
    std::unique_ptr<zelControl> c;
    if (kind == u"zelFlatButton"_s)
        c = std::make_unique<zelFlatButton>();
    else if (kind == u"zelCheck"_s)
        c = std::make_unique<zelCheck>();
    else
        c = std::make_unique<zelHL>();
    c->setObjectName(kind + u'1');
    c->InitProperties();
    c->resize(60, 20);
    c->Redraw();
    return c;
}

// Every property of a control: the hover flag, bc, fc, fcm, then bcm, bcd,
// fcd of the button, the caption, enabled, chk of the box.
QVariantList properties(zelControl &c)
{
    QVariantList p {c.Hovering(), c.Backcolor(), c.Forecolor(), c.ForecolorMouse()};
    if (auto *b = qobject_cast<zelFlatButton *>(&c))
        p << b->BackcolorMouse() << b->BackcolorDisabled() << b->ForecolorDisabled();
    p << c.Caption() << c.Enabled();
    if (auto *k = qobject_cast<zelCheck *>(&c))
        p << k->Checked();
    return p;
}

} // namespace

class ControlsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { InstallFontSubstitutes(); }

    // Clicks, and keys: they mean nothing to the control and go on to the
    // window as the key's code and the modifiers' mask, from an enabled
    // control or not.
    void clicksAndKeys_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<bool>("enabled");
        for (const QString &kind : {u"zelFlatButton"_s, u"zelCheck"_s, u"zelHL"_s}) {
            QTest::addRow("%s", qPrintable(kind)) << kind << true;
            QTest::addRow("%s disabled", qPrintable(kind)) << kind << false;
        }
    }
    void clicksAndKeys()
    {
        QFETCH(QString, kind);
        QFETCH(bool, enabled);
        auto c = make(kind);
        auto *check = qobject_cast<zelCheck *>(c.get());
        c->SetEnabled(enabled);
        QSignalSpy clicks(c.get(), &zelControl::Click);
        c->HandleMouseMove(2, 2);
        QCOMPARE(c->cursor().shape(), enabled ? Qt::PointingHandCursor : Qt::ArrowCursor); // a hand where a click works
        QTest::mouseClick(c.get(), Qt::LeftButton, {}, QPoint(2, 2));
        QCOMPARE(clicks.count(), enabled ? 1 : 0);
        QCOMPARE(c->Hovering(), !enabled); // a click clears the hover flag
        if (check)
            QCOMPARE(check->Checked(), enabled);

        QSignalSpy keys(c.get(), &zelControl::KeyDown);
        QTest::keyClick(c.get(), Qt::Key_X, Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier);
        // The modifier keys come first, as keys of their own.
        QCOMPARE(QList<int>({keys.last().at(0).toInt(), keys.last().at(1).toInt()}), QList<int>({88, 7}));
    }

    // The box's outline: the back colour lightened by a quarter of white,
    // of the mouse colour under the mouse, none when disabled. The cross and
    // the caption take the fore colour, the mouse colour or grey.
    void checkBox()
    {
        zelCheck c;
        c.resize(200, 24);
        c.SetBackcolor(0x000000);
        c.SetForecolor(0xFFFFFF);
        c.SetForecolorMouse(0x00FFFF); // yellow
        c.SetCaption(u"I had trouble with this card"_s);
        const auto outlineAndCentre = [&c] { return QList<QRgb>({pixel(c, 2, 2), pixel(c, 11, 11)}); };
        QCOMPARE(outlineAndCentre(), QList<QRgb>({rgb(0x404040), rgb(0)}));
        QVERIFY(shows(c, 0xFFFFFF));
        QTest::mouseClick(&c, Qt::LeftButton, {}, QPoint(5, 5)); // ticked: the diagonals cross in the centre
        QCOMPARE(outlineAndCentre(), QList<QRgb>({rgb(0x404040), rgb(0xFFFFFF)}));
        c.HandleMouseMove(5, 5);
        QCOMPARE(outlineAndCentre(), QList<QRgb>({rgb(cMemDC::BlendColour(0x00FFFF, 0xFFFFFF, 0.75)), rgb(0x00FFFF)}));
        c.SetEnabled(false);
        c.HandleMouseMove(-1, -1);
        QCOMPARE(outlineAndCentre(), QList<QRgb>({rgb(0), rgb(0xB3B3B3)})); // the caption's grey too
    }

    // The link repaints at every change of a property, and raises no hover
    // events of its own.
    void link()
    {
        zelHL link;
        QSignalSpy over(&link, &zelControl::MouseOver);
        link.resize(10, 18);
        link.SetCaption(u"www"_s);
        const int shortWidth = link.width();
        link.SetBackcolor(0x00FF00);
        QCOMPARE(pixel(link, 0, 0), rgb(0x00FF00));
        link.SetForecolor(0x0000FF);
        QVERIFY(shows(link, 0x0000FF));
        link.SetForecolorMouse(0x0000FF); // hovered, the underline is all that changes
        const QImage plain = link.surface().image().copy();
        link.HandleMouseMove(1, 1);
        QVERIFY(over.isEmpty() && link.surface().image() != plain);
        link.SetForecolorMouse(0xFF0000);
        QVERIFY(shows(link, 0xFF0000));
        link.SetEnabled(false); // a quarter of the fore colour over the back colour
        QVERIFY(shows(link, 0x00BF40) && !shows(link, 0xFF0000));
        link.SetCaption(u"a much longer caption for the link"_s);
        QVERIFY(link.width() > shortWidth + 50);
        QCOMPARE(link.surface().image().size(), DeviceSize(link.size(), link.devicePixelRatioF()));
        link.SetCaption(QString());
        QCOMPARE(link.width(), 0);
    }

    // A new control's properties, none of them written while at its default.
    // (The keys of the properties that differ are in the windows' recorded
    // layouts.)
    void propertyDefaults_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QVariantList>("defaults"); // as properties() lists them
        const QVariantList shared {false, 0xFF0000u, 0u, 0u};
        QTest::newRow("flat button") << u"zelFlatButton"_s
                                     << shared + QVariantList {33023u, 0u, 0x808080u, u"zelFlatButton1"_s, true};
        QTest::newRow("check box") << u"zelCheck"_s << shared + QVariantList {u"zelCheck1"_s, true, false};
        QTest::newRow("link") << u"zelHL"_s << shared + QVariantList {u"zelHL1"_s, true};
    }
    void propertyDefaults()
    {
        QFETCH(QString, kind);
        QFETCH(QVariantList, defaults);
        auto control = make(kind);
        QCOMPARE(properties(*control), defaults);
        PropertyBag bag;
        control->WriteProperties(bag);
        QVERIFY(bag.values().isEmpty());
        // What a changed control writes, a new one reads back.
        control->SetBackcolor(1);
        control->SetForecolorMouse(2);
        control->SetCaption(u"x"_s);
        control->SetEnabled(false);
        if (auto *k = qobject_cast<zelCheck *>(control.get()))
            k->SetChecked(true);
        control->WriteProperties(bag);
        auto back = make(kind);
        back->ReadProperties(bag);
        QCOMPARE(properties(*back), properties(*control));
    }
};

QTEST_MAIN(ControlsTest)
#include "tst_controls.moc"
