// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/propertybag.h"
#include "controls/widgetsurface.h"
#include "controls/zelaccessible.h"
#include "drawing/cmemdc.h"
#include "uitestsupport.h"

#include <QAccessible>
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
std::unique_ptr<zelControl> make(const QString &kind, QSize size = QSize(60, 20))
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
    c->resize(size);
    c->Redraw();
    return c;
}

const QStringList kKinds {u"zelFlatButton"_s, u"zelCheck"_s, u"zelHL"_s};

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
        auto b = make(u"zelFlatButton"_s);
        auto c = make(u"zelCheck"_s);
        b->SetCaption(u">>"_s);
        QSignalSpy clicks(b.get(), &zelControl::Click);
        QAccessibleInterface *button = QAccessible::queryAccessibleInterface(b.get());
        QAccessibleInterface *check = QAccessible::queryAccessibleInterface(c.get());
        QVERIFY(button && check);
        QCOMPARE(button->role(), QAccessible::Button);
        QCOMPARE(button->text(QAccessible::Name), u">>"_s);
        button->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QCOMPARE(clicks.count(), 1);
        connect(b.get(), &zelControl::Click, c.get(), qOverload<>(&QWidget::update)); // the button controls the box
        const auto controlled = button->relations(QAccessible::Controlled);
        QVERIFY(controlled.size() == 1 && controlled[0].first == check);
        QCOMPARE(check->role(), QAccessible::CheckBox);
        const QImage unticked = c->surface().image().copy();
        check->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
        QVERIFY(static_cast<zelCheck *>(c.get())->Checked() && check->state().checked);
        QVERIFY(c->surface().image() != unticked); // the cross drawn at once
        b->SetEnabled(false);
        QVERIFY(button->state().disabled);
        QVERIFY(button->actionInterface()->actionNames().isEmpty());
    }

    void flatButtonStates_data()
    {
        QTest::addColumn<int>("state"); // 0 normal, 1 hover, 2 disabled
        QTest::addColumn<quint32>("fill");
        QTest::addColumn<quint32>("fore");
        QTest::addColumn<quint32>("shadow"); // the fore colour at a quarter, when enabled
        QTest::newRow("normal") << 0 << 0x400000u << 0xC0C0C0u << 0x303030u;
        QTest::newRow("hover") << 1 << 0x0080FFu << 0xFFFFFFu << 0x404040u;
        QTest::newRow("disabled") << 2 << 0x202020u << 0x606060u << 0x181818u;
    }
    void flatButtonStates()
    {
        QFETCH(int, state);
        QFETCH(quint32, fill);
        QFETCH(quint32, fore);
        QFETCH(quint32, shadow);
        zelFlatButton b;
        b.resize(80, 30);
        b.SetCaption(u"WWW"_s);
        b.SetBackcolor(0x400000);
        b.SetForecolor(0xC0C0C0);
        b.SetBackcolorMouse(0x0080FF);
        b.SetForecolorMouse(0xFFFFFF);
        b.SetBackcolorDisabled(0x202020);
        b.SetForecolorDisabled(0x606060);
        b.SetEnabled(state != 2);
        b.HandleMouseMove(state == 1 ? 10 : -5, 10); // every move repaints
        QCOMPARE(pixel(b, 0, 0), rgb(fore));         // the border
        QCOMPARE(pixel(b, 79, 29), rgb(fore));
        QCOMPARE(pixel(b, 3, 3), rgb(fill));
        QVERIFY(shows(b, fore));
        QCOMPARE(shows(b, shadow), state != 2);

        // Other properties show at the next move; a caption at once.
        const QImage before = b.surface().image().copy();
        b.SetEnabled(state == 2);
        b.SetBackcolor(0x00FF00);
        QCOMPARE(b.surface().image(), before);
        b.SetCaption(u"new"_s);
        QVERIFY(b.surface().image() != before);
    }

    void clicks_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<bool>("enabled");
        for (const QString &kind : kKinds) {
            QTest::addRow("%s", qPrintable(kind)) << kind << true;
            QTest::addRow("%s disabled", qPrintable(kind)) << kind << false;
        }
    }
    void clicks()
    {
        QFETCH(QString, kind);
        QFETCH(bool, enabled);
        auto c = make(kind);
        auto *check = qobject_cast<zelCheck *>(c.get());
        c->SetEnabled(enabled);
        bool checkedInHandler = false;
        connect(c.get(), &zelControl::Click, c.get(), [&] { checkedInHandler = check && check->Checked(); });
        QSignalSpy clicks(c.get(), &zelControl::Click);
        c->HandleMouseMove(2, 2);
        QTest::mouseClick(c.get(), Qt::LeftButton, {}, QPoint(2, 2));
        QCOMPARE(clicks.count(), enabled ? 1 : 0);
        QCOMPARE(c->Hovering(), !enabled); // a click clears the hover flag
        if (check) {
            QCOMPARE(check->Checked(), enabled); // flipped before Click ...
            QCOMPARE(checkedInHandler, enabled); // ... so the handler reads the new state
        }
        QTest::mousePress(c.get(), Qt::LeftButton, {}, QPoint(2, 2));
        QTest::mouseRelease(c.get(), Qt::LeftButton, {}, QPoint(-5, 2)); // let go outside: no click
        QCOMPARE(clicks.count(), enabled ? 1 : 0);
    }

    void hoverBoundaries_data()
    {
        QTest::addColumn<QPoint>("at");
        QTest::addColumn<bool>("fromFarCorner"); // "at" counts from (width, height)
        QTest::addColumn<bool>("inside");
        QTest::newRow("corner") << QPoint(0, 0) << false << true;
        QTest::newRow("exactly on width and height") << QPoint(0, 0) << true << true;
        QTest::newRow("past the width") << QPoint(1, -5) << true << false;
        QTest::newRow("past the height") << QPoint(-5, 1) << true << false;
        QTest::newRow("left of it") << QPoint(-1, 5) << false << false;
        QTest::newRow("above it") << QPoint(5, -1) << false << false;
    }
    void hoverBoundaries()
    {
        QFETCH(QPoint, at);
        QFETCH(bool, fromFarCorner);
        QFETCH(bool, inside);
        for (const QString &kind : kKinds) {
            for (bool enabled : {true, false}) {
                auto c = make(kind);
                c->SetEnabled(enabled);
                QSignalSpy over(c.get(), &zelControl::MouseOver);
                QSignalSpy out(c.get(), &zelControl::MouseOut);
                QEvent leave(QEvent::Leave);
                QCoreApplication::sendEvent(c.get(), &leave); // never entered: nothing to tell
                const QPoint p = fromFarCorner ? QPoint(c->width(), c->height()) + at : at;
                c->HandleMouseMove(p.x(), p.y());
                c->HandleMouseMove(p.x(), p.y());       // every move counts
                const bool events = kind != u"zelHL"_s; // the link raises none of its own
                QCOMPARE(over.count(), inside && events ? 2 : 0);
                QCOMPARE(out.count(), !inside && events ? 2 : 0);
                QCOMPARE(c->Hovering(), inside);
                QCOMPARE(c->cursor().shape(), inside && enabled ? Qt::PointingHandCursor : Qt::ArrowCursor);
                if (kind == u"zelCheck"_s) // the box's outline turns to the mouse colour
                    QCOMPARE(pixel(*c, 2, 2) == rgb(cMemDC::BlendColour(c->ForecolorMouse(), 0xFFFFFF, 0.75)),
                             inside && enabled);
                // Leaving tells once that the pointer went, and not again
                // when a move already said so.
                QCoreApplication::sendEvent(c.get(), &leave);
                QCOMPARE(out.count(), events ? (inside ? 1 : 2) : 0);
                QVERIFY(!c->Hovering());
                c->HandleMouseMove(1, 1);
                c->HandleMouseMove(-1, -1);
                const int outs = out.count();
                QCoreApplication::sendEvent(c.get(), &leave);
                QCOMPARE(out.count(), outs);
            }
        }
    }

    // Every key reaches the window, as the code core's keycodes give it (their
    // table is checked there), from an enabled control or not.
    void keysPassThrough_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("modifiers");
        QTest::addColumn<int>("code");
        QTest::addColumn<int>("shift");
        QTest::newRow("S with Shift") << int(Qt::Key_S) << int(Qt::ShiftModifier) << 83 << 1;
        QTest::newRow("Return") << int(Qt::Key_Return) << int(Qt::NoModifier) << 13 << 0;
        QTest::newRow("Space") << int(Qt::Key_Space) << int(Qt::NoModifier) << 32 << 0;
        QTest::newRow("Ctrl+Alt+x") << int(Qt::Key_X) << int(Qt::ControlModifier | Qt::AltModifier) << 88 << 6;
    }
    void keysPassThrough()
    {
        QFETCH(int, key);
        QFETCH(int, modifiers);
        QFETCH(int, code);
        QFETCH(int, shift);
        for (const QString &kind : kKinds) {
            for (bool enabled : {true, false}) {
                auto c = make(kind);
                c->SetEnabled(enabled);
                QSignalSpy keys(c.get(), &zelControl::KeyDown);
                QTest::keyClick(c.get(), Qt::Key(key), Qt::KeyboardModifiers(modifiers));
                QVERIFY(!keys.isEmpty()); // modifier keys come first, as keys of their own
                QCOMPARE(keys.last().at(0).toInt(), code);
                QCOMPARE(keys.last().at(1).toInt(), shift);
                if (auto *check = qobject_cast<zelCheck *>(c.get()))
                    QVERIFY(!check->Checked()); // keys do not tick it
            }
        }
    }

    // Keyboard users see which control Tab brought the focus to, and only that one.
    void focusShows()
    {
        for (const QString &kind : kKinds) {
            QWidget window;
            auto first = make(kind), second = make(kind, QSize(60, 24));
            first->setParent(&window);
            second->setParent(&window);
            second->move(0, 30);
            window.show();
            QVERIFY(QTest::qWaitForWindowActive(&window));
            first->setFocus();
            const QImage plain = second->grab().toImage();
            QTest::keyClick(first.get(), Qt::Key_Tab);
            QVERIFY(second->hasFocus());
            const QImage focused = second->grab().toImage();
            QVERIFY2(plain != focused, qPrintable(kind));
            QTest::keyClick(second.get(), Qt::Key_Tab); // and gone when the focus moves on
            QVERIFY(first->hasFocus());
            QCOMPARE(second->grab().toImage(), plain);
        }
    }

    void checkBox()
    {
        zelCheck c;
        c.resize(200, 24);
        c.SetBackcolor(0x000000);
        c.SetForecolor(0xFFFFFF);
        c.SetForecolorMouse(0x00FFFF); // yellow
        c.SetCaption(u"I had trouble with this card"_s);
        // Normal: the box outline is the back colour lightened by a quarter of white.
        QCOMPARE(pixel(c, 2, 2), rgb(0x404040));
        QCOMPARE(pixel(c, 21, 21), rgb(0x404040)); // the box ends at height - 2
        QCOMPARE(pixel(c, 21, 11), rgb(0x404040)); // its right side at height - 3
        QCOMPARE(pixel(c, 22, 22), rgb(0));
        QCOMPARE(pixel(c, 11, 11), rgb(0));
        QVERIFY(shows(c, 0xFFFFFF));
        c.SetChecked(true);
        QCOMPARE(pixel(c, 11, 11), rgb(0xFFFFFF)); // the crossing of the diagonals
        QCOMPARE(pixel(c, 5, 5), rgb(0xFFFFFF));
        // Hovering: outline from the mouse colour, caption and cross in it.
        c.HandleMouseMove(5, 5);
        QCOMPARE(pixel(c, 2, 2), rgb(cMemDC::BlendColour(0x00FFFF, 0xFFFFFF, 0.75)));
        QCOMPARE(pixel(c, 11, 11), rgb(0x00FFFF));
        // Disabled: the outline disappears into the back colour, caption and cross grey.
        c.SetEnabled(false);
        c.HandleMouseMove(-1, -1);
        QCOMPARE(pixel(c, 2, 2), rgb(0));
        QCOMPARE(pixel(c, 11, 11), rgb(0xB3B3B3));
        QVERIFY(shows(c, 0xB3B3B3));

        c.resize(60, 4); // lower than 5 pixels: no box at all
        c.SetBackcolor(0x123456);
        c.SetCaption(QString());
        for (int x = 0; x < 6; ++x)
            QCOMPARE(pixel(c, x, 2), rgb(0x123456));
    }

    // The link repaints at every change of a property.
    void link()
    {
        zelHL link;
        link.resize(10, 18);
        link.SetCaption(u"www"_s);
        const int shortWidth = link.width();
        link.SetBackcolor(0x00FF00);
        QCOMPARE(pixel(link, 0, 0), rgb(0x00FF00));
        link.SetForecolor(0x0000FF);
        QVERIFY(shows(link, 0x0000FF));
        QCOMPARE(link.cursor().shape(), Qt::ArrowCursor);
        link.HandleMouseMove(1, 1);
        QCOMPARE(link.cursor().shape(), Qt::PointingHandCursor);
        link.SetForecolorMouse(0xFF0000);
        QVERIFY(shows(link, 0xFF0000));
        // Underlined while hovered: a row of the text's colour under the text.
        const auto underlinedIn = [&link](quint32 colour) {
            const QImage &img = link.surface().image();
            for (int y = 0; y < img.height(); ++y) {
                int run = 0;
                for (int x = 0; x < img.width(); ++x)
                    if ((run = img.pixel(x, y) == rgb(colour) ? run + 1 : 0) > img.width() / 2)
                        return true;
            }
            return false;
        };
        QVERIFY(underlinedIn(0xFF0000));
        link.SetEnabled(false); // a quarter of the fore colour over the back colour, no hand
        QVERIFY(shows(link, 0x00BF40) && !shows(link, 0xFF0000));
        QVERIFY(!underlinedIn(0x00BF40)); // not underlined, though the mouse is still over it
        link.HandleMouseMove(2, 2);
        QCOMPARE(link.cursor().shape(), Qt::ArrowCursor);
        link.SetCaption(u"a much longer caption for the link"_s);
        QVERIFY(link.width() > shortWidth + 50);
        QCOMPARE(link.height(), 18);
        QCOMPARE(link.surface().size(), link.size());
        QCOMPARE(link.surface().image().size(), DeviceSize(link.size(), link.devicePixelRatioF()));
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

        auto control = make(kind);
        QCOMPARE(state(*control), defaults);
        PropertyBag bag;
        control->WriteProperties(bag);
        QVERIFY(bag.values().isEmpty());
        changeAll(*control);
        control->ReadProperties(PropertyBag());
        QCOMPARE(state(*control), defaults);
        changeAll(*control);
        control->WriteProperties(bag);
        QCOMPARE(bag.values().keys(), keys);
        auto back = make(kind);
        back->ReadProperties(bag);
        QVariantList expected = state(*control);
        expected[colours.size() + 2] = false; // the hover flag is not stored
        QCOMPARE(state(*back), expected);
    }
};

QTEST_MAIN(ControlsTest)
#include "tst_controls.moc"
