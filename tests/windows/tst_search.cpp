// SPDX-License-Identifier: GPL-3.0-or-later
// Finding cards, jumping to one, and the viewer's lists of what was found.
#include "dialogfixture.h"
#include "windows/cardlistmodel.h"
#include "windows/frmviewer.h"

#include <QCheckBox>
#include <QRegularExpression>
#include <QStyle>
#include <QStyleOptionViewItem>

namespace {

QList<int> listedOrdinals()
{
    QList<int> out;
    CardListModel *model = frmViewer::Instance()->Cards();
    for (int r = 0; r < model->rowCount(); ++r)
        out << model->index(r, CardListModel::Ordinal).data().toInt();
    return out;
}

bool isBold(int row, int column)
{
    return frmViewer::Instance()->Cards()->index(row, column).data(Qt::FontRole).value<QFont>().bold();
}

} // namespace

class SearchTest : public DialogFixture
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { InstallFontSubstitutes(); }
    void init() { beginTest(); }
    void cleanup() { endTest(); }

    void search_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("how");       // the columns searched, "case" kept, by "Return" (else Find)
        QTest::addColumn<QStringList>("found"); // ordinal: where it is bold
        const QStringList haus {u"1:q"_s, u"2:q"_s, u"3:q"_s};
        QTest::newRow("trimmed, any case, inside words") << u"  HAUS "_s << u"q a"_s << haus;
        QTest::newRow("case kept") << u"Haus"_s << u"q a case Return"_s << haus;
        QTest::newRow("case kept, other case") << u"haus"_s << u"q a case"_s << QStringList {};
        QTest::newRow("case kept, part of words") << u"aus"_s << u"q a case"_s << haus + QStringList {u"4:q"_s};
        QTest::newRow("answers only") << u"house"_s << u"a"_s << QStringList {u"1:a"_s, u"3:a"_s};
        QTest::newRow("both columns, listed once")
                << u"mouse"_s << u"q a Return"_s << QStringList {u"4:a"_s, u"5:qa"_s};
        QTest::newRow("one card") << u"GRAS"_s << u"q"_s << QStringList {u"6:q"_s};
    }
    void search()
    {
        QFETCH(QString, typed);
        QFETCH(QString, how);
        QFETCH(QStringList, found);
        const QStringList options = how.split(u' ');
        frmFind *find = frmFind::Instance();
        find->show();
        find->Text2->setText(typed);
        find->Check1->setChecked(options.contains(u"q"_s));
        find->Check2->setChecked(options.contains(u"a"_s));
        find->Check3->setChecked(options.contains(u"case"_s));
        m_env->log->clear();
        if (options.contains(u"Return"_s))
            QTest::keyClick(find->Text2, Qt::Key_Return); // Find is the default button
        else
            QTest::mouseClick(find->Command5, Qt::LeftButton);

        QStringList listed;
        for (int row = 0; row < frmViewer::Instance()->Cards()->rowCount(); ++row)
            listed << u"%1:%2%3%4"_s.arg(listedOrdinals()[row])
                              .arg(isBold(row, CardListModel::Question) ? u"q"_s : QString(),
                                   isBold(row, CardListModel::Answer) ? u"a"_s : QString(),
                                   isBold(row, CardListModel::Chapter) ? u"c"_s : QString());
        QCOMPARE(listed, found);
        QCOMPARE(frmViewer::Instance()->LoadingText(),
                 found.size() == 1 ? u"1 card found"_s : u"%1 cards found"_s.arg(found.size()));
        const QRegularExpression time(u"\\d+\\.\\d{7}"_s); // how long it took, to seven places
        QCOMPARE(m_env->logLines().join(u'|').replace(time, u"T"_s),
                 u" .. search took T msec to find %1 hits/n"_s.arg(found.size()));
        if (QTest::currentDataTag() == QByteArray("both columns, listed once"))
            QVERIFY(SaveScreenshot(frmViewer::Instance()->grab().toImage(), u"viewer.png"_s));
        QTest::mouseClick(find->Command4, Qt::LeftButton); // Clear: the text and the list
        QCOMPARE(std::pair(find->Text2->text(), frmViewer::Instance()->Cards()->rowCount()), std::pair(QString(), 0));
    }

    void jumpToCard_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<int>("current");
        QTest::newRow("the last") << u"6"_s << 5;
        QTest::newRow("not a number") << u"drei"_s << 0;
        QTest::newRow("zero") << u"0"_s << 0;
        QTest::newRow("past the range") << u"7"_s << 0;
    }
    void jumpToCard()
    {
        QFETCH(QString, typed);
        QFETCH(int, current);
        frmFind *find = frmFind::Instance();
        find->show();
        find->ts->setCurrentIndex(1); // the Go To Card page, Return on its own button
        const qint16 viewsBefore = g_Deck[current].timesViewed;
        find->Text1->setText(typed);
        QTest::keyClick(find->Text1, Qt::Key_Return); // Return in the field jumps once
        QCOMPARE(int(modrender::CurrentCard), current);
        QCOMPARE(g_Deck[current].timesViewed, qint16(viewsBefore + (current != 0 ? 1 : 0)));
        QVERIFY(m_env->prompter.boxes.empty());
    }

    // A click on a row shows that card as a jump (no trouble count); a click
    // on its check box only marks the card.
    void viewerRowClicks()
    {
        frmFind *find = frmFind::Instance();
        find->show();
        QTest::mouseClick(find->Command2, Qt::LeftButton); // View All Cards
        frmViewer *viewer = frmViewer::Existing();
        QVERIFY(viewer && viewer->isVisible());
        QCOMPARE(viewer->LoadingText(), u"6 cards"_s); // the empty slot is listed, not counted
        CardListModel *model = viewer->Cards();
        auto click = [&](QPoint at) { QTest::mouseClick(viewer->LV->viewport(), Qt::LeftButton, {}, at); };
        click(viewer->LV->visualRect(model->index(4, CardListModel::Question)).center());
        QCOMPARE(int(modrender::CurrentCard), 4);
        QCOMPARE(g_Deck[4].timesViewed, qint16(1));

        const QModelIndex box = model->index(2, CardListModel::Ordinal);
        QStyleOptionViewItem option;
        option.initFrom(viewer->LV);
        option.rect = viewer->LV->visualRect(box);
        option.features |= QStyleOptionViewItem::HasCheckIndicator;
        click(viewer->LV->style()->subElementRect(QStyle::SE_ItemViewItemCheckIndicator, &option, viewer->LV).center());
        QVERIFY(g_Deck[2].isTrouble());
        QCOMPARE(box.data(Qt::CheckStateRole).value<Qt::CheckState>(), Qt::Checked);
        QCOMPARE(int(modrender::CurrentCard), 4); // still the card shown before
        // By keyboard: Return shows the current row's card.
        viewer->LV->setCurrentIndex(model->index(1, CardListModel::Ordinal));
        QTest::keyClick(viewer->LV, Qt::Key_Return);
        QCOMPARE(int(modrender::CurrentCard), 1);
        QTest::keyClick(viewer, Qt::Key_Escape); // Escape closes it
        QVERIFY(!forms::IsOpen(viewer));
    }

    // The list keeps the cards as they were found, whatever happens to the deck later.
    void rowsKeepWhatWasFound()
    {
        frmFind *find = frmFind::Instance();
        find->Text2->setText(u"haus"_s);
        find->Search();
        std::reverse(g_Deck.cards().begin(), g_Deck.cards().end() - 1); // as a shuffle might
        g_Deck[0].timesViewed = 9;
        g_Deck[0].trouble = kCardTrue;
        CardListModel *model = frmViewer::Instance()->Cards();
        QCOMPARE(listedOrdinals(), QList<int>({1, 2, 3}));
        QCOMPARE(model->index(0, CardListModel::Question).data().toString(), u"das Haus"_s);
        QCOMPARE(model->index(0, CardListModel::TimesViewed).data().toInt(), 1);
        QCOMPARE(model->index(0, CardListModel::Ordinal).data(Qt::CheckStateRole), QVariant(Qt::Unchecked));
    }

    void crashWordAsksFirst()
    {
        int crashes = 0;
        frmFind::SetCrashHandler([&] { ++crashes; });
        frmFind *find = frmFind::Instance();
        find->Text2->setText(u"cause_mem_crash"_s);
        m_env->prompter.answers = {MsgResult::No};
        find->Search();
        QCOMPARE(crashes, 0);
        QCOMPARE(m_env->prompter.seen(),
                 QStringList(Box(u"Vocabrix"_s,
                                 u"Warning: this causes a very hard crash and should only be used for testing "
                                 "purposes. Are you sure you want to continue?"_s,
                                 MsgIcon::Exclamation, MsgButtons::YesNo)));
        m_env->prompter.answers = {MsgResult::Yes};
        find->Search();
        QCOMPARE(crashes, 1);
    }
};

QTEST_MAIN(SearchTest)
#include "tst_search.moc"
