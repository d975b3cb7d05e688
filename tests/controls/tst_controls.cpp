#include "controls/propertybag.h"
#include "controls/zelaccessible.h"
#include "uitestsupport.h"

#include <QAccessible>

#include <QPainter>
#include <QSignalSpy>

using namespace Qt::Literals::StringLiterals;

namespace {

QRgb rgb(quint32 ole)
{
    return qRgb(int(ole & 0xFF), int((ole >> 8) & 0xFF), int((ole >> 16) & 0xFF));
}

QRgb pixel(const zelControl &c, int x, int y)
{
    return c.surface().image().pixel(x, y);
}

// The colours of a text drawn on a plain background: every pixel that is not
// the background.
bool hasTextIn(const zelControl &c, QRgb background, QRgb text)
{
    const QImage &img = c.surface().image();
    for (int y = 0; y < img.height(); ++y)
        for (int x = 0; x < img.width(); ++x)
            if (img.pixel(x, y) == text && text != background)
                return true;
    return false;
}

// The three controls' property handling, whichever control it is.
void initProperties(zelControl &c)
{
    if (auto *b = qobject_cast<zelFlatButton *>(&c))
        b->InitProperties();
    else if (auto *k = qobject_cast<zelCheck *>(&c))
        k->InitProperties();
    else
        qobject_cast<zelHL *>(&c)->InitProperties();
}

void readProperties(zelControl &c, const PropertyBag &bag)
{
    if (auto *b = qobject_cast<zelFlatButton *>(&c))
        b->ReadProperties(bag);
    else if (auto *k = qobject_cast<zelCheck *>(&c))
        k->ReadProperties(bag);
    else
        qobject_cast<zelHL *>(&c)->ReadProperties(bag);
}

PropertyBag writeProperties(const zelControl &c)
{
    PropertyBag bag;
    if (auto *b = qobject_cast<const zelFlatButton *>(&c))
        b->WriteProperties(bag);
    else if (auto *k = qobject_cast<const zelCheck *>(&c))
        k->WriteProperties(bag);
    else
        qobject_cast<const zelHL *>(&c)->WriteProperties(bag);
    return bag;
}

template<typename Control> void place(Control &c, const QString &name, QSize size)
{
    c.setObjectName(name);
    c.InitProperties();
    c.resize(size);
    c.Redraw();
}

} // namespace

class ControlsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        InstallFontSubstitutes();
        InstallControlAccessibility();
    }

    void assistiveToolsSeeTheControls()
    {
        zelFlatButton b;
        place(b, u"b"_s, QSize(60, 20));
        b.SetCaption(u">>"_s);
        zelCheck c;
        place(c, u"c"_s, QSize(60, 20));
        QSignalSpy clicks(&b, &zelControl::Click);
        QAccessibleInterface *button = QAccessible::queryAccessibleInterface(&b);
        QAccessibleInterface *check = QAccessible::queryAccessibleInterface(&c);
        QVERIFY(button && check);
        QCOMPARE(button->role(), QAccessible::Button);
        QCOMPARE(button->text(QAccessible::Name), u">>"_s);
        button->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QCOMPARE(clicks.count(), 1);
        QCOMPARE(check->role(), QAccessible::CheckBox);
        check->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
        QVERIFY(c.Checked() && check->state().checked);
        b.SetEnabled(false);
        QVERIFY(button->state().disabled);
        QVERIFY(button->actionInterface()->actionNames().isEmpty());
    }

    void flatButtonStates_data()
    {
        QTest::addColumn<int>("state"); // 0 normal, 1 hover, 2 disabled
        QTest::addColumn<QRgb>("fill");
        QTest::addColumn<QRgb>("border");
        QTest::addColumn<QRgb>("text");
        QTest::newRow("normal") << 0 << rgb(0x400000) << rgb(0xC0C0C0) << rgb(0xC0C0C0);
        QTest::newRow("hover") << 1 << rgb(0x0080FF) << rgb(0xFFFFFF) << rgb(0xFFFFFF);
        QTest::newRow("disabled") << 2 << rgb(0x202020) << rgb(0x606060) << rgb(0x606060);
    }
    void flatButtonStates()
    {
        QFETCH(int, state);
        QFETCH(QRgb, fill);
        QFETCH(QRgb, border);
        QFETCH(QRgb, text);
        zelFlatButton b;
        place(b, u"zelFlatButton2"_s, QSize(80, 30));
        b.SetCaption(u"WWW"_s);
        b.SetBackcolor(0x400000);
        b.SetForecolor(0xC0C0C0);
        b.SetBackcolorMouse(0x0080FF);
        b.SetForecolorMouse(0xFFFFFF);
        b.SetBackcolorDisabled(0x202020);
        b.SetForecolorDisabled(0x606060);
        if (state == 2)
            b.SetEnabled(false);
        b.HandleMouseMove(state == 1 ? 10 : -5, 10); // every move repaints
        QCOMPARE(pixel(b, 0, 0), border);
        QCOMPARE(pixel(b, 79, 29), border);
        QCOMPARE(pixel(b, 3, 3), fill);
        QVERIFY(hasTextIn(b, fill, text));
        // The caption's shadow: the fore colour at a quarter, only when enabled.
        const QRgb shadow = rgb(((0x400000 & 0) | (state == 1 ? 0x404040 : 0x303030)));
        QCOMPARE(hasTextIn(b, fill, shadow), state != 2);
    }

    void flatButtonRepaintsOnlyWhenDesigned()
    {
        zelFlatButton b;
        place(b, u"b"_s, QSize(40, 20));
        const QImage normal = b.surface().image().copy();
        b.SetEnabled(false);
        b.SetBackcolor(0x00FF00);
        QCOMPARE(b.surface().image(), normal); // shows at the next move or resize
        b.SetCaption(u"new"_s);                // a caption repaints at once
        QCOMPARE(pixel(b, 5, 5), rgb(0));      // disabled fill
    }

    void clicks_data()
    {
        QTest::addColumn<bool>("enabled");
        QTest::newRow("enabled") << true;
        QTest::newRow("disabled") << false;
    }
    void clicks()
    {
        QFETCH(bool, enabled);
        zelFlatButton b;
        place(b, u"b"_s, QSize(60, 20));
        b.SetEnabled(enabled);
        QSignalSpy bClicks(&b, &zelControl::Click);
        QTest::mouseClick(&b, Qt::LeftButton, {}, QPoint(10, 10));
        QCOMPARE(bClicks.count(), enabled ? 1 : 0);

        zelCheck c;
        place(c, u"Check1"_s, QSize(120, 20));
        c.SetEnabled(enabled);
        bool seenInHandler = false;
        connect(&c, &zelControl::Click, &c, [&] { seenInHandler = c.Checked(); });
        QSignalSpy cClicks(&c, &zelControl::Click);
        QTest::mouseClick(&c, Qt::LeftButton, {}, QPoint(5, 5));
        QCOMPARE(cClicks.count(), enabled ? 1 : 0);
        QCOMPARE(c.Checked(), enabled);   // flipped before Click ...
        QCOMPARE(seenInHandler, enabled); // ... so the handler reads the new state
        QVERIFY(!c.Hovering());

        zelHL link;
        place(link, u"zelHL1"_s, QSize(50, 16));
        link.SetEnabled(enabled);
        QSignalSpy lClicks(&link, &zelControl::Click);
        QTest::mouseClick(&link, Qt::LeftButton, {}, QPoint(2, 2));
        QCOMPARE(lClicks.count(), enabled ? 1 : 0);
    }

    void hoverBoundaries_data()
    {
        QTest::addColumn<QPoint>("at");
        QTest::addColumn<bool>("inside");
        QTest::newRow("corner") << QPoint(0, 0) << true;
        QTest::newRow("exactly on width and height") << QPoint(50, 20) << true;
        QTest::newRow("past the width") << QPoint(51, 5) << false;
        QTest::newRow("past the height") << QPoint(5, 21) << false;
        QTest::newRow("left of it") << QPoint(-1, 5) << false;
        QTest::newRow("above it") << QPoint(5, -1) << false;
    }
    void hoverBoundaries()
    {
        QFETCH(QPoint, at);
        QFETCH(bool, inside);
        for (bool enabled : {true, false}) {
            zelFlatButton b;
            place(b, u"b"_s, QSize(50, 20));
            b.SetEnabled(enabled);
            QSignalSpy over(&b, &zelControl::MouseOver);
            QSignalSpy out(&b, &zelControl::MouseOut);
            b.HandleMouseMove(at.x(), at.y());
            QCOMPARE(over.count(), inside ? 1 : 0);
            QCOMPARE(out.count(), inside ? 0 : 1);
            QCOMPARE(b.Hovering(), inside);
            const Qt::CursorShape expected = inside && enabled ? Qt::PointingHandCursor : Qt::ArrowCursor;
            QCOMPARE(b.cursor().shape(), expected);
        }
    }

    void mouseOverOnEveryMove()
    {
        zelCheck c;
        place(c, u"Check2"_s, QSize(100, 20));
        QSignalSpy over(&c, &zelControl::MouseOver);
        c.HandleMouseMove(1, 1);
        c.HandleMouseMove(2, 1);
        c.HandleMouseMove(3, 1);
        QCOMPARE(over.count(), 3);
        QVERIFY(c.HoverStyle());

        zelHL link; // the link raises no hover events of its own
        place(link, u"l"_s, QSize(40, 16));
        QSignalSpy linkOver(&link, &zelControl::MouseOver);
        link.HandleMouseMove(1, 1);
        QCOMPARE(linkOver.count(), 0);
        QVERIFY(link.Hovering());
    }

    void keysPassThrough_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("modifiers");
        QTest::addColumn<int>("code");
        QTest::addColumn<int>("shift");
        QTest::newRow("s") << int(Qt::Key_S) << int(Qt::NoModifier) << 83 << 0;
        QTest::newRow("S with Shift") << int(Qt::Key_S) << int(Qt::ShiftModifier) << 83 << 1;
        QTest::newRow("Return") << int(Qt::Key_Return) << int(Qt::NoModifier) << 13 << 0;
        QTest::newRow("Space") << int(Qt::Key_Space) << int(Qt::NoModifier) << 32 << 0;
        QTest::newRow("Right") << int(Qt::Key_Right) << int(Qt::NoModifier) << 39 << 0;
        QTest::newRow("Ctrl+Alt+x") << int(Qt::Key_X) << int(Qt::ControlModifier | Qt::AltModifier) << 88 << 6;
    }
    void keysPassThrough()
    {
        QFETCH(int, key);
        QFETCH(int, modifiers);
        QFETCH(int, code);
        QFETCH(int, shift);
        for (bool enabled : {true, false}) {
            zelFlatButton b;
            place(b, u"b"_s, QSize(40, 20));
            b.SetEnabled(enabled);
            QSignalSpy keys(&b, &zelControl::KeyDown);
            QTest::keyClick(&b, Qt::Key(key), Qt::KeyboardModifiers(modifiers));
            QVERIFY(!keys.isEmpty()); // modifier keys come first, as keys of their own
            QCOMPARE(keys.last().at(0).toInt(), code);
            QCOMPARE(keys.last().at(1).toInt(), shift);
        }
    }

    void checkBoxStates()
    {
        zelCheck c;
        place(c, u"Check1"_s, QSize(200, 24));
        c.SetBackcolor(0x000000);
        c.SetForecolor(0xFFFFFF);
        c.SetForecolorMouse(0x00FFFF); // yellow
        c.SetCaption(u"I had trouble with this card"_s);
        // Normal: the box outline is the back colour lightened by a quarter of white.
        QCOMPARE(pixel(c, 2, 2), rgb(0x404040));
        QCOMPARE(pixel(c, 21, 21), rgb(0x404040)); // the box ends at height - 2
        QCOMPARE(pixel(c, 22, 22), rgb(0));
        QVERIFY(hasTextIn(c, rgb(0), rgb(0xFFFFFF)));
        // Hovering: outline from the mouse colour, caption in it.
        c.HandleMouseMove(5, 5);
        QCOMPARE(pixel(c, 2, 2), rgb(cMemDCBlend(0x00FFFF)));
        QVERIFY(hasTextIn(c, rgb(0), rgb(0x00FFFF)));
        // Disabled: the outline disappears into the back colour, the caption greys.
        c.SetEnabled(false);
        c.HandleMouseMove(-1, -1);
        QCOMPARE(pixel(c, 2, 2), rgb(0));
        QVERIFY(hasTextIn(c, rgb(0), rgb(0xB3B3B3)));
        QVERIFY(!c.HoverStyle());
    }

    void checkBoxCross()
    {
        zelCheck c;
        place(c, u"Check1"_s, QSize(60, 24));
        c.SetBackcolor(0);
        c.SetForecolor(0xFFFFFF);
        c.SetCaption(QString());
        QCOMPARE(pixel(c, 11, 11), rgb(0));
        c.SetChecked(true);
        QCOMPARE(pixel(c, 11, 11), rgb(0xFFFFFF)); // the crossing of the diagonals
        QCOMPARE(pixel(c, 5, 5), rgb(0xFFFFFF));

        zelCheck low; // lower than 5 pixels: no box at all
        place(low, u"low"_s, QSize(60, 4));
        low.SetBackcolor(0x123456);
        low.SetCaption(QString());
        low.HandleMouseMove(1, 1);
        for (int x = 0; x < 6; ++x)
            QCOMPARE(pixel(low, x, 2), rgb(0x123456));
    }

    void linkStates()
    {
        zelHL link;
        place(link, u"zelHL1"_s, QSize(10, 18));
        link.SetBackcolor(0);
        link.SetForecolor(0xFFFFFF);
        link.SetForecolorMouse(0x00FFFF);
        link.SetCaption(u"www"_s);
        QVERIFY(hasTextIn(link, rgb(0), rgb(0xFFFFFF)));
        QCOMPARE(link.cursor().shape(), Qt::ArrowCursor);
        link.HandleMouseMove(1, 1);
        QVERIFY(hasTextIn(link, rgb(0), rgb(0x00FFFF)));
        QCOMPARE(link.cursor().shape(), Qt::PointingHandCursor);
        // Underlined while hovered: a full row of the mouse colour under the text.
        const QImage &img = link.surface().image();
        bool underline = false;
        for (int y = 0; y < img.height() && !underline; ++y) {
            int run = 0;
            for (int x = 0; x < img.width(); ++x)
                run = img.pixel(x, y) == rgb(0x00FFFF) ? run + 1 : 0, underline = underline || run > img.width() / 2;
        }
        QVERIFY(underline);
        // Disabled: faded towards the back colour, no hand.
        link.SetEnabled(false);
        link.HandleMouseMove(2, 2);
        QVERIFY(hasTextIn(link, rgb(0), rgb(0x404040)));
        QCOMPARE(link.cursor().shape(), Qt::ArrowCursor);
    }

    void linkRedrawsAtEverySet()
    {
        zelHL link;
        place(link, u"zelHL1"_s, QSize(10, 18));
        link.SetCaption(u"www"_s);
        const int shortWidth = link.width();
        link.SetBackcolor(0x00FF00);
        QCOMPARE(pixel(link, 0, 0), rgb(0x00FF00));
        link.SetForecolor(0x0000FF);
        QVERIFY(hasTextIn(link, rgb(0x00FF00), rgb(0x0000FF)));
        link.HandleMouseMove(1, 1);
        link.SetForecolorMouse(0xFF0000);
        QVERIFY(hasTextIn(link, rgb(0x00FF00), rgb(0xFF0000)));
        link.SetEnabled(false); // a quarter of the fore colour over the back colour
        QVERIFY(hasTextIn(link, rgb(0x00FF00), rgb(0x00BF40)));
        link.SetCaption(u"a much longer caption for the link"_s);
        QVERIFY(link.width() > shortWidth + 50);
        QCOMPARE(link.height(), 18);
        QCOMPARE(link.surface().image().width(), link.width());
        link.SetCaption(QString());
        QCOMPARE(link.width(), 0);
    }

    void propertyDefaults_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QList<quint32>>("colours"); // bc, fc, fcm, then bcm, bcd, fcd of the button
        QTest::addColumn<QStringList>("keys");
        QTest::newRow("flat button") << u"zelFlatButton"_s << QList<quint32> {0xFF0000, 0, 0, 33023, 0, 0x808080}
                                     << QStringList({u"bc"_s, u"bcd"_s, u"bcm"_s, u"c"_s, u"e"_s, u"fc"_s, u"fcd"_s,
                                                     u"fcm"_s});
        QTest::newRow("check box") << u"zelCheck"_s << QList<quint32> {0xFF0000, 0, 0}
                                   << QStringList({u"bc"_s, u"c"_s, u"chk"_s, u"e"_s, u"fc"_s, u"fcm"_s});
        QTest::newRow("link") << u"zelHL"_s << QList<quint32> {0xFF0000, 0, 0}
                              << QStringList({u"bc"_s, u"c"_s, u"e"_s, u"fc"_s, u"fcm"_s});
    }
    // A new control, one read from an empty bag, and one read back from what
    // a changed one wrote.
    void propertyDefaults()
    {
        QFETCH(QString, kind);
        QFETCH(QList<quint32>, colours);
        QFETCH(QStringList, keys);
        auto make = [&] {
            std::unique_ptr<zelControl> c;
            if (kind == u"zelFlatButton"_s)
                c = std::make_unique<zelFlatButton>();
            else if (kind == u"zelCheck"_s)
                c = std::make_unique<zelCheck>();
            else
                c = std::make_unique<zelHL>();
            c->setObjectName(kind + u'1');
            return c;
        };
        auto state = [](const zelControl &c) {
            QVariantList out {c.Backcolor(), c.Forecolor(), c.ForecolorMouse()};
            if (auto *b = qobject_cast<const zelFlatButton *>(&c))
                out << b->BackcolorMouse() << b->BackcolorDisabled() << b->ForecolorDisabled();
            out << c.Caption() << c.Enabled() << c.Hovering();
            if (auto *k = qobject_cast<const zelCheck *>(&c))
                out << k->Checked();
            return out;
        };
        auto changeAll = [](zelControl &c) {
            c.SetBackcolor(1), c.SetForecolor(2), c.SetForecolorMouse(3), c.SetCaption(u"x"_s), c.SetEnabled(false);
            if (auto *b = qobject_cast<zelFlatButton *>(&c))
                b->SetBackcolorMouse(4), b->SetBackcolorDisabled(5), b->SetForecolorDisabled(6);
            if (auto *k = qobject_cast<zelCheck *>(&c))
                k->SetChecked(true);
            c.HandleMouseMove(0, 0);
        };
        QVariantList defaults;
        for (quint32 colour : colours)
            defaults << colour;
        defaults << kind + u'1' << true << false;
        if (kind == u"zelCheck"_s)
            defaults << false;

        auto control = make();
        initProperties(*control);
        QCOMPARE(state(*control), defaults);
        QVERIFY(writeProperties(*control).values().isEmpty());
        changeAll(*control);
        readProperties(*control, PropertyBag());
        QCOMPARE(state(*control), defaults);
        changeAll(*control);
        const PropertyBag bag = writeProperties(*control);
        QCOMPARE(bag.values().keys(), keys);
        auto back = make();
        readProperties(*back, bag);
        QVariantList expected = state(*control);
        expected[colours.size() + 2] = false; // the hover flag is not stored
        QCOMPARE(state(*back), expected);
    }

private:
    static quint32 cMemDCBlend(quint32 color);
};

#include "drawing/cmemdc.h"

quint32 ControlsTest::cMemDCBlend(quint32 color)
{
    return cMemDC::BlendColour(color, 0xFFFFFF, 0.75);
}

QTEST_MAIN(ControlsTest)
#include "tst_controls.moc"
