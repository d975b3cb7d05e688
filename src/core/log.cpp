// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/log.h"

#include "core/modfolders.h"
#include "core/pause.h"
#include "core/programstate.h"
#include "core/prompter.h"
#include "core/version.h"

#include <QFileInfo>

#include <memory>

using namespace Qt::Literals::StringLiterals;

namespace {

// The watcher connection is switched off in this build. The steps behind the
// switch stay so that a build with a watcher only has to turn it on.
constexpr bool kWatcherSwitchedOff = true;

// Looks up the watcher's automation object by its registered name. This
// platform has no automation registry, so nothing is ever found.
std::unique_ptr<MessageWatcher> CreateWatcherObject(const QString &progId)
{
    Q_UNUSED(progId);
    return nullptr;
}

} // namespace

void Log(const QString &message, qint16 level, qint32 channel, bool highPriority)
{
    QString text = message;

    if (!g_Watcher && highPriority) {
        MsgBox(u"High Priority Message Handler"_s, text, MsgIcon::Critical, MsgButtons::OK);
        return;
    }

    if (g_Watcher) {
        g_Watcher->AddMsg(text, level, channel);
        DoEvents();
    }

    if (g_SplashUp) {
        text.remove(u"/n"_s);
        text.remove(u"/t"_s);
        if (g_SplashOutlet)
            g_SplashOutlet->SetStatusText(text);
        // Paces start-up so each status line can be read on the splash.
        SleepMs(25);
        DoEvents();
    }
}

void ConnectWatcher()
{
    if (kWatcherSwitchedOff)
        return;

    const QString progId = u"zelDebugger.iDebugServer"_s;
    g_Watcher = CreateWatcherObject(progId);
    if (!g_Watcher) {
        RegisterWatcher();
        g_Watcher = CreateWatcherObject(progId);
        if (!g_Watcher)
            return;
    }
    g_Watcher->Connect(QString::fromUtf16(version::kProductName));
    g_Watcher->showWatchWindow();
}

void DisconnectWatcher()
{
    if (!g_Watcher)
        return;
    g_Watcher->Disconnect();
    g_Watcher.reset();
}

void RegisterWatcher()
{
    // The watcher lies in the home directory, not the program directory,
    // although the message below speaks of the current directory.
    const QString path = g_BaseDirectory + u'/' + ExecutableFileName(u"zeldebug"_s);
    if (QFileInfo(path).isFile()) {
        Log(u" .. execing "_s + path + u" for debugger registration/n"_s);
        prompter().StartProgram(path, {}, QString());
        return;
    }
    MsgBox(u"DEBUG Mode Mismatch"_s,
           u"This program is in DEBUG mode, but the external debugger couldn't be found. "
           "Check to ensure the file is present in the current directory."_s,
           MsgIcon::Exclamation, MsgButtons::OK);
}
