// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/instanceguard.h"
#include "cards/progressfile.h"
#include "core/extrasettings.h"
#include "core/modfolders.h"
#include "core/osversion.h"
#include "uitestsupport.h"
#include "windows/frmchapter.h"
#include "windows/frmsetup.h"
#include "windows/frmsplash.h"

#include <QCryptographicHash>
#include <QLabel>
#include <QLocalServer>
#include <QRadioButton>

using namespace Qt::Literals::StringLiterals;

namespace {

// The user's answers in the first-run setup.
std::function<int(QObject *)> answerSetup(bool troubleByDefault, bool hoverHelp)
{
    return [=](QObject *window) {
        auto *setup = qobject_cast<frmSetup *>(window);
        if (!setup)
            return 0;
        (troubleByDefault ? setup->Option1 : setup->Option2)->click();
        setup->Check1->setChecked(hoverHelp);
        setup->Command1->click();
        return 1;
    };
}

// Selects the chapters at these rows and presses Study.
void study(const QList<int> &rows)
{
    frmChapter *chapters = modMain::ChapterWindow();
    QVERIFY(chapters);
    chapters->LV1->clearSelection();
    for (int row : rows)
        chapters->LV1->topLevelItem(row)->setSelected(true);
    chapters->Command1->click();
    FlushDeletes();
}

} // namespace

// The program as the tests start it: a home of its own, the examples and the
// editor beside it, and ways to start it and read what it did.
class ProgramFixture : public QObject
{
protected:
    std::unique_ptr<TestEnvironment> m_env;
    QTemporaryDir m_programDir; // the examples and the editor, as beside the program

    // A file in the program's home folder.
    QString inHome(const QString &name) const { return m_env->home() + u"/Documents/Vocabrix/"_s + name; }
    QString master() const { return inHome(u"sys.zel"_s); }

    // Started with the setup answered: trouble marking off, hover help on.
    void startProgram()
    {
        m_env->prompter.onModal = answerSetup(false, true);
        modMain::StartProgram();
        FlushDeletes();
    }

    // The program started again after it ended, with the same home.
    void restartProgram()
    {
        ResetProgramState();
        g_Deck.Reset();
        g_Watcher = std::make_unique<RecordingWatcher>(m_env->log);
        modMain::StartProgram();
        FlushDeletes();
    }

    // Once: the examples and the editor, as beside an installed program.
    void prepareProgramDirectory()
    {
        InstallFontSubstitutes();
        const QString built = QCoreApplication::applicationDirPath();
        for (int n = 1; n <= 4; ++n)
            QVERIFY(QFile::copy(built + u"/ex%1.zel"_s.arg(n), m_programDir.filePath(u"ex%1.zel"_s.arg(n))));
        QVERIFY(QFile::link(built + u'/' + ExecutableFileName(u"vxedit"_s),
                            m_programDir.filePath(ExecutableFileName(u"vxedit"_s))));
        modFolders::SetProgramDirectory(m_programDir.path());
        instanceguard::SetKey(instanceKey());
    }

    // The key of the program the tests start.
    static QString instanceKey() { return u"vocabrix-test-"_s + QString::number(QCoreApplication::applicationPid()); }

    // Listens on the program's key as another running copy would.
    static bool listenAsAnotherCopy(QLocalServer &other)
    {
        other.setSocketOptions(QLocalServer::AbstractNamespaceOption);
        return other.listen(instanceKey());
    }

    void beginTest()
    {
        m_env = std::make_unique<TestEnvironment>();
        SetOsVersionOverride(OsVersion {5, 1, 2600});
        g_SuppressRefresh = true;
    }

    void endTest()
    {
        UnloadAllForms();
        instanceguard::Release();
        SetOsVersionOverride(std::nullopt);
        m_env.reset();
    }
};
