// Starts the real program in a real X server (Xvfb), drives it with xdotool
// through first use, chapter choice, a few study keys and exit, then checks
// the settings file it left and keeps a screenshot of the study window.
#include "korva/ikorvalite.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QPixmap>
#include <QProcess>
#include <QScreen>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

using namespace Qt::Literals::StringLiterals;

namespace {

QString findTool(const QString &name)
{
    return QStandardPaths::findExecutable(name);
}

QString run(const QString &program, const QStringList &args, const QString &display, int timeoutMs = 10000)
{
    QProcess p;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(u"DISPLAY"_s, display);
    p.setProcessEnvironment(env);
    p.start(program, args);
    p.waitForFinished(timeoutMs);
    return QString::fromUtf8(p.readAllStandardOutput()).trimmed();
}

} // namespace

class EndToEndTest : public QObject
{
    Q_OBJECT

    QProcess m_xvfb;
    QString m_display;
    QString m_xdotool;

    QString xdotool(const QStringList &args) { return run(m_xdotool, args, m_display); }

    // The id of the window with exactly this title, once it shows.
    QString waitForWindow(const QString &title, int timeoutMs = 30000)
    {
        QElapsedTimer t;
        t.start();
        while (t.elapsed() < timeoutMs) {
            const QString ids = xdotool({u"search"_s, u"--onlyvisible"_s, u"--name"_s, u"^"_s + title + u"$"_s});
            if (!ids.isEmpty())
                return ids.split(u'\n').last();
            QThread::msleep(100);
        }
        return {};
    }

    void keys(const QString &window, const QStringList &keys)
    {
        xdotool({u"windowfocus"_s, u"--sync"_s, window});
        QThread::msleep(300); // let the window take the focus in
        for (const QString &k : keys) {
            xdotool({u"key"_s, k});
            QThread::msleep(150);
        }
    }

    // Sends keys to a window until the next window shows (a window that had
    // just appeared may not have taken the focus yet), and returns the next.
    QString keysUntil(const QString &window, const QStringList &keySequence, const QString &nextTitle)
    {
        for (int attempt = 0; attempt < 3; ++attempt) {
            keys(window, keySequence);
            const QString next = waitForWindow(nextTitle, 10000);
            if (!next.isEmpty())
                return next;
        }
        return {};
    }

    void screenshot(const QString &path)
    {
        QProcess grab;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(u"DISPLAY"_s, m_display);
        env.insert(u"QT_QPA_PLATFORM"_s, u"xcb"_s);
        grab.setProcessEnvironment(env);
        grab.start(QCoreApplication::applicationFilePath(), {u"--grab"_s, path});
        QVERIFY(grab.waitForFinished(30000));
        QCOMPARE(grab.exitCode(), 0);
    }

private Q_SLOTS:
    void initTestCase()
    {
        const QString xvfb = findTool(u"Xvfb"_s);
        m_xdotool = findTool(u"xdotool"_s);
        QVERIFY2(!xvfb.isEmpty() && !m_xdotool.isEmpty(), "Xvfb and xdotool are needed (scripts/install-deps.sh)");
        for (int n = 91; n < 140 && m_display.isEmpty(); ++n) {
            if (QFile::exists(u"/tmp/.X11-unix/X%1"_s.arg(n)) || QFile::exists(u"/tmp/.X%1-lock"_s.arg(n)))
                continue;
            m_xvfb.start(xvfb, {u":%1"_s.arg(n), u"-screen"_s, u"0"_s, u"1024x768x24"_s, u"-nolisten"_s, u"tcp"_s});
            m_xvfb.waitForStarted();
            QElapsedTimer t;
            t.start();
            while (t.elapsed() < 10000 && !QFile::exists(u"/tmp/.X11-unix/X%1"_s.arg(n))
                   && m_xvfb.state() == QProcess::Running)
                QThread::msleep(50);
            if (QFile::exists(u"/tmp/.X11-unix/X%1"_s.arg(n))) {
                m_display = u":%1"_s.arg(n);
            } else {
                m_xvfb.kill();
                m_xvfb.waitForFinished();
            }
        }
        QVERIFY2(!m_display.isEmpty(), "no X display could be started");
    }

    void cleanupTestCase()
    {
        m_xvfb.terminate();
        m_xvfb.waitForFinished(5000);
    }

    void firstUseStudyAndExit()
    {
        QTemporaryDir home;
        QProcess program;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        for (const QString &v : {u"XDG_CONFIG_HOME"_s, u"XDG_DATA_HOME"_s, u"XDG_CONFIG_DIRS"_s, u"QT_QPA_PLATFORM"_s})
            env.remove(v);
        env.insert(u"HOME"_s, home.path());
        env.insert(u"DISPLAY"_s, m_display);
        env.insert(u"ASAN_OPTIONS"_s, u"detect_leaks=0"_s);
        program.setProcessEnvironment(env);
        program.setProcessChannelMode(QProcess::ForwardedChannels);
        program.start(QStringLiteral(VOCABRIX_BINARY), {});
        QVERIFY(program.waitForStarted());

        // First use: the setup asks; trouble marking off, then Finished.
        const QString setup = waitForWindow(u"Vocabrix 2007 Initial Setup"_s);
        QVERIFY2(!setup.isEmpty(), "the setup window did not appear");
        const QString chapters =
                keysUntil(setup, {u"space"_s, u"Down"_s, u"Return"_s}, u"Vocabrix - Choose Chapters"_s);
        QVERIFY2(!chapters.isEmpty(), "the chapter window did not appear");

        // The chapter window offers the four examples: study them all.
        const QString study = keysUntil(chapters, {u"ctrl+a"_s, u"Return"_s}, u"Vocabrix"_s);
        QVERIFY2(!study.isEmpty(), "the study window did not appear");
        keys(study, {u"Right"_s, u"Right"_s, u"Return"_s, u"space"_s, u"Return"_s, u"Right"_s});
        QThread::msleep(800); // the card fades in

        const QString shots = QStringLiteral(SCREENS_DIR);
        QDir().mkpath(shots);
        screenshot(shots + u"/e2e-study-window.png"_s);
        const QImage shot(shots + u"/e2e-study-window.png"_s);
        QVERIFY(!shot.isNull());
        // The card face is in the middle of the screen: some of it blue.
        int blue = 0;
        for (int x = 0; x < shot.width(); x += 8) {
            const QRgb p = shot.pixel(x, shot.height() / 2);
            blue += qBlue(p) > 150 && qRed(p) < 120 ? 1 : 0;
        }
        QVERIFY(blue > 5);

        keys(study, {u"x"_s});
        QVERIFY(program.waitForFinished(20000));
        QCOMPARE(program.exitStatus(), QProcess::NormalExit);
        QCOMPARE(program.exitCode(), 0);

        // What it left in its home folder.
        ikorvalite db;
        QVERIFY(db.Mount(home.path() + u"/Documents/Vocabrix/sys.zel"_s, false));
        auto number = [&](const QString &key) { return db.GetNumber(key, 12345).value; };
        QCOMPARE(number(u"flist_count"_s), 4);
        QVERIFY(db.GetText(u"flist_name_1"_s).value.endsWith(u"/ex1.zel"_s));
        QCOMPARE(number(u"trouble_by_default"_s), 0);
        QCOMPARE(number(u"show_mouse_hover"_s), -1);
        QCOMPARE(db.GetNote(u"trouble_by_default"_s), u"options"_s);
        QCOMPARE(number(u"alpha_level"_s), 90);
        QCOMPARE(number(u"alpha_effects"_s), 0);
        QCOMPARE(db.GetNote(u"alpha_level"_s), u"alpha_transparency"_s);
        QCOMPARE(number(u"backcolor_b"_s), 14570825);
        QCOMPARE(db.GetNote(u"backcolor_b"_s), u"color_metrics"_s);
        for (const QString &key : {u"frmMain.left"_s, u"frmMain.top"_s, u"frmChapter.left"_s, u"frmChapter.top"_s}) {
            QVERIFY2(db.GetNumber(key, 12345).found, qPrintable(key));
            QCOMPARE(db.GetNote(key), u"metrics"_s);
            QCOMPARE(number(key) % 15, 0); // twips
        }
    }
};

int main(int argc, char *argv[])
{
    if (argc == 3 && qstrcmp(argv[1], "--grab") == 0) {
        QGuiApplication app(argc, argv);
        const QPixmap screen = QGuiApplication::primaryScreen()->grabWindow(0);
        return screen.save(QString::fromLocal8Bit(argv[2])) ? 0 : 1;
    }
    QCoreApplication app(argc, argv);
    EndToEndTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_e2e.moc"
