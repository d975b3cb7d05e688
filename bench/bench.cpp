// SPDX-License-Identifier: GPL-3.0-or-later
// Measures what the program does with large decks, each figure beside its
// floor measured in the same run: the least any program must do for the same
// result (a plain read of the same bytes, a hand loop, a bare window). The
// ratio says how far from that floor the program is.
//
//   vocabrix_bench              every figure
//   vocabrix_bench --startup    the start-up figures alone
//   vocabrix_bench --child ...  one start-up in a process of its own (used by
//                               the start-up figures)
#include "app/modmain.h"
#include "cards/deck.h"
#include "cards/progressfile.h"
#include "cards/shuffler.h"
#include "cards/statistics.h"
#include "cardtext.h"
#include "commandline.h"
#include "controls/widgetsurface.h"
#include "core/pause.h"
#include "core/programstate.h"
#include "core/prompter.h"
#include "drawing/logicalfont.h"
#include "drawing/r_renderer.h"
#include "korva/chapterformat.h"
#include "korva/ikorvalite.h"
#include "settings/r_data.h"
#include "settings/settingskeys.h"
#include "windows/forms.h"
#include "windows/frmchapter.h"
#include "windows/frmfind.h"
#include "windows/frmmain.h"
#include "windows/frmviewer.h"
#include "windows/modrender.h"
#include "windows/qtspeaker.h"

#include <QApplication>
#include <QBuffer>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QLineEdit>
#include <QPainter>
#include <QProcess>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTextStream>
#include <QTimer>
#include <QWidget>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <random>
#include <vector>

#include <sys/resource.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int kRuns = 9;

// Where the hand loops leave their result, so the compiler cannot drop them.
volatile qsizetype g_kept = 0;

double medianMs(const std::function<void()> &prepare, const std::function<void()> &work,
                int runs = kRuns)
{
    std::vector<double> times;
    for (int i = 0; i < runs; ++i) {
        prepare();
        QElapsedTimer t;
        t.start();
        work();
        times.push_back(double(t.nsecsElapsed()) / 1e6);
    }
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

QTextStream &out()
{
    static QTextStream stream(stdout);
    return stream;
}

// One line: the figure, its floor, the ratio, and the budget or goal it has.
void report(const QString &what, double value, double floor, const QString &goal,
            const QString &unit = u"ms"_s)
{
    const QString ratio = floor > 0 ? QString::number(value / floor, 'f', 1) + u'x' : u"-"_s;
    // Figures under a tenth keep two significant digits rather than show as 0.00.
    const auto figure = [](double v) {
        return (v > 0 && v < 0.1 ? QString::number(v, 'g', 2) : QString::number(v, 'f', 2))
                .rightJustified(9);
    };
    out() << what.leftJustified(50) << figure(value) << u' ' << figure(floor) << u' '
          << ratio.rightJustified(9) << u"  "_s << unit.leftJustified(4) << goal << Qt::endl;
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

// Plain file operations: the floors of the program's reads and saves.
QByteArray plainRead(const QString &path)
{
    QFile f(path);
    f.open(QIODevice::ReadOnly);
    return f.readAll();
}

void plainSyncedWrite(const QString &path, const QByteArray &bytes)
{
    QFile f(path);
    f.open(QIODevice::WriteOnly | QIODevice::Truncate);
    f.write(bytes);
    f.flush();
    ::fsync(f.handle());
}

// Answers the file dialogs the way a user would pick one file, and every box
// with OK, so the program's own commands can be timed end to end.
class BenchPrompter final : public Prompter
{
public:
    QString file;
    MsgResult ShowMessage(const MessageBoxRequest &) override { return MsgResult::OK; }
    std::optional<QString> AskFileName(const FileDialogRequest &) override { return file; }
    std::optional<quint32> AskColor(quint32) override { return std::nullopt; }
    bool StartProgram(const QString &, const QStringList &, const QString &) override
    {
        return true;
    }
    bool OpenDocument(const QString &) override { return true; }
    int ShowModal(QObject *) override { return 0; }
    std::optional<PrintChoice> AskPrint(const PrintRequest &) override { return std::nullopt; }
};

// The pauses start-up makes on purpose, made instant.
class NoPacing final : public Pauser
{
public:
    void Sleep(int) override {}
    void ProcessEvents() override { QCoreApplication::processEvents(); }
};

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
    // Its floor: the list read and cut into fields by a hand loop.
    const double handSplit = medianMs([] {},
                                      [&] {
                                          qsizetype fields = 0;
                                          for (const QByteArray &line : plainRead(list).split('\n'))
                                              fields += line.split('\t').size();
                                          g_kept = fields;
                                      });
    report(u"import a %1 MiB list with HTML (32,000 cards)"_s.arg(mib, 0, 'f', 1),
           medianMs([] {}, [&] { importList(list, chapter); }, 3), handSplit, u"a few seconds"_s);

    // The editor's own process, for its peak memory.
    QProcess vxedit;
    vxedit.start(QCoreApplication::applicationDirPath() + u"/vxedit"_s,
                 {u"import"_s, list, u"-o"_s, chapter});
    vxedit.waitForFinished(-1);
    struct rusage usage
    {
    };
    getrusage(RUSAGE_CHILDREN, &usage);
    report(u"  its peak memory in a vxedit process (exit %1)"_s.arg(vxedit.exitCode()),
           double(usage.ru_maxrss) / 1024, mib, u"a few times the list"_s, u"MiB"_s);

    // One field of 200,000 entities.
    const QByteArray field = "#html:true\nq\t" + QByteArray("&#252;").repeated(200000) + "\n";
    std::vector<cardtext::Row> rows;
    const double handScan = medianMs([] {},
                                     [&] {
                                         qsizetype amps = 0;
                                         for (char c : field)
                                             amps += c == '&';
                                         g_kept = amps;
                                     });
    report(u"read one HTML field of 200,000 entities"_s,
           medianMs([] {},
                    [&] {
                        cardtext::Parse(field, cardtext::DetectLayout(field, u"x.txt"_s), rows,
                                        nullptr);
                    }),
           handScan, u"linear (was 76 s)"_s);
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

// Process time (user and system) in milliseconds.
double cpuMs()
{
    rusage usage {};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_utime.tv_sec * 1e3 + usage.ru_utime.tv_usec / 1e3 + usage.ru_stime.tv_sec * 1e3
            + usage.ru_stime.tv_usec / 1e3;
}

// Runs the event loop alone for a while.
void runEventLoop(int ms)
{
    QEventLoop loop;
    QTimer::singleShot(ms, &loop, &QEventLoop::quit);
    loop.exec();
}

// The share of one core the process uses while the event loop runs alone.
double idleCpuPercent(int settleMs, int measureMs)
{
    runEventLoop(settleMs);
    const double before = cpuMs();
    QElapsedTimer t;
    t.start();
    runEventLoop(measureMs);
    return 100.0 * (cpuMs() - before) / double(t.elapsed());
}

// Notes the first paint of the chapter window, wherever in start-up it comes.
class ChapterPaint : public QObject
{
public:
    bool painted = false;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Paint && watched->objectName() == u"frmChapter"_s)
            painted = true;
        return QObject::eventFilter(watched, event);
    }
};

// A process of its own, started as main() starts the program, until the
// chapter window has painted with its buttons enabled. It says "painted" on
// its standard output then, before it ends; its exit status says whether
// start-up went as it should.
int runChild(int argc, char *argv[], const QString &mode, const QString &home)
{
    qputenv("HOME", home.toUtf8());
    QApplication app(argc, argv);
    ChapterPaint paint;
    app.installEventFilter(&paint);
    modMain::PrepareApplication();
    BenchPrompter prompter;
    SetPrompter(&prompter);
    QtSpeaker speech;
    SetSpeaker(&speech);
    NoPacing instant;
    if (mode == u"unpaced"_s)
        SetPauser(&instant);
    ResetProgramState();
    modMain::InstallLifecycle();
    modMain::StartProgram();
    frmChapter *chapters = modMain::ChapterWindow();
    if (!chapters)
        return 2;
    // The buttons enabled at the end of start-up are drawn at the next pass.
    QCoreApplication::processEvents();
    while (!paint.painted)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    std::fputs("painted\n", stdout);
    std::fflush(stdout);
    return chapters->Command1->isEnabled() ? 0 : 3;
}

// Wall time from starting a process to its saying that its window has
// painted; the process's end is not counted.
double startupOnceMs(const QString &program, const QStringList &arguments, const QString &home)
{
    QProcess child;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"HOME"_s, home);
    child.setProcessEnvironment(environment);
    child.setProgram(program);
    child.setArguments(arguments);
    QElapsedTimer t;
    t.start();
    child.start();
    double ms = -1;
    QByteArray said;
    while (ms < 0 && child.waitForReadyRead(60000)) {
        said += child.readAllStandardOutput();
        if (said.contains("painted\n"))
            ms = double(t.nsecsElapsed()) / 1e6;
    }
    child.waitForFinished(60000);
    if (ms < 0 || child.exitStatus() != QProcess::NormalExit || child.exitCode() != 0)
        out() << u"start-up of "_s << arguments.value(1, program) << u" failed: "_s
              << child.exitCode() << Qt::endl;
    return ms;
}

struct StartupMedians
{
    double program = 0;
    double bare = 0;
    double bareText = 0;
};

// The medians of the program's start-ups in the given mode, of a bare
// window's and of a bare window's with one line of text, taken in turns so
// that whatever else the machine does weighs on all alike.
StartupMedians startupMedians(const QString &mode, const QString &home, int runs)
{
    const QString dir = QCoreApplication::applicationDirPath();
    const QString bareWindow = dir + u"/vocabrix_bench_bare"_s;
    std::vector<double> program, bare, bareText;
    for (int run = 0; run < runs; ++run) {
        bare.push_back(startupOnceMs(bareWindow, {}, home));
        bareText.push_back(startupOnceMs(bareWindow, {u"--text"_s}, home));
        program.push_back(startupOnceMs(QCoreApplication::applicationFilePath(),
                                        {u"--child"_s, mode, home}, home));
    }
    auto median = [](std::vector<double> &times) {
        std::sort(times.begin(), times.end());
        return times[times.size() / 2];
    };
    return {median(program), median(bare), median(bareText)};
}

// A home folder whose settings file already exists, so start-up goes
// straight to the chapter window (no first-run setup).
QString preparedHome(const QTemporaryDir &dir)
{
    const QString home = dir.filePath(u"home"_s);
    const QString base = home + u"/Documents/Vocabrix"_s;
    QDir().mkpath(base);
    g_MasterDb = std::make_unique<ikorvalite>();
    g_MasterDb->Mount(base + u"/sys.zel"_s, false);
    // Four chapters of the size the examples have, as a new user's list.
    g_MasterDb->SetValue(settings::kFileListCount, QString(), 4, QString());
    for (int n = 1; n <= 4; ++n) {
        const QString path = dir.filePath(u"chapter%1.zel"_s.arg(n));
        writeChapter(path, 38);
        g_MasterDb->SetValue(settings::FileListName(n), path, 0, QString());
    }
    r_data colours;
    colours.ColorDefaults();
    colours.WriteColors();
    g_MasterDb->Unmount();
    g_MasterDb.reset();
    return home;
}

void printHeading()
{
    out() << u"figure"_s.leftJustified(50) << u"median"_s.rightJustified(9)
          << u"floor"_s.rightJustified(9) << u"ratio"_s.rightJustified(8)
          << u"  unit budget or goal"_s << Qt::endl;
}

// Start-up in a process of its own, to the chapter window's first paint,
// against a bare window's in a program of its own.
void benchStartup(const QTemporaryDir &dir)
{
    const QString home = preparedHome(dir);
    const StartupMedians fast = startupMedians(u"unpaced"_s, home, 21);
    report(u"start-up to the chapter window, unpaced"_s, fast.program, fast.bare,
           u"<= 1.5x a bare window"_s);
    report(u"  a bare window with one line of text"_s, fast.bareText, fast.bare,
           u"(what the first text costs)"_s);
    report(u"  the chapter window against that window"_s, fast.program, fast.bareText,
           u"(the floor for a window with text)"_s);
    const StartupMedians paced = startupMedians(u"paced"_s, home, 3);
    report(u"start-up to the chapter window, paced"_s, paced.program, paced.bare,
           u"(the pacing is deliberate)"_s);
}

} // namespace

int main(int argc, char *argv[])
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    if (argc == 4 && QByteArray(argv[1]) == "--child")
        return runChild(argc, argv, QString::fromLocal8Bit(argv[2]),
                        QString::fromLocal8Bit(argv[3]));

    QApplication app(argc, argv);
    InstallFontSubstitutes();
    ResetProgramState();
    BenchPrompter prompter;
    SetPrompter(&prompter);
    QTemporaryDir dir;
    if (argc == 2 && QByteArray(argv[1]) == "--startup") {
        printHeading();
        benchStartup(dir);
        return 0;
    }
    const QString chapter = dir.filePath(u"big.zel"_s);
    writeChapter(chapter, 32767);

    printHeading();
    benchImport(dir);

    report(u"mount and load a chapter of 32,767 cards"_s,
           medianMs([] { g_Deck.Reset(); }, [&] { LoadChapterFile(chapter, u"big"_s); }),
           medianMs([] {}, [&] { plainRead(chapter); }), u"<= 25 ms"_s);

    // Progress files through the program's own commands: the save is atomic
    // and synced, so its floor is a plain write of the same bytes, synced.
    const QString progress = dir.filePath(u"p.vxs"_s);
    prompter.file = progress;
    QByteArray progressBytes;
    WriteProgressImage(g_Deck, progressBytes, nullptr);
    report(u"save progress, 32,767 cards (atomic, synced)"_s,
           medianMs([] {}, [] { SaveProgress(); }),
           medianMs([] {}, [&] { plainSyncedWrite(dir.filePath(u"plain.vxs"_s), progressBytes); }),
           u"<= 20 ms"_s);
    report(u"resume progress, 32,767 cards"_s,
           medianMs([] { g_Deck.Reset(); }, [] { modMain::LoadProgress(); }),
           medianMs([] {}, [&] { plainRead(progress); }), u"<= 20 ms"_s);

    // The report against a hand loop that builds the same text in one string.
    const QString report_ = dir.filePath(u"s.txt"_s);
    prompter.file = report_;
    const double statistics = medianMs([] {}, [&] { WriteStatistics(report_); });
    const double loop =
            medianMs([] {},
                     [&] {
                         QString text;
                         text.reserve(qsizetype(g_Deck.UBound()) * 96);
                         for (int i = g_Deck.LBound(); i <= g_Deck.UBound(); ++i) {
                             const Card &c = g_Deck[i];
                             text += c.question;
                             text += QString(qMax<qsizetype>(0, 30 - c.question.size()), u' ');
                             text += c.answer;
                             text += QString(qMax<qsizetype>(0, 30 - c.answer.size()), u' ');
                             text += c.isTrouble() ? u"       YES                "_s
                                                   : u"       NO                 "_s;
                             text += QString::number(c.timesViewed);
                             text += u"          "_s + c.chapter + u'\n';
                         }
                         plainSyncedWrite(dir.filePath(u"plain.txt"_s), text.toUtf8());
                     });
    report(u"statistics report of 32,767 cards"_s, statistics, loop, u"<= 2x the loop"_s);

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
        QImage canvas(800, 600, QImage::Format_RGB32);
        const double handFrame =
                medianMs([] {},
                         [&] {
                             QPainter p(&canvas);
                             QLinearGradient g(0, 0, 800, 0);
                             g.setColorAt(0, Qt::black);
                             g.setColorAt(0.5, QColor(73, 85, 222));
                             g.setColorAt(1, Qt::black);
                             p.fillRect(canvas.rect(), g);
                             p.drawText(canvas.rect(), Qt::AlignCenter, u"der Hauptbahnhof"_s);
                         });
        report(u"one card frame at 800x600 (Draw twice, as a move)"_s,
               medianMs([] {},
                        [&] {
                            renderer.Draw(false);
                            renderer.Draw(true);
                        }),
               handFrame, u"<= 3 ms"_s);
        modrender::AlphaEffects = true;
        g_OsAlpha = true;
        const QImage frame = canvas.copy();
        // Each run starts the fade anew from a black window.
        report(u"one fade-in tick at 800x600 (alpha present)"_s,
               medianMs(
                       [&] {
                           surface.image().fill(Qt::black);
                           surface.Changed(QRect(0, 0, 800, 600));
                           renderer.Draw(true);
                       },
                       [&] { renderer.Present(); }),
               medianMs([] {},
                        [&] {
                            QPainter p(&canvas);
                            p.setOpacity(90 / 255.0);
                            p.drawImage(0, 0, frame);
                        }),
               u"<= 3 ms"_s);
        modrender::AlphaEffects = false;
    }

    {
        // The study window with the big chapter loaded: the first card
        // painted on the window, a search, the viewer.
        g_SuppressRefresh = true;
        QWidget bare;
        bare.resize(frmMain::kCardWidth, frmMain::kCardHeight);
        bare.show();
        const QImage picture(bare.size(), QImage::Format_RGB32);
        class Picture : public QObject
        {
        public:
            explicit Picture(const QImage &image) : m_image(image) {}

        protected:
            bool eventFilter(QObject *w, QEvent *e) override
            {
                if (e->type() == QEvent::Paint)
                    QPainter(static_cast<QWidget *>(w)).drawImage(0, 0, m_image);
                return e->type() == QEvent::Paint;
            }

        private:
            const QImage &m_image;
        } painter(picture);
        bare.installEventFilter(&painter);
        runEventLoop(100);
        const double barePaint = medianMs([] {}, [&] { bare.repaint(); });
        report(u"from a loaded deck of 32,767 cards to its first card"_s,
               medianMs([] {},
                        [] {
                            modrender::StartRendering();
                            modrender::ShowFirstCard();
                            frmMain::Existing()->show();
                            frmMain::Existing()->repaint();
                        }),
               barePaint, u"<= 100 ms"_s);
        frmFind *find = frmFind::Instance();
        find->Text2->setText(u"Nummer 1234"_s);
        const double handSearch =
                medianMs([] {},
                         [] {
                             int hits = 0;
                             const QString term = u"nummer 1234"_s;
                             for (int i = g_Deck.LBound(); i <= g_Deck.UBound(); ++i)
                                 hits += g_Deck[i].question.toLower().contains(term)
                                         || g_Deck[i].answer.toLower().contains(term);
                             g_kept = hits;
                         });
        report(u"search 32,767 cards"_s, medianMs([] {}, [&] { find->Search(); }), handSearch,
               u"<= 10 ms"_s);
        const double handRows =
                medianMs([] {},
                         [] {
                             QStringList rows;
                             rows.reserve(g_Deck.UBound() + 1);
                             for (int i = g_Deck.LBound(); i <= g_Deck.UBound(); ++i)
                                 rows << g_Deck[i].question;
                         });
        report(u"item viewer listing 32,767 cards"_s,
               medianMs([] {}, [] { frmViewer::Instance()->FillItemViewer(); }), handRows,
               u"<= 150 ms"_s);
        for (QWidget *form : forms::Open())
            forms::Unload(form);
        modrender::ReleaseRendering();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    {
        // A card on show and nothing happening: the present timer keeps
        // ticking, yet nothing can change.
        g_Deck.Resize(37);
        for (int i = 0; i < 37; ++i)
            g_Deck[i].question = g_Deck[i].answer = u"Wort %1"_s.arg(i);
        QWidget bare;
        bare.resize(frmMain::kCardWidth, frmMain::kCardHeight);
        bare.show();
        const double bareIdle = idleCpuPercent(300, 3000);
        bare.hide();
        g_SuppressRefresh = false;
        g_OsAlpha = true;
        for (bool fade : {false, true}) {
            modrender::AlphaEffects = fade;
            modrender::StartRendering();
            modrender::ShowFirstCard();
            frmMain *main = frmMain::Existing();
            main->SetStudying(true);
            main->show();
            report(fade ? u"idle with a card shown, fade on (CPU)"_s
                        : u"idle with a card shown, fade off (CPU)"_s,
                   idleCpuPercent(1500, 5000), bareIdle, u"< 0.1 %"_s, u"%"_s);
            for (QWidget *form : forms::Open())
                forms::Unload(form);
            modrender::ReleaseRendering();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
        modrender::AlphaEffects = false;
        g_SuppressRefresh = true;
    }

    benchStartup(dir);

    NoWindow host;
    auto deckOf9999 = [] {
        g_Deck.Resize(9999);
        for (int i = 0; i < 9999; ++i)
            g_Deck[i].question = QString::number(i);
    };
    const double shuffle = medianMs(deckOf9999, [&] { ShuffleDeck(host); });
    const double fisherYates = medianMs(deckOf9999, [] {
        std::mt19937 random(1);
        for (int i = 9998; i > 0; --i)
            std::swap(g_Deck[i], g_Deck[int(random() % unsigned(i + 1))]);
    });
    report(u"shuffle 9,999 cards (events processed per draw)"_s, shuffle, fisherYates,
           u"<= 1500 ms (probing by design)"_s);
    return 0;
}
