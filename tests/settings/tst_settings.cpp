// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/r_data.h"
#include "testsupport.h"

#include <QSignalSpy>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;

namespace {

using Corner = r_data::Corner;

void mountMaster(TestEnvironment &env)
{
    g_BaseDirectory = env.home();
    g_MasterDb = std::make_unique<ikorvalite>();
    QVERIFY(g_MasterDb->Mount(env.path(u"sys.zel"_s), false));
}

} // namespace

class SettingsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Only number entries of the colour group are read; none read means the
    // defaults (every one in the order they are defined, after the
    // placeholder, the colours set before gone), and the bottom-left
    // corner's own text.
    void readColors()
    {
        TestEnvironment env;
        mountMaster(env);
        r_data metrics;
        QCOMPARE(metrics.Colors().size(), size_t(1)); // the placeholder, from the start
        metrics.SetColor(u"extra"_s, 5);
        metrics.SetColor(u"backcolor_a"_s, 0x0000FF);
        metrics.LoadColors(); // the defaults' log lines are checked with the whole first start in tst_app
        QStringList names;
        for (const auto &c : metrics.Colors())
            names << c.name + u'=' + QString::number(c.color);
        QStringList expected {u"=0"_s, u"backcolor_a=0"_s, u"backcolor_b=14570825"_s};
        for (const QString &part : {u"main"_s, u"tr"_s, u"tl"_s, u"br"_s, u"bl"_s})
            expected << part + u"_text_shadow=0"_s << part + u"_text_forecolor=16777215"_s;
        QCOMPARE(names, expected);
        QCOMPARE(metrics.CornerText(Corner::BottomLeft), u"Right click anywhere for menu"_s);

        g_MasterDb->SetValue(u"backcolor_a"_s, QString(), 0x112233, u"color_metrics"_s);
        g_MasterDb->SetValue(u"looks_like_colour"_s, u"text"_s, 0, u"color_metrics"_s);
        g_MasterDb->SetValue(u"alpha_level"_s, QString(), 90, u"alpha_transparency"_s);
        g_MasterDb->SetValue(u"tl_text_shadow"_s, QString(), 0x00FF00, u"color_metrics"_s);
        g_MasterDb->SetValue(u"br_text"_s, u"Press Return to flip the card"_s, 0, QString());
        QCOMPARE(metrics.ReadColors(), 2);
        QCOMPARE(env.logLines().last(), u"read 2 color definitions from disk/n"_s);
        QCOMPARE(metrics.Colors().size(), size_t(3)); // the defaults it had are gone
        QCOMPARE(QList<quint32>({metrics.Color(u"backcolor_a"_s, 0), metrics.Color(u"tl_text_shadow"_s, 0),
                                 metrics.Color(u"looks_like_colour"_s, 4)}),
                 QList<quint32>({0x112233, 0x00FF00, 4}));
        // The "br_text" key lands in the bottom-left corner, on purpose.
        QCOMPARE(metrics.CornerText(Corner::BottomLeft), u"Press Return to flip the card"_s);
        QVERIFY(metrics.CornerShown(Corner::BottomLeft));
    }

    // On disk: the placeholder takes the group as its note, then any earlier
    // key, then the twelve colours in order.
    void writeColors()
    {
        TestEnvironment env;
        mountMaster(env);
        g_MasterDb->SetValue(u"flist_count"_s, QString(), 0, QString());
        r_data metrics;
        metrics.ColorDefaults();
        metrics.SetColor(u"backcolor_b"_s, 0x0000FF);
        metrics.WriteColors();
        QCOMPARE(env.logLines().last(), u"wrote 12 color definitions to disk/n"_s);
        const QByteArray file = ReadFileBytes(env.path(u"sys.zel"_s));
        QCOMPARE(file.size(), 15 * 128);
        QCOMPARE(file.mid(128, 128), bytes::entry({}, 0, {}, 0, "color_metrics"));
        QCOMPARE(file.mid(3 * 128, 128), bytes::entry("backcolor_a", 0, {}, 0, "color_metrics"));
        QCOMPARE(file.mid(4 * 128, 128), bytes::entry("backcolor_b", 0, {}, 0xFF, "color_metrics"));
    }

    void cornerDisplayTime()
    {
        TestEnvironment env;
        r_data metrics;
        QSignalSpy expired(&metrics, &r_data::cornerExpired);
        // Setting a text without a time stops a running one, and so does
        // showing or hiding the corner: their timers, started first, would
        // expire first.
        metrics.SetCornerText(Corner::TopRight, u"a"_s, 1);
        metrics.SetCornerText(Corner::TopRight, u"b"_s);
        metrics.SetCornerText(Corner::TopLeft, u"c"_s, 1);
        metrics.SetCornerShown(Corner::TopLeft, true);
        metrics.SetCornerText(Corner::BottomLeft, u"Roll mouse over controls to see descriptions"_s, 1);
        QVERIFY(metrics.CornerShown(Corner::BottomLeft));
        const QTimer *timer = metrics.findChild<QTimer *>();
        QVERIFY(timer->interval() == 1000 && timer->isSingleShot()); // seconds; once
        QTRY_COMPARE_WITH_TIMEOUT(expired.count(), 1, 3000);
        QCOMPARE(expired.at(0).at(0).value<Corner>(), Corner::BottomLeft);
        QVERIFY(!metrics.CornerShown(Corner::BottomLeft));
        QVERIFY(metrics.CornerShown(Corner::TopRight) && metrics.CornerShown(Corner::TopLeft));
        // The text stays, so a later comparison with it still finds it.
        QCOMPARE(metrics.CornerText(Corner::BottomLeft), u"Roll mouse over controls to see descriptions"_s);
    }
};

QTEST_GUILESS_MAIN(SettingsTest)
#include "tst_settings.moc"
