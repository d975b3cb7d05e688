// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/extrasettings.h"
#include "uitestsupport.h"
#include "windows/cardlistmodel.h"
#include "windows/frmabout.h"
#include "windows/frmchapter.h"
#include "windows/frmfind.h"
#include "windows/frmoptions.h"
#include "windows/frmprogress.h"
#include "windows/frmsetup.h"
#include "windows/frmsplash.h"
#include "windows/frmviewer.h"
#include "windows/qtplatform.h"
#include "windows/screenfit.h"
#include "windows/typedanswer.h"

#include <QAbstractButton>
#include <QAbstractItemModelTester>
#include <QAbstractSlider>
#include <QAction>
#include <QColorDialog>
#include <QComboBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QListWidget>
#include <QRadioButton>
#include <QRegularExpression>
#include <QSlider>
#include <QStyle>
#include <QStyleOptionViewItem>
#include <QTabBar>
#include <QToolButton>
#include <QTreeView>

using namespace Qt::Literals::StringLiterals;

namespace {

struct Words
{
    const char16_t *question;
    const char16_t *answer;
};

const Words kCards[] = {
        {u"das Haus", u"the house"}, {u"die Hausaufgabe", u"homework"}, {u"der Haushalt", u"household"},
        {u"die Maus", u"the mouse"}, {u"Mousepad", u"mouse pad"},       {u"das Gras", u"grass"},
};

// A study session as after loading chapters: the settings file, the deck
// above and the study window showing its first card.
void startStudying(TestEnvironment &env)
{
    g_BaseDirectory = env.home();
    g_MasterDb = std::make_unique<ikorvalite>();
    QVERIFY(g_MasterDb->Mount(env.path(u"sys.zel"_s), false));
    r_data defaults;
    defaults.ColorDefaults();
    defaults.WriteColors();
    std::vector<std::pair<QString, QString>> cards;
    for (const Words &w : kCards)
        cards.emplace_back(QString::fromUtf16(w.question), QString::fromUtf16(w.answer));
    StudyDeck(cards);
    modrender::ShowFirstCard();
}

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

// A window of the study program by its name; made here unless the program
// keeps one of its own.
QWidget *openWindow(const QString &window, std::unique_ptr<QWidget> &owned)
{
    if (window == u"frmMain"_s)
        return frmMain::Existing();
    if (window == u"frmFind"_s)
        return frmFind::Instance();
    if (window == u"frmViewer"_s)
        return frmViewer::Instance();
    if (window == u"frmOptions"_s)
        return frmOptions::Instance();
    if (window == u"frmChapter"_s)
        owned = std::make_unique<frmChapter>();
    else if (window == u"frmSetup"_s)
        owned = std::make_unique<frmSetup>();
    else if (window == u"frmAbout"_s)
        owned = std::make_unique<frmAbout>();
    else if (window == u"frmProgress"_s)
        owned = std::make_unique<frmProgress>();
    else
        owned = std::make_unique<frmSplash>();
    return owned.get();
}

} // namespace

class DialogsTest : public QObject
{
    Q_OBJECT

    std::unique_ptr<TestEnvironment> m_env;

private Q_SLOTS:
    void initTestCase() { InstallFontSubstitutes(); }

    void init()
    {
        m_env = std::make_unique<TestEnvironment>();
        startStudying(*m_env);
    }

    void cleanup()
    {
        UnloadAllForms();
        frmFind::SetCrashHandler({});
        m_env.reset();
    }

    // Every window fits a 1024x600 screen with its frame, at its opening size and at its smallest. Every
    // control of it, on every page, is reached by keyboard, and no two on show answer to the same Alt+letter.
    // The manual shows each window and page as it is here.
    void everyWindow_data()
    {
        QTest::addColumn<QString>("window");
        for (const char16_t *name : {u"frmMain", u"frmChapter", u"frmFind", u"frmViewer", u"frmOptions", u"frmSetup",
                                     u"frmAbout", u"frmProgress", u"frmSplash"})
            QTest::newRow(QString::fromUtf16(name).toUtf8().constData()) << QString::fromUtf16(name);
    }
    void everyWindow()
    {
        QFETCH(QString, window);
        std::unique_ptr<QWidget> owned;
        QWidget *w = openWindow(window, owned);
        w->show();
        auto *tabs = w->findChild<QTabBar *>(u"ts"_s);
        for (int page = 0; page < (tabs ? tabs->count() : 1); ++page) {
            if (tabs)
                tabs->setCurrentIndex(page);
            checkTabOrder(w);
            checkMnemonics(w);
            if (QTest::currentTestFailed())
                return;
            const QString name = u"window-"_s + window + (tabs ? u"-%1"_s.arg(page + 1) : QString());
            checkLayout(w, name);
            QVERIFY(SaveScreenshot(w->grab().toImage(), name + u".png"_s));
        }
        if (tabs)
            tabs->setCurrentIndex(0); // the page it opens at
        w->adjustSize();
        const QSize room(1024 - 2 * kFrameSides, 600 - kFrameTop - kFrameSides);
        QVERIFY2(w->width() <= room.width() && w->height() <= room.height(),
                 qPrintable(u"%1x%2"_s.arg(w->width()).arg(w->height())));
        const QSize smallest = w->minimumSizeHint().expandedTo(w->minimumSize());
        QVERIFY(smallest.width() <= room.width() && smallest.height() <= room.height());
    }

    // The chapter list: its Cards column as wide as its numbers; a chapter whose path the settings file cannot
    // hold is refused and not listed.
    void chapterList()
    {
        frmChapter chapters;
        QHeaderView *header = chapters.LV1->header();
        QCOMPARE(QList<QHeaderView::ResizeMode>(
                         {header->sectionResizeMode(0), header->sectionResizeMode(1), header->sectionResizeMode(2)}),
                 QList<QHeaderView::ResizeMode>(
                         {QHeaderView::Stretch, QHeaderView::ResizeToContents, QHeaderView::Interactive}));
        const QString path = m_env->path(QString(120, u'd') + u"/c.zel"_s);
        WriteFileBytes(path,
                       bytes::header("generated automatically by the Vocabrix Editor v1.21", 4, 1)
                               + bytes::placeholder() + bytes::entry("a", -1, "b", 0, {}));
        const int listed = chapters.LV1->topLevelItemCount();
        chapters.AddChapterFile(path);
        QCOMPARE(m_env->prompter.seen(),
                 QStringList(Box(u"Chapter Not Added"_s,
                                 u"The chapter '"_s + path
                                         + u"' can't be remembered: its path is too long for the settings file. Move "
                                           "it to a folder with a shorter name and add it again."_s,
                                 MsgIcon::Exclamation)));
        QCOMPARE(chapters.LV1->topLevelItemCount(), listed);
    }

    void search_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<bool>("inQuestions");
        QTest::addColumn<bool>("inAnswers");
        QTest::addColumn<bool>("matchCase");
        QTest::addColumn<bool>("byReturn");     // else by the Find button
        QTest::addColumn<QStringList>("found"); // ordinal: where it is bold
        QTest::newRow("trimmed, any case, inside words")
                << u"  HAUS "_s << true << true << false << false << QStringList {u"1:q"_s, u"2:q"_s, u"3:q"_s};
        QTest::newRow("case kept") << u"Haus"_s << true << true << true << true
                                   << QStringList {u"1:q"_s, u"2:q"_s, u"3:q"_s};
        QTest::newRow("case kept, other case") << u"haus"_s << true << true << true << false << QStringList {};
        QTest::newRow("case kept, part of words")
                << u"aus"_s << true << true << true << false << QStringList {u"1:q"_s, u"2:q"_s, u"3:q"_s, u"4:q"_s};
        QTest::newRow("answers only") << u"house"_s << false << true << false << false
                                      << QStringList {u"1:a"_s, u"3:a"_s};
        QTest::newRow("questions only") << u"house"_s << true << false << false << false << QStringList {};
        QTest::newRow("both columns, listed once")
                << u"mouse"_s << true << true << false << true << QStringList {u"4:a"_s, u"5:qa"_s};
        QTest::newRow("neither column") << u"haus"_s << false << false << false << false << QStringList {};
        QTest::newRow("one card") << u"GRAS"_s << true << false << false << false << QStringList {u"6:q"_s};
    }
    void search()
    {
        QFETCH(QString, typed);
        QFETCH(bool, inQuestions);
        QFETCH(bool, inAnswers);
        QFETCH(bool, matchCase);
        QFETCH(bool, byReturn);
        QFETCH(QStringList, found);
        frmFind *find = frmFind::Instance();
        find->show();
        find->Text2->setText(typed);
        auto set = [](QCheckBox *box, bool on) {
            if (box->isChecked() != on)
                QTest::mouseClick(box, Qt::LeftButton, {}, QPoint(8, box->height() / 2));
        };
        set(find->Check1, inQuestions);
        set(find->Check2, inAnswers);
        set(find->Check3, matchCase);
        m_env->log->clear();
        if (byReturn)
            QTest::keyClick(find->Text2, Qt::Key_Return); // Find is the default button
        else
            QTest::mouseClick(find->Command5, Qt::LeftButton);

        QCOMPARE(find->Text2->text(), typed.trimmed()); // written back
        QStringList listed;
        for (int row = 0; row < frmViewer::Instance()->Cards()->rowCount(); ++row)
            listed << u"%1:%2%3%4"_s.arg(listedOrdinals()[row])
                              .arg(isBold(row, CardListModel::Question) ? u"q"_s : QString(),
                                   isBold(row, CardListModel::Answer) ? u"a"_s : QString(),
                                   isBold(row, CardListModel::Chapter) ? u"c"_s : QString());
        QCOMPARE(listed, found);
        QCOMPARE(frmViewer::Instance()->LoadingText(),
                 found.size() == 1 ? u"1 card found"_s : u"%1 cards found"_s.arg(found.size()));
        const QString caption = frmViewer::Instance()->windowTitle();
        QVERIFY2(QRegularExpression(
                         u"^Item Viewer - \\[found %1 items in \\d+\\.\\d{7} seconds\\]$"_s.arg(found.size()))
                         .match(caption)
                         .hasMatch(),
                 qPrintable(caption));
        QCOMPARE(m_env->logLines().size(), 1);
        QVERIFY(QRegularExpression(u"^ \\.\\. search took \\d+\\.\\d{7} msec to find %1 hits/n$"_s.arg(found.size()))
                        .match(m_env->logLines().first())
                        .hasMatch());
        if (QTest::currentDataTag() == QByteArray("both columns, listed once")) {
            checkLayout(find, u"find-found"_s);
            checkLayout(frmViewer::Instance(), u"viewer-found"_s);
            QVERIFY(SaveScreenshot(find->grab().toImage(), u"find.png"_s));
            QVERIFY(SaveScreenshot(frmViewer::Instance()->grab().toImage(), u"viewer.png"_s));
        }
    }

    // Case is told apart, or not, in any script.
    void searchInAnyScript_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<bool>("matchCase");
        QTest::addColumn<QList<int>>("found");
        QTest::newRow("cyrillic, any case") << u"ЖУ"_s << false << QList<int> {1, 2};
        QTest::newRow("cyrillic, case kept") << u"жу"_s << true << QList<int> {1};
        QTest::newRow("greek, any case") << u"σοφ"_s << false << QList<int> {3};
        QTest::newRow("greek final sigma") << u"οδος"_s << false << QList<int> {4};
        QTest::newRow("japanese") << u"本"_s << false << QList<int> {5};
    }
    void searchInAnyScript()
    {
        QFETCH(QString, typed);
        QFETCH(bool, matchCase);
        QFETCH(QList<int>, found);
        const std::pair<QString, QString> cards[] = {
                {u"жук"_s, u"beetle"_s}, {u"ЖУРНАЛ"_s, u"magazine"_s}, {u"Σοφία"_s, u"wisdom"_s},
                {u"ΟΔΟΣ"_s, u"road"_s},  {u"日本"_s, u"Japan"_s},
        };
        g_Deck.Resize(5);
        for (int i = 0; i < 5; ++i) {
            g_Deck[i].question = cards[i].first;
            g_Deck[i].answer = cards[i].second;
            g_Deck[i].chapter = u"Русский 1"_s;
        }
        frmFind *find = frmFind::Instance();
        find->Text2->setText(typed);
        find->Check3->setChecked(matchCase);
        find->Search();
        QCOMPARE(listedOrdinals(), found);
        if (QTest::currentDataTag() == QByteArray("cyrillic, any case")) {
            frmViewer::Instance()->show();
            QVERIFY(SaveScreenshot(frmViewer::Instance()->grab().toImage(), u"viewer-russian.png"_s));
        }
    }

    void everyCardForStarOrNothing_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::newRow("star") << u"*"_s;
        QTest::newRow("empty") << QString();
        QTest::newRow("blanks") << u"   "_s;
    }
    void everyCardForStarOrNothing()
    {
        QFETCH(QString, typed);
        frmFind *find = frmFind::Instance();
        find->Text2->setText(typed);
        find->Search();
        QCOMPARE(listedOrdinals(), QList<int>({1, 2, 3, 4, 5, 6, 7})); // the empty slot too
        QCOMPARE(frmViewer::Instance()->windowTitle(), u"Item Viewer"_s);
        QCOMPARE(frmViewer::Instance()->LoadingText(), u"6 cards"_s); // the empty slot is no card
        frmMain::Existing()->ViewAllCards();
        QCOMPARE(listedOrdinals().size(), 7);
    }

    void jumpToCard_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<int>("current");
        QTest::newRow("a card") << u"3"_s << 2;
        QTest::newRow("the last") << u"6"_s << 5;
        QTest::newRow("with blanks") << u" 4 "_s << 3;
        QTest::newRow("not a number") << u"drei"_s << 0;
        QTest::newRow("zero") << u"0"_s << 0;
        QTest::newRow("past the range") << u"7"_s << 0;
        QTest::newRow("negative") << u"-2"_s << 0;
    }
    void jumpToCard()
    {
        QFETCH(QString, typed);
        QFETCH(int, current);
        frmFind *find = frmFind::Instance();
        find->show();
        find->ts->setCurrentIndex(1);
        // Its row where the find page's text field is, the Go button ending with that field.
        auto in = [find](QWidget *w) { return QRect(w->mapTo(find, QPoint(0, 0)), w->size()); };
        QCOMPARE(QPair(in(find->Text1).top(), in(find->Command3).right()),
                 QPair(in(find->Text2).top(), in(find->Text2).right()));
        QCOMPARE(find->Label1->text(), u"(1 - 6)"_s);
        const qint16 viewsBefore = g_Deck[current].timesViewed;
        find->Text1->setText(typed);
        QTest::keyClick(find->Text1, Qt::Key_Return); // Return in the field jumps once
        QCOMPARE(int(modrender::CurrentCard), current);
        QCOMPARE(g_Deck[current].timesViewed, qint16(viewsBefore + (current != 0 ? 1 : 0)));
        QTest::mouseClick(find->Command3, Qt::LeftButton);
        QCOMPARE(int(modrender::CurrentCard), current);
        QCOMPARE(g_Deck[current].timesViewed, qint16(viewsBefore + (current != 0 ? 2 : 0)));
        QVERIFY(m_env->prompter.boxes.empty());
        if (current != 0)
            QCOMPARE(modrender::Metrics()->CornerText(r_data::Corner::TopLeft),
                     u"showing card %1 of 6"_s.arg(current + 1));
    }

    // A click on a row shows that card as a jump (no trouble count); a click
    // on its check box only marks the card.
    void viewerRowClicks()
    {
        frmViewer *viewer = frmViewer::Instance();
        viewer->FillItemViewer();
        CardListModel *model = viewer->Cards();
        auto click = [&](QPoint at) { QTest::mouseClick(viewer->LV->viewport(), Qt::LeftButton, {}, at); };
        click(viewer->LV->visualRect(model->index(4, CardListModel::Question)).center());
        QCOMPARE(int(modrender::CurrentCard), 4);
        QCOMPARE(g_Deck[4].timesViewed, qint16(1));
        QCOMPARE(modrender::Metrics()->CornerText(r_data::Corner::TopLeft), u"showing card 5 of 6"_s);
        QCOMPARE(modrender::Metrics()->MainText(), u"Mousepad"_s);
        QCOMPARE(model->index(4, CardListModel::TimesViewed).data().toInt(), 0); // as when the list was filled

        const QModelIndex box = model->index(2, CardListModel::Ordinal);
        QStyleOptionViewItem option;
        option.initFrom(viewer->LV);
        option.rect = viewer->LV->visualRect(box);
        option.features |= QStyleOptionViewItem::HasCheckIndicator;
        const QRect indicator =
                viewer->LV->style()->subElementRect(QStyle::SE_ItemViewItemCheckIndicator, &option, viewer->LV);
        click(indicator.center());
        QVERIFY(g_Deck[2].isTrouble());
        QCOMPARE(box.data(Qt::CheckStateRole).value<Qt::CheckState>(), Qt::Checked);
        click(indicator.center());
        QVERIFY(!g_Deck[2].isTrouble());
        QCOMPARE(int(modrender::CurrentCard), 4); // still the card shown before
        QVERIFY(!model->setData(model->index(2, CardListModel::Question), u"x"_s, Qt::EditRole));
        // By keyboard: Space marks the current row's card, Return shows it.
        viewer->LV->setCurrentIndex(model->index(1, CardListModel::Ordinal));
        QTest::keyClick(viewer->LV, Qt::Key_Space);
        QVERIFY(g_Deck[1].isTrouble());
        QCOMPARE(int(modrender::CurrentCard), 4);
        QTest::keyClick(viewer->LV, Qt::Key_Return);
        QCOMPARE(int(modrender::CurrentCard), 1);
        QCOMPARE(g_Deck[1].timesViewed, qint16(1));
        QTest::keyClick(viewer, Qt::Key_Escape); // Escape closes it
        QVERIFY(!forms::IsOpen(viewer));
        FlushDeletes();
        QVERIFY(!forms::Open().contains(nullptr)); // a deleted window leaves the collection
    }

    void rowsKeepWhatWasFound()
    {
        frmFind *find = frmFind::Instance();
        find->Text2->setText(u"haus"_s);
        find->Search();
        const QString caption = frmViewer::Instance()->windowTitle();
        std::reverse(g_Deck.cards().begin(), g_Deck.cards().end() - 1); // as a shuffle might
        g_Deck[0].timesViewed = 9;
        g_Deck[0].trouble = kCardTrue;
        CardListModel *model = frmViewer::Instance()->Cards();
        QCOMPARE(listedOrdinals(), QList<int>({1, 2, 3}));
        QCOMPARE(model->index(0, CardListModel::Question).data().toString(), u"das Haus"_s);
        QCOMPARE(model->index(1, CardListModel::Answer).data().toString(), u"homework"_s);
        QCOMPARE(model->index(0, CardListModel::TimesViewed).data().toInt(), 1);
        QCOMPARE(model->index(2, CardListModel::Chapter).data().toString(), u"Kapitel"_s);
        QCOMPARE(model->index(0, CardListModel::Ordinal).data(Qt::CheckStateRole), QVariant(Qt::Unchecked));
        QVERIFY(isBold(0, CardListModel::Question));
        QCOMPARE(frmViewer::Instance()->windowTitle(), caption);
    }

    void modelsPassTheModelTester()
    {
        CardListModel cards(g_Deck);
        QAbstractItemModelTester testCards(&cards, QAbstractItemModelTester::FailureReportingMode::QtTest);
        cards.SetRows({cards.RowFor(0, true, false), cards.RowFor(3, false, true)});
        cards.AddRow(cards.RowFor(5, true, true));
        cards.setData(cards.index(1, 0), Qt::Checked, Qt::CheckStateRole);
        cards.Clear();

        MemoryListModel memory;
        QAbstractItemModelTester testMemory(&memory, QAbstractItemModelTester::FailureReportingMode::QtTest);
        memory.SetBlocks(CollectMemoryBlocks());
        QVERIFY(memory.rowCount() > 7);
    }

    void memoryList()
    {
        QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
        QCOMPARE(MemoryTotalText(12345), u"Total hunk memory usage: 00,012,345 bytes"_s);
        QCOMPARE(MemoryTotalText(123456789), u"Total hunk memory usage: 123,456,789 bytes"_s);
        frmFind *find = frmFind::Instance();
        find->Text2->setText(u"show_mem_usage"_s);
        find->Search();
        frmViewer *viewer = frmViewer::Instance();
        QCOMPARE(viewer->LV->model(), viewer->Memory());
        QCOMPARE(viewer->Memory()->headerData(0, Qt::Horizontal, Qt::DisplayRole).toString(), u"Address"_s);
        QCOMPARE(viewer->Memory()->headerData(1, Qt::Horizontal, Qt::DisplayRole).toString(), u"Width (bytes)"_s);
        // The deck's records and every text are there: the first card's record
        // at its real address.
        const auto &blocks = viewer->Memory()->Blocks();
        QCOMPARE(blocks[0].address, reinterpret_cast<quintptr>(&g_Deck[0]));
        QCOMPARE(blocks[0].width, qint64(sizeof(Card)));
        QCOMPARE(std::pair(viewer->Memory()->index(1, 1).data().toLongLong(), viewer->Memory()->index(1, 2).data()),
                 std::pair(qint64(g_Deck[0].question.size() * 2), QVariant(u"card 1 question"_s)));
        qint64 total = 0;
        QStringList colours;
        for (const MemoryListModel::Block &b : blocks) {
            total += b.width;
            if (b.what.startsWith(u"colour"_s))
                colours << b.what + u' ' + QString::number(b.width);
        }
        QCOMPARE(viewer->LoadingText(), MemoryTotalText(total));
        QCOMPARE(colours.mid(1, 2),
                 QStringList({u"colour backcolor_a %1"_s.arg(sizeof(r_data::ColorEntry)),
                              u"colour name backcolor_a 22"_s}));
        QLocale::setDefault(QLocale::c());
        find->Text2->setText(u"haus"_s); // the cards again
        find->Search();
        QCOMPARE(viewer->LV->model(), viewer->Cards());
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
        m_env->log->clear();
        find->Search();
        QCOMPARE(crashes, 1);
        QVERIFY(m_env->logLines().isEmpty()); // nothing more is written
    }

    void optionsLoad()
    {
        modrender::AlphaLevel = 77;
        modrender::AlphaEffects = true;
        g_OsAlpha = true;
        g_ShowMouseHover = false;
        m_env->log->clear();
        frmOptions *options = frmOptions::Instance();
        options->show();
        QVERIFY(m_env->logLines().contains(u" .. frmOptions renderer loaded/n"_s));
        checkLayout(options, u"options-loaded"_s); // no colour to change before one is chosen
        QVERIFY(SaveScreenshot(options->grab().toImage(), u"options-colors.png"_s));

        QTest::mouseClick(options->ts, Qt::LeftButton, {}, options->ts->tabRect(1).center());
        auto click = [](QWidget *box) { QTest::mouseClick(box, Qt::LeftButton, {}, QPoint(8, box->height() / 2)); };
        click(options->Check1); // alpha off: its controls greyed
        QVERIFY(!modrender::AlphaEffects);
        checkLayout(options, u"options-alpha-off"_s);
        click(options->Check1);
        QTest::keyClick(options->Slider1, Qt::Key_PageUp);
        QCOMPARE(int(modrender::AlphaLevel), 77 + 16);
        click(options->Check2);
        QVERIFY(g_ShowMouseHover);
        QVERIFY(SaveScreenshot(options->grab().toImage(), u"options-interface.png"_s));

        m_env->log->clear();
        QTest::keyClick(options, Qt::Key_Escape); // closes, like Close
        FlushDeletes();
        QVERIFY(!frmOptions::Existing());
        QCOMPARE(m_env->logLines().first(), u" .. frmOptions renderer halted/n"_s);
        QVERIFY(g_MasterDb->GetNumber(u"frmOptions.left"_s, 0).found);
        QVERIFY(modrender::AlphaEffects && g_ShowMouseHover); // the switches stay changed
    }

    // The Study page: every control by its key, saved at once in the
    // additions' own file ("sys.zel" stays as it was).
    void studyPage_data()
    {
        QTest::addColumn<int>("control"); // Check5, the three Option1, Check6, Check7, Check8
        QTest::addColumn<QString>("saved");
        QTest::addColumn<bool>("writable");
        QTest::newRow("keep no sessions") << 0 << u"study.keep_session=false"_s << true;
        QTest::newRow("answer first") << 2 << u"study.first_side=answer"_s << true;
        QTest::newRow("either side at random") << 3 << u"study.first_side=random"_s << true;
        QTest::newRow("notes, at once") << 4 << u"study.show_notes=true"_s << true;
        QTest::newRow("step over the empty slot") << 5 << u"study.skip_empty_slot=true"_s << true;
        QTest::newRow("type the answer, at once") << 6 << u"study.type_answer=true"_s << true;
        QTest::newRow("the file cannot be written") << 4 << QString() << false;
    }
    void studyPage()
    {
        QFETCH(int, control);
        QFETCH(QString, saved);
        QFETCH(bool, writable);
        const QByteArray master = ReadFileBytes(m_env->path(u"sys.zel"_s));
        if (!writable)
            QVERIFY(QDir(m_env->home()).mkdir(u"extras.conf"_s));
        g_Deck[0].note = u"a note"_s;
        modrender::ToggleAnswer(); // the answer on show
        frmOptions *options = frmOptions::Instance();
        options->show();
        QVERIFY(QTest::qWaitForWindowActive(options));
        QTest::mouseClick(options->ts, Qt::LeftButton, {}, options->ts->tabRect(2).center());
        const QList<QAbstractButton *> controls {options->Check5,     options->Option1[0], options->Option1[1],
                                                 options->Option1[2], options->Check6,     options->Check7,
                                                 options->Check8};
        if (control == 0)
            QVERIFY(SaveScreenshot(options->grab().toImage(), u"options-study.png"_s));

        QAbstractButton *target = controls[control];
        const QChar key = target->text().at(target->text().indexOf(u'&') + 1).toUpper();
        QTest::keyClick(options, char(key.unicode()), Qt::AltModifier);
        QTRY_VERIFY(target->isChecked() != (control == 0)); // a key clicks a moment later
        const QByteArray file = ReadFileBytes(ExtraSettings::Path());
        QCOMPARE(file.contains(saved.toUtf8() + '\n'), writable);
        QCOMPARE(m_env->prompter.boxTitles(), writable ? QStringList() : QStringList(u"Options Not Saved"_s));
        QCOMPARE(modrender::Metrics()->NoteText(), control == 4 ? u"a note"_s : QString());
        QCOMPARE(frmMain::Existing()->Typing->isVisible(), control == 6);
        QCOMPARE(ReadFileBytes(m_env->path(u"sys.zel"_s)), master);
    }

    void troubleDefaultLatch_data()
    {
        QTest::addColumn<MsgResult>("answer");
        QTest::addColumn<bool>("byKey");
        QTest::addColumn<bool>("current");
        QTest::addColumn<bool>("saved");
        QTest::addColumn<QString>("caption");
        const QString plain = u"Make cards trouble by default"_s;
        QTest::newRow("yes: now") << MsgResult::Yes << false << true << true << plain;
        QTest::newRow("no: next run") << MsgResult::No << false << false << true
                                      << u"Make cards trouble by default (latched: True)"_s;
        QTest::newRow("cancel") << MsgResult::Cancel << false << false << false << plain;
        QTest::newRow("yes by the keyboard") << MsgResult::Yes << true << true << true << plain;
    }
    void troubleDefaultLatch()
    {
        QFETCH(MsgResult, answer);
        QFETCH(bool, byKey);
        QFETCH(bool, current);
        QFETCH(bool, saved);
        QFETCH(QString, caption);
        frmOptions *options = frmOptions::Instance();
        options->show();
        options->SelectTab(1);
        QVERIFY(!options->Check3->isChecked());
        m_env->prompter.answers = {answer};
        if (byKey)
            QTest::keyClick(options->Check3, Qt::Key_Space);
        else
            QTest::mouseClick(options->Check3, Qt::LeftButton, {}, QPoint(8, options->Check3->height() / 2));
        QCOMPARE(m_env->prompter.seen(),
                 QStringList(Box(u"Persistency"_s,
                                 u"You can enforce this change immediately or at the program's next run. If you "
                                 "enforce it immediately, then all cards' trouble status will be reset."_s,
                                 MsgIcon::Question, MsgButtons::YesNoCancel)));
        QCOMPARE(g_TroubleDefaultCurrent, current);
        QCOMPARE(g_TroubleByDefault, saved);
        QCOMPARE(options->Check3->isChecked(), current); // shows the value in force
        QCOMPARE(options->Check3->text(), caption);
        QCOMPARE(frmMain::Existing()->Check2->Checked(), current);
        QCOMPARE(frmMain::Existing()->Check1->Checked(), current); // the card on show again
        for (const Card &card : g_Deck.cards())
            QCOMPARE(card.isTrouble(), current); // every slot, the empty one too
    }

    void latchSurvivesReopenAndUnlatches()
    {
        frmOptions *options = frmOptions::Instance();
        options->show();
        options->SelectTab(1);
        const QPoint onTheBox(8, options->Check3->height() / 2);
        m_env->prompter.answers = {MsgResult::No};
        QTest::mouseClick(options->Check3, Qt::LeftButton, {}, onTheBox);
        forms::Unload(options);
        FlushDeletes();
        options = frmOptions::Instance();
        options->show();
        options->SelectTab(1);
        QCOMPARE(options->Check3->text(), u"Make cards trouble by default (latched: True)"_s);
        QVERIFY(!options->Check3->isChecked());
        QVERIFY(g_TroubleByDefault);
        // Pressed, then let go off the box: no change, and the latch goes.
        m_env->prompter.boxes.clear();
        QTest::mousePress(options->Check3, Qt::LeftButton, {}, onTheBox);
        QTest::mouseRelease(options->Check3, Qt::LeftButton, {}, QPoint(-40, onTheBox.y()));
        QVERIFY(m_env->prompter.boxes.empty());
        QVERIFY(!options->Check3->isChecked());
        QVERIFY(!g_TroubleByDefault);
        QCOMPARE(options->Check3->text(), u"Make cards trouble by default"_s);
    }

    void colorsCloseVersusApply()
    {
        const QByteArray before = ReadFileBytes(m_env->path(u"sys.zel"_s));
        frmOptions *options = frmOptions::Instance();
        options->LV->setCurrentRow(1); // backcolor b
        QCOMPARE(options->SwatchColor(), 14570825u);
        QVERIFY(options->Command3->isEnabled());
        QtPrompter dialogs; // the real colour dialog: it offers the swatch's colour, its choice is taken
        SetPrompter(&dialogs);
        QColor offered;
        QTimer::singleShot(0, [&offered] {
            auto *dialog = qobject_cast<QColorDialog *>(QApplication::activeModalWidget());
            QVERIFY(dialog);
            offered = dialog->currentColor();
            dialog->setCurrentColor(QColor(0x12, 0xFF, 0x56));
            dialog->accept();
        });
        options->Command3->click();
        SetPrompter(&m_env->prompter);
        QCOMPARE(offered, QColor(0x49, 0x55, 0xDE));
        QCOMPARE(options->SwatchColor(), 0x56FF12u);
        QCOMPARE(options->PreviewMetrics()->Color(u"backcolor_b"_s, 0), 0x56FF12u);
        options->Command2->click();
        FlushDeletes();
        QCOMPARE(ReadFileBytes(m_env->path(u"sys.zel"_s)), before);
        QCOMPARE(modrender::Metrics()->Color(u"backcolor_b"_s, 0), 14570825u);

        options = frmOptions::Instance();
        options->LV->setCurrentRow(1);
        m_env->prompter.colorAnswers = {0x00FF00u};
        options->Command3->click();
        options->Command1->click();
        FlushDeletes();
        ikorvalite db;
        QVERIFY(db.Mount(m_env->path(u"sys.zel"_s), false));
        QCOMPARE(db.GetNumber(u"backcolor_b"_s, 0).value, 0x00FF00);
        QCOMPARE(modrender::Metrics()->Color(u"backcolor_b"_s, 0), 0x00FF00u);
        // The card window and its controls take the scheme at once.
        const QImage &card = frmMain::Existing()->CardSurface()->image();
        QCOMPARE(card.pixel(320, 10), qRgb(0, 255, 0));
        QCOMPARE(frmMain::Existing()->zelFlatButton2->BackcolorMouse(), 0x00FF00u);

        // Defaults on the preview.
        options = frmOptions::Instance();
        options->Command4->click();
        QCOMPARE(options->PreviewMetrics()->Color(u"backcolor_b"_s, 0), 14570825u);
    }

    // Drawn as soon as the window is loaded.
    void previewDrawsSampleTexts()
    {
        frmOptions *options = frmOptions::Instance();
        r_data *preview = options->PreviewMetrics();
        using C = r_data::Corner;
        QCOMPARE(QStringList({preview->MainText(), preview->CornerText(C::TopLeft), preview->CornerText(C::TopRight),
                              preview->CornerText(C::BottomLeft), preview->CornerText(C::BottomRight)}),
                 QStringList({u"maintext"_s, u"tltext"_s, u"trtext"_s, u"bltext"_s, u"brtext"_s}));
        const QImage &img = options->Picture2->Surface()->image();
        auto textIn = [&](QRect area) {
            for (int y = area.top(); y <= area.bottom(); ++y)
                for (int x = area.left(); x <= area.right(); ++x)
                    if (qGreen(img.pixel(x, y)) > 200 && qRed(img.pixel(x, y)) > 200)
                        return true;
            return false;
        };
        const int w = img.width(), h = img.height();
        QVERIFY(textIn({2, 0, 60, 14}));                    // top left
        QVERIFY(textIn({w - 62, 0, 60, 14}));               // top right
        QVERIFY(textIn({2, h - 14, 60, 14}));               // bottom left
        QVERIFY(textIn({w - 62, h - 14, 60, 14}));          // bottom right
        QVERIFY(textIn({w / 2 - 50, h / 2 - 10, 100, 20})); // the main text
        QVERIFY(options->Timer1->isActive());
    }

    // Last: once the program has ended, a modal window of a later test would close at once.
    void resetHappensOnlyAtExit()
    {
        frmOptions *options = frmOptions::Instance();
        options->Check4->click();
        options->Check4->click(); // unchecking says nothing
        QCOMPARE(m_env->prompter.seen(),
                 QStringList(Box(u"Preferences"_s,
                                 u"You will lose all custom settings if you continue with this option. If you are "
                                 "unsure, uncheck the box before closing the Preferences dialog."_s,
                                 MsgIcon::Information)));
        options->Check4->click();
        options->Command1->click();
        FlushDeletes();
        QVERIFY(g_DeleteMasterOnExit);
        QVERIFY(QFileInfo::exists(m_env->path(u"sys.zel"_s))); // the program goes on normally
        QVERIFY(frmMain::Existing()->isVisible());
        g_Extras.SetBool(u"study.show_notes"_s, true); // the additions' settings go too
        QVERIFY(g_Extras.Save());
        modMain::DestroySystem(0, false);
        FlushDeletes();
        QVERIFY(!QFileInfo::exists(m_env->path(u"sys.zel"_s)));
        QVERIFY(!QFileInfo::exists(ExtraSettings::Path()));
    }
};

QTEST_MAIN(DialogsTest)
#include "tst_dialogs.moc"
