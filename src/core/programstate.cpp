// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/programstate.h"

#include "core/extrasettings.h"
#include "core/log.h"
#include "core/prompter.h"
#include "korva/ikorvalite.h"
#include "korva/korvahooks.h"

qint32 g_RunMode = 0;
QString g_BaseDirectory;
std::unique_ptr<ikorvalite> g_MasterDb;
std::unique_ptr<MessageWatcher> g_Watcher;
SplashStatusOutlet *g_SplashOutlet = nullptr;
bool g_SplashUp = false;
bool g_ShuttingDown = false;
bool g_ShuffleRunning = false;
bool g_DeleteMasterOnExit = false;
bool g_OsAlpha = false;
bool g_OsGradient = false;
qint32 g_OsVersionCode = 0;
bool g_ShowMouseHover = false;
bool g_TroubleByDefault = false;
bool g_TroubleDefaultCurrent = false;
bool g_SuppressRefresh = false;
bool g_ProcessReleased = false;
int g_ExitStatus = 0;

namespace modrender {
qint16 CurrentCard = 0;
quint8 AlphaLevel = 90;
bool AlphaEffects = false;
} // namespace modrender

void ResetProgramState()
{
    g_RunMode = 0;
    g_BaseDirectory.clear();
    g_MasterDb.reset();
    g_Watcher.reset();
    g_SplashOutlet = nullptr;
    g_SplashUp = false;
    g_ShuttingDown = false;
    g_ShuffleRunning = false;
    g_DeleteMasterOnExit = false;
    g_OsAlpha = false;
    g_OsGradient = false;
    g_OsVersionCode = 0;
    g_ShowMouseHover = false;
    g_TroubleByDefault = false;
    g_TroubleDefaultCurrent = false;
    g_SuppressRefresh = false;
    g_ProcessReleased = false;
    g_ExitStatus = 0;
    modrender::CurrentCard = 0;
    modrender::AlphaLevel = 90;
    modrender::AlphaEffects = false;
    g_Extras.Clear();
    ConnectKorvaToProgram();
}

void ConnectKorvaToProgram()
{
    korva::Hooks hooks;
    hooks.log = [](const QString &message) { Log(message); };
    hooks.askYesNo = [](const QString &title, const QString &text) {
        return MsgBox(title, text, MsgIcon::Question, MsgButtons::YesNo) == MsgResult::Yes;
    };
    hooks.warn = [](const QString &title, const QString &text) {
        MsgBox(title, text, MsgIcon::Exclamation, MsgButtons::OK);
    };
    korva::setHooks(std::move(hooks));
}
