// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

// Every progress line of the program goes through Log. A message ends in the
// two characters "/n" (the program's own line-end marker, read by the
// watcher); without it the next message continues the line.
//
// Outlets, in this order: a high-priority message with no watcher connected
// becomes a message box (and nothing else); a connected watcher receives every
// message; while the splash is up every message becomes its status line.

inline constexpr qint16 kLogBanner = 1;
inline constexpr qint16 kLogProgress = 3;
inline constexpr qint16 kLogContinuation = 4;

void Log(const QString &message, qint16 level = kLogProgress, qint32 channel = -1,
         bool highPriority = false);

// The external message watcher: a separate program the log can feed. It is
// reached by name at run time; this build never connects one (see
// ConnectWatcher).
class MessageWatcher
{
public:
    virtual ~MessageWatcher() = default;
    virtual void Connect(const QString &clientName) = 0;
    virtual void showWatchWindow() = 0;
    virtual void AddMsg(QString &message, qint16 &level, qint32 &channel) = 0;
    virtual void Disconnect() = 0;
};

// What the log needs of the splash window while it is up.
class SplashStatusOutlet
{
public:
    virtual ~SplashStatusOutlet() = default;
    // Replaces the status line and redraws at once.
    virtual void SetStatusText(const QString &text) = 0;
};

void ConnectWatcher();
void DisconnectWatcher();
void RegisterWatcher();
