// Measures the file and deck operations the program does with large decks and
// prints the median of several runs of each.
#include "cards/deck.h"
#include "cards/progressfile.h"
#include "cards/shuffler.h"
#include "cards/statistics.h"
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
#include <QElapsedTimer>
#include <QFile>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTextStream>
#include <QWidget>

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
