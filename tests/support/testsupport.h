// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/log.h"
#include "core/pause.h"
#include "core/programstate.h"
#include "core/prompter.h"
#include "core/speaker.h"
#include "korva/ikorvalite.h"
#include "korvabuilder.h"

#include <QDir>
#include <QFileInfo>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QTest>

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

// Answers message boxes and dialogs from a script and records everything it
// was asked. A box with no scripted answer gets its safest answer (OK, else
// Cancel, else No), like a user who closes it.
class FakePrompter final : public Prompter
{
public:
    struct Launch
    {
        QString program;
        QStringList arguments;
        QString workingDirectory;
    };

    std::vector<MessageBoxRequest> boxes;
    std::vector<FileDialogRequest> fileDialogs;
    std::vector<Launch> launches;
    QStringList openedDocuments;

    std::deque<MsgResult> answers;
    std::deque<std::optional<QString>> fileAnswers;
    std::deque<std::optional<quint32>> colorAnswers;
    // Plays the user's part in a modal window; without it the window is
    // left as it came.
    std::function<int(QObject *window)> onModal;
    // Looks at the program while a box is up.
    std::function<void(const MessageBoxRequest &request)> onBox;
    std::vector<QString> modalWindows; // their object names
    std::vector<PrintRequest> printDialogs;
    std::deque<std::optional<PrintChoice>> printAnswers;

    MsgResult ShowMessage(const MessageBoxRequest &request) override;
    std::optional<QString> AskFileName(const FileDialogRequest &request) override;
    std::optional<quint32> AskColor(quint32 initial) override;
    bool StartProgram(const QString &program, const QStringList &arguments, const QString &workingDirectory) override;
    bool OpenDocument(const QString &pathOrUrl) override;
    int ShowModal(QObject *window) override;
    std::optional<PrintChoice> AskPrint(const PrintRequest &request) override;

    QStringList boxTitles() const;
    // Every box so far, each as Box() writes it.
    QStringList seen() const;
};

// Records what it was asked to say, as "language: text"; plays a machine
// without a speech engine when unavailable is set.
class FakeSpeaker final : public Speaker
{
public:
    QString unavailable;
    QStringList said;

    QString Unavailable() const override { return unavailable; }
    void Say(const QString &text, const QString &language) override { said << language + QStringLiteral(": ") + text; }
};

// A message box as "title | text | icon | buttons", so a test compares all of it.
QString Box(const QString &title, const QString &text, MsgIcon icon = MsgIcon::None,
            MsgButtons buttons = MsgButtons::OK);

// The log lines a recording watcher received; it outlives the watcher, which
// shutdown releases.
struct LogRecord
{
    struct Line
    {
        QString message;
        qint16 level;
        qint32 channel;
    };
    std::vector<Line> lines;

    void clear() { lines.clear(); }
};

// Records every log line that reaches the watcher outlet.
class RecordingWatcher final : public MessageWatcher
{
public:
    explicit RecordingWatcher(std::shared_ptr<LogRecord> record = std::make_shared<LogRecord>())
        : log(std::move(record))
    {}
    std::shared_ptr<LogRecord> log;

    void Connect(const QString &) override {}
    void showWatchWindow() override {}
    void AddMsg(QString &message, qint16 &level, qint32 &channel) override
    {
        log->lines.push_back({message, level, channel});
    }
    void Disconnect() override {}
};

// Pauses that take no time but are counted.
class InstantPauser final : public Pauser
{
public:
    qint64 sleptMs = 0;
    int sleeps = 0;
    int eventRounds = 0;
    void Sleep(int ms) override
    {
        sleptMs += ms;
        ++sleeps;
    }
    void ProcessEvents() override { ++eventRounds; }
};

// Everything a test of the program's logic needs: program-wide state reset,
// a temporary home (HOME, XDG folders, the documents folder and
// g_BaseDirectory in it), a fake prompter, instant pauses and a recording
// watcher as g_Watcher.
// Undone when it goes out of scope.
class TestEnvironment
{
public:
    explicit TestEnvironment(bool withWatcher = true);
    ~TestEnvironment();
    TestEnvironment(const TestEnvironment &) = delete;
    TestEnvironment &operator=(const TestEnvironment &) = delete;

    QString home() const { return m_home.path(); }
    QString path(const QString &name) const { return m_home.filePath(name); }
    // The log lines so far, or an empty list without a watcher.
    QStringList logLines() const;

    FakePrompter prompter;
    FakeSpeaker speaker;
    InstantPauser pauser;
    std::shared_ptr<LogRecord> log = std::make_shared<LogRecord>();
    RecordingWatcher *watcher = nullptr; // owned by g_Watcher; gone after a shutdown

private:
    QTemporaryDir m_home;
    QByteArray m_oldHome;
};

// Puts something other than a file at path: "named pipe", "folder", "socket",
// "link to /dev/null", "link to /dev/zero" or "link to nowhere".
void MakeSpecialFile(const QString &kind, const QString &path);
// What lies at path, precisely enough to see that it was not touched: its
// type, link target, device number and size.
QString DescribePath(const QString &path);
// The names in the devices folder, to see that nothing was put beside them.
QStringList DeviceFolderNames();

// Writes bytes to a file, creating folders; fails the test on error.
void WriteFileBytes(const QString &path, const QByteArray &bytes);
QByteArray ReadFileBytes(const QString &path);
