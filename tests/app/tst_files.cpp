// SPDX-License-Identifier: GPL-3.0-or-later
// Every file the program and the editor save or open, tried the way a hostile
// machine would: a save that fails at each of its steps, and paths that are
// no files at all.
#include "app/instanceguard.h"
#include "cards/progressfile.h"
#include "core/modfolders.h"
#include "editorwindow.h"
#include "korva/diskfile.h"
#include "uitestsupport.h"

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

// One place that saves a file: what is there before, the title of the box
// that tells of a failure, and the save itself.
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
        } else if (name == u"progress file"_s) {
            g_Deck.Resize(kCards);
            for (int i = 0; i < kCards; ++i) {
                g_Deck[i].question = card("question", i);
                g_Deck[i].answer = card("answer", i);
                g_Deck[i].chapter = u"Kapitel"_s;
            }
            m_env->prompter.fileAnswers = {home + u"/p.vxs"_s}; // where the save dialog is answered
            s = {home + u"/p.vxs"_s, "the progress saved before", u"Progress Not Saved"_s, [] { SaveProgress(); }};
            WriteFileBytes(s.target, s.before);
        } else { // the chapter saved in the editor
            s = {home + u"/chapter.zel"_s, chapterBytes(kCards), u"Can't save file"_s, [this] { m_editor->Save(); }};
            WriteFileBytes(s.target, s.before);
            [&] { QVERIFY(m_editor->OpenFile(s.target)); }();
            m_editor->Document().Cards()[5].text = u"changed"_s;
        }
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
        QTest::addColumn<int>("step");
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
        // Only a file of more than one write (not the settings) has a second.
        for (const char *name : {"settings at shutdown", "progress file", "chapter saved in the editor"})
            for (const auto &[what, step, count, error] : failures)
                if (count == 1 || qstrcmp(name, "settings at shutdown") != 0)
                    QTest::addRow("%s: fails at %s", name, what)
                            << QString::fromLatin1(name) << int(step) << count << error;
    }
    // The old file stays as it was, byte for byte, no temporary file is left,
    // and the user hears why.
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
        s.save();
        korva::setSaveFault({});

        QCOMPARE(temporaryFiles(QFileInfo(s.target).absolutePath()), QStringList());
        QCOMPARE(faults, 1);
        QCOMPARE(ReadFileBytes(s.target), s.before);
        QCOMPARE(m_env->prompter.boxTitles(), QStringList(s.told));
        const QString why = QString::fromLocal8Bit(std::strerror(error)), text = m_env->prompter.boxes[0].text;
        QVERIFY2(text.contains(s.target) && text.contains(why), qPrintable(text));
    }

    void specialFiles_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("role");
        QTest::addColumn<QString>("file"); // in the program's home folder
        QTest::addColumn<QString>("box");
        const std::tuple<const char *, const char *, const char *> roles[] =
                {{"the settings file", "sys.zel", "KORVA File System Critical Error"},
                 {"a chapter", "chapter.zel", "Can't load file"},
                 {"a progress file to load", "progress.vxs", "Damaged Progress File"},
                 {"a progress file to save", "progress.vxs", "Progress Not Saved"}};
        for (const char *kind : {"named pipe", "link to /dev/null", "folder", "socket", "link to nowhere"})
            for (const auto &[role, file, box] : roles)
                QTest::addRow("%s as %s", kind, role) << QString::fromLatin1(kind) << QString::fromLatin1(role)
                                                      << QString::fromLatin1(file) << QString::fromLatin1(box);
    }
    // Refused at once with a box, nothing blocks, and neither the special
    // file nor anything outside the home is written.
    void specialFiles()
    {
        QFETCH(QString, kind);
        QFETCH(QString, role);
        QFETCH(QString, file);
        QFETCH(QString, box);
        const QString folder = m_env->home() + u"/Documents/Vocabrix"_s;
        QVERIFY(QDir().mkpath(folder));
        const QString path = folder + u'/' + file;
        MakeSpecialFile(kind, path);
        const QString before = DescribePath(path);
        const QStringList devices = DeviceFolderNames();
        g_Deck.Resize(2);
        g_Deck[0].question = u"kept"_s;
        m_env->prompter.fileAnswers = {path}; // where a progress file is asked for
        // A named pipe must not block the program: were it to, the test would
        // hang here until Qt Test's time limit for a test function ends it.
        if (role == u"the settings file"_s) {
            modMain::StartProgram();
            FlushDeletes();
        } else if (role == u"a chapter"_s) {
            LoadChapterFile(path, u"x"_s);
        } else if (role.endsWith(u"load"_s)) {
            QVERIFY(!modMain::LoadProgress());
        } else {
            SaveProgress();
        }
        QCOMPARE(m_env->prompter.boxTitles(), QStringList(box));
        QCOMPARE(DescribePath(path), before);
        QCOMPARE(DeviceFolderNames(), devices);
        QCOMPARE(temporaryFiles(folder), QStringList());
        QVERIFY(!QFileInfo::exists(path + u".gone"_s));
        if (role != u"the settings file"_s)
            QCOMPARE(g_Deck[0].question, u"kept"_s);
    }
};

QTEST_MAIN(FilesTest)
#include "tst_files.moc"
