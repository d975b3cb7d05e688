// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <memory>

class ikorvalite;
class MessageWatcher;
class SplashStatusOutlet;

// State that belongs to the whole program, in one place. Flags live here as
// bool; files store them as 16-bit -1/0.

inline constexpr qint32 kRunModeRelease = 0xBABEF; // "Full Retail"
inline constexpr qint32 kRunModeDebug = 0x33ABBA;  // "Debug"

extern qint32 g_RunMode;
extern QString g_BaseDirectory;                // home directory, no trailing separator
extern std::unique_ptr<ikorvalite> g_MasterDb; // "sys.zel", while mounted
extern std::unique_ptr<MessageWatcher> g_Watcher;
extern SplashStatusOutlet *g_SplashOutlet; // the splash's status line, while it exists
extern bool g_SplashUp;
extern bool g_ShuttingDown;
extern bool g_ShuffleRunning;
extern bool g_DeleteMasterOnExit;
extern bool g_OsAlpha;
extern bool g_OsGradient;
extern qint32 g_OsVersionCode;
extern bool g_ShowMouseHover;
extern bool g_TroubleByDefault;      // saved at shutdown; may be latched for the next run
extern bool g_TroubleDefaultCurrent; // in force during this run
extern bool g_SuppressRefresh;       // keeps card renderers from starting their present timer
extern bool g_ProcessReleased;       // shutdown has let the process go
extern int g_ExitStatus; // the process's status once let go: 0, or 1 after a failed start or load

// The card manager's state: the index of the card on show and the alpha
// options of the card window.
namespace modrender {
extern qint16 CurrentCard;
extern quint8 AlphaLevel; // 0..255, default 90
extern bool AlphaEffects;
} // namespace modrender

// Puts every program-wide value back as it is when the process starts (no
// master database, no watcher) and connects the database engine to the log
// and message boxes. The deck, one layer up, has its own Reset.
void ResetProgramState();

// Routes the database engine's log lines, questions and warnings to Log and
// MsgBox.
void ConnectKorvaToProgram();
