#include "pdftext.h"
#include "uitestsupport.h"

#include <QMenu>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString kPrintTitle = u"Print Trouble Cards"_s;

// The study window on card q2 of q0..q5, these cards marked, with a settings
// file for the windows' positions.
void startStudying(TestEnvironment &env, const QList<int> &trouble)
{
    g_MasterDb = std::make_unique<ikorvalite>();
    QVERIFY(g_MasterDb->Mount(env.path(u"sys.zel"_s), false));
    StudyDeck(6, trouble);
    modrender::ShowFirstCard();
    modrender::NextCard();
    modrender::NextCard();
}

void press(const QString &route)
{
    frmMain *main = frmMain::Existing();
    if (route.startsWith(u"menu "_s)) {
        main->findChild<QAction *>(route.mid(5))->trigger();
        return;
    }
    const QKeySequence keys = QKeySequence::fromString(route.mid(4));
    for (int k = 0; k < keys.count(); ++k)
        QTest::keyClick(main, keys[k].key(), keys[k].keyboardModifiers());
}

// The questions a PDF shows, in order.
QStringList questionsIn(const PdfText &pdf)
{
    QStringList out;
    for (const PdfWord &w : pdf.words)
        if (w.text.size() == 2 && w.text.startsWith(u'q'))
            out << w.text;
    return out;
}

} // namespace

class AidsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { InstallFontSubstitutes(); }
    void cleanup()
    {
        UnloadAllForms();
        g_ShuffleRunning = false;
    }

    // "Print Trouble Cards..." by key and menu: what is asked, what the file
    // holds, what the user is told.
    void print_data()
    {
        QTest::addColumn<QString>("trouble"); // the marked cards
        QTest::addColumn<QString>("route");
        QTest::addColumn<QString>("answers"); // the box's answer, then the dialog's
        QTest::addColumn<QString>("printed"); // the questions in the file
        QTest::addColumn<QString>("box");
        const QString ask = Box(kPrintTitle, u"No card is marked as a trouble card. Print all 6 cards instead?"_s,
                                MsgIcon::Question, MsgButtons::YesNo);
        const QString failed = kPrintTitle + u" | The file '%1' couldn't be written: "_s;
        QTest::newRow("P: the trouble cards") << u"1 3"_s << u"key P"_s << u"- sheet"_s << u"q1 q3"_s << QString();
        QTest::newRow("Ctrl+P as P") << u"4"_s << u"key Ctrl+P"_s << u"- sheet"_s << u"q4"_s << QString();
        QTest::newRow("the menu item, fold-over")
                << u"1 3"_s << u"menu mP_print"_s << u"- fold"_s << u"q1 q3"_s << QString();
        QTest::newRow("none marked: yes, all")
                << QString() << u"key P"_s << u"yes sheet"_s << u"q0 q1 q2 q3 q4 q5"_s << ask;
        QTest::newRow("none marked: no") << QString() << u"key P"_s << u"no -"_s << QString() << ask;
        QTest::newRow("dialog cancelled") << u"1"_s << u"key P"_s << u"- cancel"_s << QString() << QString();
        QTest::newRow("a folder in the file's place") << u"1"_s << u"key P"_s << u"- folder"_s << QString() << failed;
        QTest::newRow("while shuffling") << u"1"_s << u"shuffling key P"_s << u"- sheet"_s << QString() << QString();
    }
    void print()
    {
        QFETCH(QString, trouble);
        QFETCH(QString, route);
        QFETCH(QString, answers);
        QFETCH(QString, printed);
        QFETCH(QString, box);
        QList<int> marked;
        for (const QString &n : trouble.split(u' ', Qt::SkipEmptyParts))
            marked << n.toInt();
        TestEnvironment env;
        startStudying(env, marked);
        const QString target = env.path(u"out/cards.pdf"_s);
        QDir().mkpath(env.path(u"out/folder.pdf"_s));
        const QString box1 = answers.section(u' ', 0, 0), dialog = answers.section(u' ', 1, 1);
        if (box1 != u"-"_s)
            env.prompter.answers = {box1 == u"yes"_s ? MsgResult::Yes : MsgResult::No};
        PrintChoice choice;
        choice.pdfFile = dialog == u"folder"_s ? env.path(u"out/folder.pdf"_s) : target;
        choice.layout = dialog == u"fold"_s ? PrintLayout::Fold : PrintLayout::Sheet;
        if (dialog != u"cancel"_s && dialog != u"-"_s)
            env.prompter.printAnswers = {choice};
        g_ShuffleRunning = route.startsWith(u"shuffling "_s);
        press(g_ShuffleRunning ? route.mid(10) : route);
        g_ShuffleRunning = false;

        const bool asked = box1 != u"no"_s && !route.startsWith(u"shuffling"_s);
        QCOMPARE(env.prompter.printDialogs.size(), size_t(asked ? 1 : 0));
        if (asked) {
            QCOMPARE(env.prompter.printDialogs[0].title, kPrintTitle);
            QCOMPARE(env.prompter.printDialogs[0].pdfFileName, env.path(u"trouble-cards.pdf"_s));
        }
        const QStringList seen = env.prompter.seen();
        QCOMPARE(seen.size(), box.isEmpty() ? 0 : 1);
        if (!box.isEmpty())
            QVERIFY2(seen[0].startsWith(QString(box).replace(u"%1"_s, choice.pdfFile)), qPrintable(seen[0]));
        QCOMPARE(QFileInfo::exists(target), !printed.isEmpty());
        if (printed.isEmpty())
            return;
        const PdfText pdf = ReadPdf(target);
        QVERIFY(pdf.read && pdf.page(1).contains(u"Kapitel"_s));
        QCOMPARE(questionsIn(pdf).join(u' '), printed);
        // Fold-over cards set the question in the middle of its half.
        const PdfWord &first = *std::find_if(pdf.words.begin(), pdf.words.end(),
                                             [&](const PdfWord &w) { return w.text == printed.left(2); });
        QCOMPARE(first.box.left() > first.pageWidth / 8, dialog == u"fold"_s);
    }
};

QTEST_MAIN(AidsTest)
#include "tst_aids.moc"
