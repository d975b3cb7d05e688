// SPDX-License-Identifier: GPL-3.0-or-later
#include "windows/lifecycle.h"

namespace {

class NoLifecycle final : public ProgramLifecycle
{
public:
    void DestroySystem(qint16, bool, int) override {}
    void StartNewSession() override {}
};

NoLifecycle g_none;
ProgramLifecycle *g_spine = &g_none;

} // namespace

ProgramLifecycle &lifecycle()
{
    return *g_spine;
}

void SetLifecycle(ProgramLifecycle *spine)
{
    g_spine = spine ? spine : &g_none;
}
