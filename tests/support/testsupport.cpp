// SPDX-License-Identifier: GPL-3.0-or-later
#include "testsupport.h"

#include "cards/deck.h"
#include "core/programstate.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

#include <memory>

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/un.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

// The next scripted answer, or none once the script has run out.
template<typename T> T next(std::deque<T> &answers, T none = {})
{
    if (answers.empty())
        return none;
    T answer = std::move(answers.front());
    answers.pop_front();
    return answer;
}

// Each item's text, in order.
template<typename Items, typename Text> QStringList mapped(const Items &items, Text text)
{
    QStringList out;
    for (const auto &item : items)
        out << text(item);
    return out;
}

// What a user who closes the box answers: OK, else No, else Cancel.
MsgResult safest(MsgButtons buttons)
{
    return buttons == MsgButtons::OK ? MsgResult::OK : buttons == MsgButtons::YesNo ? MsgResult::No : MsgResult::Cancel;
}

} // namespace

MsgResult FakePrompter::ShowMessage(const MessageBoxRequest &request)
{
    boxes.push_back(request);
    if (onBox)
        onBox(request);
    return next(answers, safest(request.buttons));
}

std::optional<QString> FakePrompter::AskFileName(const FileDialogRequest &request)
{
    fileDialogs.push_back(request);
    return next(fileAnswers);
}

std::optional<quint32> FakePrompter::AskColor(quint32)
{
    return next(colorAnswers);
}

bool FakePrompter::StartProgram(const QString &program, const QStringList &arguments, const QString &workingDirectory)
{
    launches.push_back({program, arguments, workingDirectory});
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
    return next(printAnswers);
}

QStringList FakePrompter::boxTitles() const
{
    return mapped(boxes, [](const MessageBoxRequest &b) { return b.title; });
}

QStringList FakePrompter::seen() const
{
    return mapped(boxes, [](const MessageBoxRequest &b) { return Box(b.title, b.text, b.icon, b.buttons); });
}

QString Box(const QString &title, const QString &text, MsgIcon icon, MsgButtons buttons)
{
    static const QStringList icons {u"no icon"_s, u"critical"_s, u"question"_s, u"exclamation"_s, u"information"_s};
    static const QStringList buttonSets {u"OK"_s, u"OK Cancel"_s, u"Yes No"_s, u"Yes No Cancel"_s};
    return title + u" | "_s + text + u" | "_s + icons[int(icon)] + u" | "_s + buttonSets[int(buttons)];
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
    return mapped(log->lines, [](const LogRecord::Line &l) { return l.message; });
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

void MakeSpecialFile(const QString &kind, const QString &path)
{
    const QByteArray native = QFile::encodeName(path);
    if (kind == u"named pipe"_s) {
        QCOMPARE(::mkfifo(native.constData(), 0644), 0);
    } else if (kind == u"folder"_s) {
        QVERIFY(QDir().mkdir(path));
    } else if (kind == u"socket"_s) {
        // The socket stays on disk once its descriptor is closed.
        const int fd = ::socket(AF_UNIX, SOCK_STREAM, 0);
        QVERIFY(fd >= 0);
        sockaddr_un address {};
        address.sun_family = AF_UNIX;
        QVERIFY(size_t(native.size()) < sizeof address.sun_path);
        memcpy(address.sun_path, native.constData(), size_t(native.size()));
        QCOMPARE(::bind(fd, reinterpret_cast<sockaddr *>(&address), sizeof address), 0);
        ::close(fd);
    } else if (kind.startsWith(u"link to "_s)) {
        const QString target = kind.mid(8) == u"nowhere"_s ? path + u".gone"_s : kind.mid(8);
        QVERIFY(QFile::link(target, path));
    } else {
        QFAIL(qPrintable(u"no such kind: "_s + kind));
    }
}

QString DescribePath(const QString &path)
{
    struct stat st;
    const QByteArray native = QFile::encodeName(path);
    if (::lstat(native.constData(), &st) != 0)
        return u"nothing"_s;
    QString out = u"mode %1 size %2"_s.arg(st.st_mode, 0, 8).arg(qint64(st.st_size));
    if (S_ISLNK(st.st_mode))
        out += u" link to "_s + QFileInfo(path).symLinkTarget();
    if (::stat(native.constData(), &st) == 0 && (S_ISCHR(st.st_mode) || S_ISBLK(st.st_mode)))
        out += u" device %1:%2 mode %3"_s.arg(major(st.st_rdev)).arg(minor(st.st_rdev)).arg(st.st_mode, 0, 8);
    if (QFileInfo(path).isDir())
        out += u" holding "_s
                + QDir(path)
                          .entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System)
                          .join(u',');
    return out;
}

QStringList DeviceFolderNames()
{
    return QDir(u"/dev"_s).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System);
}
