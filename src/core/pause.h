// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

// Waits and event processing on the one user-interface thread go through here,
// so tests can make pauses instant and count them.
class Pauser
{
public:
    virtual ~Pauser() = default;
    virtual void Sleep(int ms) = 0;
    virtual void ProcessEvents() = 0;
};

// Installs a pauser (not owned); nullptr goes back to the real one.
void SetPauser(Pauser *pauser);

// Lets pending window events run once.
void DoEvents();
// Sleeps without processing events.
void SleepMs(int ms);

// Processes events once; then either sleeps ms in one piece and processes
// events again (fine false), or sleeps 1 ms and processes events ms times and
// once more (fine true), which keeps an animation running through the wait.
void PauseWithEvents(qint32 ms, bool fine);
