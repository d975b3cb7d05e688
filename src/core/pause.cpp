// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/pause.h"

#include <QCoreApplication>
#include <QThread>

namespace {

class RealPauser final : public Pauser
{
public:
    void Sleep(int ms) override
    {
        if (ms > 0)
            QThread::msleep(ulong(ms));
    }
    void ProcessEvents() override
    {
        if (QCoreApplication::instance())
            QCoreApplication::processEvents();
    }
};

RealPauser g_real;
Pauser *g_pauser = nullptr;

Pauser &pauser()
{
    return g_pauser ? *g_pauser : g_real;
}

} // namespace

void SetPauser(Pauser *p)
{
    g_pauser = p;
}

void DoEvents()
{
    pauser().ProcessEvents();
}

void SleepMs(int ms)
{
    pauser().Sleep(ms);
}

void PauseWithEvents(qint32 ms, bool fine)
{
    DoEvents();
    if (!fine) {
        SleepMs(ms);
        DoEvents();
        return;
    }
    if (ms < 1)
        return;
    for (qint32 i = 0; i < ms; ++i) {
        SleepMs(1);
        DoEvents();
    }
    DoEvents();
}
