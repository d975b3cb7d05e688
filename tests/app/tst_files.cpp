// SPDX-License-Identifier: GPL-3.0-or-later
// Every file the program and the editor save or open, tried the way a hostile
// machine would: a save that fails at each of its steps, and paths that are
// no files at all.
#include "app/instanceguard.h"
#include "cards/progressfile.h"
#include "commandline.h"
#include "core/modfolders.h"
#include "editorwindow.h"
#include "korva/diskfile.h"
#include "uitestsupport.h"

#include <QBuffer>

#include <cerrno>
#include <cstring>

using namespace Qt::Literals::StringLiterals;

namespace {

const QByteArray kChapter = "generated automatically by the Vocabrix Editor v1.21";
constexpr int kCards = 1000; // files of more than one write

QString card(const char *what, int i)
{
    return u"%1 number %2 with a few more words"_s.arg(QString::fromLatin1(what)).arg(i, 4, 10, QChar(u'0'));
}

QByteArray chapterBytes(int cards)
{
    QByteArray file = bytes::header(kChapter, 4, qint16(cards), "Kapitel") + bytes::placeholder();
    for (int i = 0; i < cards; ++i)
        file += bytes::entry(card("question", i).toLatin1(), -1, card("answer", i).toLatin1(), 0, {});
    return file;
}

QStringList temporaryFiles(const QString &folder)
{
    return QDir(folder).entryList({u"*.vxsave-*"_s}, QDir::AllEntries | QDir::Hidden | QDir::System);
}

// Files this process has open, where the system lists them.
qsizetype openFiles()
{
    return QDir(u"/proc/self/fd"_s).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size();
}

// One place that saves a file: what is there before, how a failure is told
// (the title of a box, or "stderr" or "log"), and the save itself.
struct SaveSite
{
    QString target;
    QByteArray before;
    QString told;
    std::function<void()> save;
};

} // namespace

class FilesTest : public QObject
{
    Q_OBJECT

    std::unique_ptr<TestEnvironment> m_env;
    std::unique_ptr<EditorWindow> m_editor;
    QTemporaryDir m_programDir;
    int m_status = -1; // of the command line, when it ran
    QString m_stderr;

    SaveSite site(const QString &name)
    {
        const QString home = m_env->home();
        SaveSite s;
        if (name == u"settings at shutdown"_s) {
            g_BaseDirectory = home;
            s = {modMain::MasterPath(),
                 bytes::header("KORVA Database File; KORVA Lite version", 4, 1) + bytes::placeholder()
                         + bytes::entry("alpha_level", 0, {}, 90, "alpha_transparency"),
                 u"Can't save file"_s, [] { modMain::DestroySystem(-1, false); }};
            WriteFileBytes(s.target, s.before);
            g_MasterDb = std::make_unique<ikorvalite>();
            [&] { QVERIFY(g_MasterDb->Mount(s.target, false)); }();
        } else if (name == u"updater file"_s) {
            // The file is made anew at every start: what was there goes first,
            // and the mount leaves an empty file.
            s = {m_programDir.filePath(u"Vocabrix.upd"_s), QByteArray(), u"log"_s, [] { modMain::WriteUpdaterFile(); }};
            WriteFileBytes(s.target, bytes::header("old", 4, 0) + bytes::placeholder());
        } else if (name == u"progress file"_s) {
            g_Deck.Resize(kCards);
            for (int i = 0; i < kCards; ++i) {
                g_Deck[i].question = card("question", i);
                g_Deck[i].answer = card("answer", i);
                g_Deck[i].chapter = u"Kapitel"_s;
            }
            s = {home + u"/p.vxs"_s, "the progress saved before", u"Progress Not Saved"_s, [this] {
                     m_env->prompter.fileAnswers = {m_env->home() + u"/p.vxs"_s};
                     SaveProgress();
                 }};
        } else if (name == u"chapter saved in the editor"_s) {
            s = {home + u"/chapter.zel"_s, chapterBytes(kCards), u"Can't save file"_s, [this] { m_editor->Save(); }};
            WriteFileBytes(s.target, s.before);
            [&] { QVERIFY(m_editor->OpenFile(s.target)); }();
            m_editor->Document().Cards()[5].text = u"changed"_s;
        } else if (name == u"chapter imported on the command line"_s) {
            QByteArray list;
            for (int i = 0; i < kCards; ++i)
                list += card("question", i).toLatin1() + '\t' + card("answer", i).toLatin1() + '\n';
            WriteFileBytes(home + u"/list.tsv"_s, list);
            s = {home + u"/imported.zel"_s, chapterBytes(2), u"stderr"_s, [this, home] {
                     QBuffer out, err;
                     out.open(QIODevice::WriteOnly);
                     err.open(QIODevice::WriteOnly);
                     m_status =
                             commandline::Run({u"import"_s, home + u"/list.tsv"_s, u"-o"_s, home + u"/imported.zel"_s},
                                              out, err);
                     m_stderr = QString::fromUtf8(err.data());
                 }};
        } else {
            [&] { QFAIL(qPrintable(u"no such site: "_s + name)); }();
        }
        if (!s.before.isEmpty() && !QFileInfo::exists(s.target))
            WriteFileBytes(s.target, s.before);
        return s;
    }

private Q_SLOTS:
    void initTestCase()
    {
        InstallFontSubstitutes();
        QCoreApplication::setOrganizationName(u"Quillmere-test"_s);
        QCoreApplication::setApplicationName(u"vxedit-test"_s);
        modFolders::SetProgramDirectory(m_programDir.path());
        instanceguard::SetKey(u"vocabrix-files-"_s + QString::number(QCoreApplication::applicationPid()));
    }

    void init()
    {
        m_env = std::make_unique<TestEnvironment>();
        m_editor = std::make_unique<EditorWindow>();
        m_status = -1;
        g_SuppressRefresh = true;
    }

    void cleanup()
    {
        korva::setSaveFault({});
        m_editor.reset();
        UnloadAllForms();
        instanceguard::Release();
        m_env.reset();
    }

    void saveFailures_data()
    {
        QTest::addColumn<QString>("site");
        QTest::addColumn<int>("step"); // -1: no failure
        QTest::addColumn<int>("count");
        QTest::addColumn<int>("error");
        using korva::SaveStep;
        const std::tuple<const char *, SaveStep, int, int> failures[] =
                {{"creating the new file", SaveStep::Create, 1, EACCES},
                 {"the first write", SaveStep::Write, 1, ENOSPC},
                 {"a write in the middle", SaveStep::Write, 2, ENOSPC},
                 {"the sync", SaveStep::Sync, 1, EIO},
                 {"closing", SaveStep::Close, 1, EIO},
                 {"the rename", SaveStep::Rename, 1, EXDEV}};
        for (const char *name : {"settings at shutdown", "updater file", "progress file", "chapter saved in the editor",
                                 "chapter imported on the command line"}) {
            const bool large = qstrcmp(name, "settings at shutdown") != 0 && qstrcmp(name, "updater file") != 0;
            QTest::addRow("%s: saved", name) << QString::fromLatin1(name) << -1 << 0 << 0;
            for (const auto &[what, step, count, error] : failures) {
                if (count == 1 || large) // only a file of more than one write has a second
                    QTest::addRow("%s: fails at %s", name, what)
                            << QString::fromLatin1(name) << int(step) << count << error;
            }
        }
    }
    // The old file stays as it was, byte for byte, no temporary file is left,
    // and the user hears why (the updater file only goes to the log).
    void saveFailures()
    {
        QFETCH(QString, site);
        QFETCH(int, step);
        QFETCH(int, count);
        QFETCH(int, error);
        const SaveSite s = this->site(site);
        if (QTest::currentTestFailed())
            return;
        int faults = 0;
        korva::setSaveFault([&](korva::SaveStep at, int n) {
            const bool hit = int(at) == step && n == count;
            faults += hit ? 1 : 0;
            return hit ? error : 0;
        });
        m_env->log->clear();
        const qsizetype openBefore = openFiles();
        s.save();
        korva::setSaveFault({});
        QCOMPARE(openFiles(), openBefore); // saved or not, the file is closed

        const QString folder = QFileInfo(s.target).absolutePath();
        QCOMPARE(temporaryFiles(folder), QStringList());
        if (step < 0) {
            QVERIFY(ReadFileBytes(s.target) != s.before);
            QVERIFY(ReadFileBytes(s.target).size() > 0);
            QVERIFY(m_env->prompter.boxes.empty());
            QCOMPARE(m_status, s.told == u"stderr"_s ? 0 : -1);
            return;
        }
        QCOMPARE(faults, 1);
        QCOMPARE(ReadFileBytes(s.target), s.before);
        const QString why = QString::fromLocal8Bit(std::strerror(error));
        if (s.told == u"log"_s) {
            QVERIFY(m_env->prompter.boxes.empty());
            const QStringList lines = m_env->logLines();
            QCOMPARE(lines.mid(lines.size() - 2),
                     QStringList({u" .. the updater file '"_s + s.target + u"' couldn't be written: "_s + why + u"/n"_s,
                                  u"updater file generated/n"_s}));
        } else if (s.told == u"stderr"_s) {
            QCOMPARE(m_status, 1);
            QCOMPARE(m_stderr, u"vxedit: "_s + s.target + u": "_s + why + u"; nothing was written\n"_s);
        } else {
            QCOMPARE(m_env->prompter.boxTitles(), QStringList(s.told));
            QVERIFY2(m_env->prompter.boxes[0].text.contains(s.target), qPrintable(m_env->prompter.boxes[0].text));
            QVERIFY2(m_env->prompter.boxes[0].text.contains(why), qPrintable(m_env->prompter.boxes[0].text));
        }
    }

    void specialFiles_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("role");
        QTest::addColumn<QString>("box");
        for (const char *kind :
             {"named pipe", "link to /dev/null", "link to /dev/zero", "folder", "socket", "link to nowhere"}) {
            QTest::addRow("%s as the settings file", kind)
                    << QString::fromLatin1(kind) << u"settings"_s << u"KORVA File System Critical Error"_s;
            QTest::addRow("%s as a chapter", kind) << QString::fromLatin1(kind) << u"chapter"_s << u"Can't load file"_s;
            QTest::addRow("%s as a progress file to load", kind)
                    << QString::fromLatin1(kind) << u"load progress"_s << u"Damaged Progress File"_s;
            QTest::addRow("%s as a progress file to save", kind)
                    << QString::fromLatin1(kind) << u"save progress"_s << u"Progress Not Saved"_s;
        }
    }
    // Refused at once with a box, nothing blocks, and neither the special
    // file nor anything outside the home is written.
    void specialFiles()
    {
        QFETCH(QString, kind);
        QFETCH(QString, role);
        QFETCH(QString, box);
        const QString folder = m_env->home() + u"/Documents/Vocabrix"_s;
        QVERIFY(QDir().mkpath(folder));
        const QString path = folder
                + (role == u"settings"_s          ? u"/sys.zel"_s
                           : role == u"chapter"_s ? u"/chapter.zel"_s
                                                  : u"/progress.vxs"_s);
        MakeSpecialFile(kind, path);
        const QString before = DescribePath(path);
        const QStringList devices = DeviceFolderNames();
        g_Deck.Resize(2);
        g_Deck[0].question = u"kept"_s;
        {
            PipeWatchdog watchdog({path});
            if (role == u"settings"_s) {
                modMain::StartProgram();
                FlushDeletes();
            } else if (role == u"chapter"_s) {
                LoadChapterFile(path, u"x"_s);
            } else if (role == u"load progress"_s) {
                m_env->prompter.fileAnswers = {path};
                QVERIFY(!modMain::LoadProgress());
            } else {
                m_env->prompter.fileAnswers = {path};
                SaveProgress();
            }
            QVERIFY2(!watchdog.fired(), "blocked on the named pipe");
        }
        QCOMPARE(m_env->prompter.boxTitles(), QStringList(box));
        if (role.endsWith(u"progress"_s))
            QVERIFY2(m_env->prompter.boxes[0].text.contains(u"not a file"_s),
                     qPrintable(m_env->prompter.boxes[0].text));
        QCOMPARE(DescribePath(path), before);
        QCOMPARE(DeviceFolderNames(), devices);
        QCOMPARE(temporaryFiles(folder), QStringList());
        QVERIFY(!QFileInfo::exists(path + u".gone"_s));
        if (role != u"settings"_s)
            QCOMPARE(g_Deck[0].question, u"kept"_s);
    }
};

QTEST_MAIN(FilesTest)
#include "tst_files.moc"
