#include "testsupport.h"

#include "cards/deck.h"
#include "core/programstate.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

#include <memory>

using namespace Qt::Literals::StringLiterals;

MsgResult FakePrompter::ShowMessage(const MessageBoxRequest &request)
{
    boxes.push_back(request);
    if (!answers.empty()) {
        const MsgResult answer = answers.front();
        answers.pop_front();
        return answer;
    }
    switch (request.buttons) {
    case MsgButtons::OK:
        return MsgResult::OK;
    case MsgButtons::YesNo:
        return MsgResult::No;
    default:
        return MsgResult::Cancel;
    }
}

std::optional<QString> FakePrompter::AskFileName(const FileDialogRequest &request)
{
    fileDialogs.push_back(request);
    if (fileAnswers.empty())
        return std::nullopt;
    auto answer = fileAnswers.front();
    fileAnswers.pop_front();
    return answer;
}

std::optional<quint32> FakePrompter::AskColor(quint32)
{
    if (colorAnswers.empty())
        return std::nullopt;
    auto answer = colorAnswers.front();
    colorAnswers.pop_front();
    return answer;
}

bool FakePrompter::StartProgram(const QString &program, const QStringList &arguments)
{
    launches.push_back({program, arguments});
    return !program.isEmpty();
}

bool FakePrompter::OpenDocument(const QString &pathOrUrl)
{
    openedDocuments << pathOrUrl;
    return true;
}

int FakePrompter::ShowModal(QObject *window)
{
    modalWindows.push_back(window->objectName());
    return onModal ? onModal(window) : 0;
}

std::optional<PrintChoice> FakePrompter::AskPrint(const PrintRequest &request)
{
    printDialogs.push_back(request);
    if (printAnswers.empty())
        return std::nullopt;
    auto answer = printAnswers.front();
    printAnswers.pop_front();
    return answer;
}

QStringList FakePrompter::boxTitles() const
{
    QStringList titles;
    for (const auto &b : boxes)
        titles << b.title;
    return titles;
}

QStringList FakePrompter::seen() const
{
    QStringList out;
    for (const auto &b : boxes)
        out << Box(b.title, b.text, b.icon, b.buttons);
    return out;
}

QString Box(const QString &title, const QString &text, MsgIcon icon, MsgButtons buttons)
{
    static const QStringList icons {u"no icon"_s, u"critical"_s, u"question"_s, u"exclamation"_s, u"information"_s};
    static const QStringList buttonSets {u"OK"_s, u"OK Cancel"_s, u"Yes No"_s, u"Yes No Cancel"_s};
    return title + u" | "_s + text + u" | "_s + icons[int(icon)] + u" | "_s + buttonSets[int(buttons)];
}

QStringList LogRecord::messages() const
{
    QStringList out;
    for (const auto &l : lines)
        out << l.message;
    return out;
}

TestEnvironment::TestEnvironment(bool withWatcher)
{
    ResetProgramState();
    g_Deck.Reset();
    m_oldHome = qgetenv("HOME");
    const QString home = m_home.path();
    qputenv("HOME", home.toUtf8());
    qputenv("XDG_CONFIG_HOME", (home + u"/.config"_s).toUtf8());
    qputenv("XDG_DATA_HOME", (home + u"/.local/share"_s).toUtf8());
    QDir(home).mkpath(u"Documents"_s);
    // Code that reaches for the home folder's settings file finds it here,
    // never beside the test or at the root.
    g_BaseDirectory = home;
    SetPrompter(&prompter);
    SetSpeaker(&speaker);
    SetPauser(&pauser);
    if (withWatcher) {
        auto w = std::make_unique<RecordingWatcher>(log);
        watcher = w.get();
        g_Watcher = std::move(w);
    }
}

TestEnvironment::~TestEnvironment()
{
    ResetProgramState();
    g_Deck.Reset();
    SetPrompter(nullptr);
    SetSpeaker(nullptr);
    SetPauser(nullptr);
    qputenv("HOME", m_oldHome);
    qunsetenv("XDG_CONFIG_HOME");
    qunsetenv("XDG_DATA_HOME");
}

QStringList TestEnvironment::logLines() const
{
    return log->messages();
}

void WriteFileBytes(const QString &path, const QByteArray &bytes)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile f(path);
    QVERIFY2(f.open(QIODevice::WriteOnly | QIODevice::Truncate), qPrintable(path));
    QCOMPARE(f.write(bytes), bytes.size());
}

QByteArray ReadFileBytes(const QString &path)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return {};
    return f.readAll();
}
