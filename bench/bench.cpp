// Measures the file and deck operations the program does with large decks and
// prints the median of several runs of each.
#include "cards/deck.h"
#include "cards/progressfile.h"
#include "cards/shuffler.h"
#include "cards/statistics.h"
#include "cardtext.h"
#include "commandline.h"
#include "controls/widgetsurface.h"
#include "core/programstate.h"
#include "drawing/logicalfont.h"
#include "drawing/r_renderer.h"
#include "korva/chapterformat.h"
#include "korva/ikorvalite.h"
#include "settings/r_data.h"
#include "windows/forms.h"
#include "windows/frmfind.h"
#include "windows/frmmain.h"
#include "windows/frmviewer.h"
#include "windows/modrender.h"

#include <QApplication>
#include <QBuffer>
#include <QElapsedTimer>
#include <QFile>
#include <QLineEdit>
#include <QProcess>
#include <QTemporaryDir>
#include <QTextStream>
#include <QWidget>

#include <sys/resource.h>

#include <algorithm>
#include <functional>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int kRuns = 9;

double medianMs(const std::function<void()> &prepare, const std::function<void()> &work)
{
    std::vector<double> times;
    for (int i = 0; i < kRuns; ++i) {
        prepare();
        QElapsedTimer t;
        t.start();
        work();
        times.push_back(double(t.nsecsElapsed()) / 1e6);
    }
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

void report(const QString &what, double ms, double budget)
{
    QTextStream(stdout) << what.leftJustified(52) << QString::number(ms, 'f', 2).rightJustified(9)
                        << u" ms   (budget "_s << budget << u" ms)\n"_s;
}

void writeChapter(const QString &path, int cards)
{
    ikorvalite db;
    db.SetDescription(korva::kChapterDescription);
    db.SetTitle(u"Benchmark"_s);
    for (int i = 0; i < cards; ++i)
        db.AppendEntry({u"die Frage Nummer %1"_s.arg(i), -1, u"the answer, number %1"_s.arg(i), 0,
                        u"pl. die Fragen"_s});
    db.SaveAs(path);
}

// A list as another flash-card program exports it, with HTML in every field:
// 32,000 cards, about 10 MB, every card fitting a chapter once its markup is
// gone.
QByteArray htmlList()
{
    QByteArray list = "#separator:tab\n#html:true\n#deck column:1\n";
    for (int i = 0; i < 32000; ++i)
        list += "Deutsch::Kapitel " + QByteArray::number(i % 40)
                + "\t<div class=\"front\" style=\"font-family:Arial;font-size:20px;color:#202020\">"
                  "<b>Gr&uuml;&szlig;e</b>&nbsp;Nr.&nbsp;"
                + QByteArray::number(i)
                + "</div>\t<span style=\"color:#1a1a1a\">greetings &#8211; no. "
                + QByteArray::number(i)
                + "<br/>&quot;kisses&quot; &amp; hugs</span>\t<i>pl.&nbsp;die Gr&uuml;&szlig;e</i>&nbsp;"
                  "&middot;&nbsp;<small class=\"grammar\">f.</small>\n";
    return list;
}

int importList(const QString &list, const QString &chapter)
{
    QBuffer out, err;
    out.open(QIODevice::WriteOnly);
    err.open(QIODevice::WriteOnly);
    return commandline::Run({u"import"_s, list, u"-o"_s, chapter}, out, err);
}

void benchImport(const QTemporaryDir &dir)
{
    const QString list = dir.filePath(u"export.txt"_s), chapter = dir.filePath(u"imported.zel"_s);
    const QByteArray bytes = htmlList();
    QFile f(list);
    f.open(QIODevice::WriteOnly);
    f.write(bytes);
    f.close();
    const double mib = double(bytes.size()) / (1024 * 1024);
    report(u"import a %1 MiB list with HTML (32,000 cards)"_s.arg(mib, 0, 'f', 1),
           medianMs([] {}, [&] { importList(list, chapter); }), 3000);

    // The editor's own process, for its peak memory.
    QProcess vxedit;
    vxedit.start(QCoreApplication::applicationDirPath() + u"/vxedit"_s,
                 {u"import"_s, list, u"-o"_s, chapter});
    vxedit.waitForFinished(-1);
    struct rusage usage
    {
    };
    getrusage(RUSAGE_CHILDREN, &usage);
    QTextStream(stdout) << u"  vxedit import: exit %1, peak memory %2 MiB for the %3 MiB list\n"_s
                                   .arg(vxedit.exitCode())
                                   .arg(double(usage.ru_maxrss) / 1024, 0, 'f', 1)
                                   .arg(mib, 0, 'f', 1);

    // One field of 200,000 entities.
    const QByteArray field = "#html:true\nq\t" + QByteArray("&#252;").repeated(200000) + "\n";
    std::vector<cardtext::Row> rows;
    report(u"read one HTML field of 200,000 entities"_s,
           medianMs([] {},
                    [&] {
                        cardtext::Parse(field, cardtext::DetectLayout(field, u"x.txt"_s), rows,
                                        nullptr);
                    }),
           1000);
}

class NoWindow final : public ShuffleHost
{
public:
    void EnableCommands(bool) override {}
    void StopCardDisplay() override {}
    void StartCardDisplay() override {}
    void ShowCardTexts(const QString &, const QString &) override {}
    void ShowProgress(const QString &, int, int) override { m_value = 0; }
    int ProgressValue() const override { return m_value; }
    void SetProgressValue(int v) override { m_value = v; }
    void CloseProgress() override {}

private:
    int m_value = 0;
};

} // namespace

int main(int argc, char *argv[])
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    InstallFontSubstitutes();
    ResetProgramState();
    QTemporaryDir dir;
    benchImport(dir);
    const QString chapter = dir.filePath(u"big.zel"_s);
    writeChapter(chapter, 32767);

    report(u"mount and load a chapter of 32,767 cards"_s,
           medianMs([] { g_Deck.Reset(); }, [&] { LoadChapterFile(chapter, u"big"_s); }), 25);

    QByteArray image;
    report(u"write a progress file of 32,767 cards"_s,
           medianMs([] {},
                    [&] {
                        WriteProgressImage(g_Deck, image, nullptr);
                        QFile f(dir.filePath(u"p.vxs"_s));
                        f.open(QIODevice::WriteOnly);
                        f.write(image);
                    }),
           20);
    std::vector<Card> cards;
    report(u"read a progress file of 32,767 cards"_s,
           medianMs([] {},
                    [&] {
                        QFile f(dir.filePath(u"p.vxs"_s));
                        f.open(QIODevice::ReadOnly);
                        ReadProgressImage(f.readAll(), cards, nullptr);
                    }),
           20);
    report(u"statistics report of 32,767 cards"_s,
           medianMs([] {},
                    [&] {
                        const QByteArray text =
                                StatisticsReport(g_Deck, QDate::currentDate()).toUtf8();
                        QFile f(dir.filePath(u"s.txt"_s));
                        f.open(QIODevice::WriteOnly);
                        f.write(text);
                    }),
           40);

    ikorvalite db;
    db.SetDescription(u"settings"_s);
    for (int i = 0; i < 200; ++i)
        db.SetValue(u"key_%1"_s.arg(i), QString(), i, u"options"_s);
    report(u"save a settings database of 200 entries"_s,
           medianMs([] {}, [&] { db.SaveAs(dir.filePath(u"sys.zel"_s)); }), 5);

    {
        QWidget window;
        window.resize(800, 600);
        WidgetSurface surface(&window);
        r_data metrics;
        metrics.ColorDefaults();
        metrics.SetMainText(u"der Hauptbahnhof"_s);
        for (auto corner : {r_data::Corner::TopLeft, r_data::Corner::TopRight,
                            r_data::Corner::BottomLeft, r_data::Corner::BottomRight})
            metrics.SetCornerText(corner, u"showing card 12 of 37; 4 trouble cards"_s);
        r_renderer renderer;
        renderer.Initialize(&window, &surface, &metrics, 50.0f, 0, 60);
        report(u"one card frame at 800x600 (Draw twice, as a move does)"_s,
               medianMs([] {},
                        [&] {
                            renderer.Draw(false);
                            renderer.Draw(true);
                        }),
               3);
        modrender::AlphaEffects = true;
        g_OsAlpha = true;
        report(u"one fade-in tick at 800x600 (alpha present)"_s,
               medianMs([] {}, [&] { renderer.Present(); }), 3);
    }

    {
        // The study window with the big chapter loaded: the first card, a search, the viewer.
        g_SuppressRefresh = true;
        report(u"from a loaded deck of 32,767 cards to the first card"_s,
               medianMs([] {},
                        [] {
                            modrender::StartRendering();
                            modrender::ShowFirstCard();
                        }),
               100);
        frmFind *find = frmFind::Instance();
        find->Text2->setText(u"Nummer 1234"_s);
        report(u"search 32,767 cards"_s, medianMs([] {}, [&] { find->Search(); }), 10);
        report(u"item viewer listing 32,767 cards"_s,
               medianMs([] {}, [] { frmViewer::Instance()->FillItemViewer(); }), 150);
        for (QWidget *form : forms::Open())
            forms::Unload(form);
        modrender::ReleaseRendering();
    }

    NoWindow host;
    report(u"shuffle 9,999 cards (events processed per draw)"_s,
           medianMs(
                   [] {
                       g_Deck.Resize(9999);
                       for (int i = 0; i < 9999; ++i)
                           g_Deck[i].question = QString::number(i);
                   },
                   [&] { ShuffleDeck(host); }),
           1500);
    return 0;
}
