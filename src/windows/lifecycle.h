#pragma once

#include <QtGlobal>

// The start-up spine sits above every window, yet windows end the program
// (the chapter window's Quit, the study window's close) and start new
// sessions. They reach the spine through this interface, which it installs.
class ProgramLifecycle
{
public:
    virtual ~ProgramLifecycle() = default;
    virtual void DestroySystem(qint16 code, bool keepRunning) = 0;
    virtual void StartNewSession() = 0;
};

// The installed spine; one that does nothing until the spine installs itself.
ProgramLifecycle &lifecycle();
// Installs the spine (not owned); nullptr goes back to the one doing nothing.
void SetLifecycle(ProgramLifecycle *spine);
