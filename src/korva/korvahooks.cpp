// SPDX-License-Identifier: GPL-3.0-or-later
#include "korva/korvahooks.h"

namespace korva {

namespace {
Hooks &current()
{
    static Hooks hooks;
    return hooks;
}
} // namespace

void setHooks(Hooks hooks)
{
    current() = std::move(hooks);
}

const Hooks &hooks()
{
    return current();
}

} // namespace korva
