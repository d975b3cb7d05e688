// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

// The start-up spine sits above every window, yet windows end the program
// (the chapter window's Quit, the study window's close) and start new
// sessions. They reach the spine through this interface, which it installs.
// What the process ends with when shutdown lets it go.
inline constexpr int kExitNormal = 0;
inline constexpr int kExitFailure = 1; // start-up abandoned, or the chapters not loaded

class ProgramLifecycle
{
public:
    virtual ~ProgramLifecycle() = default;
    virtual void DestroySystem(qint16 code, bool keepRunning, int exitStatus = kExitNormal) = 0;
    virtual void StartNewSession() = 0;
};

// The installed spine; one that does nothing until the spine installs itself.
ProgramLifecycle &lifecycle();
// Installs the spine (not owned); nullptr goes back to the one doing nothing.
void SetLifecycle(ProgramLifecycle *spine);
