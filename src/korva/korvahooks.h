// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <functional>

// What the engine needs from the program that hosts it: a log line, a yes/no
// question and a warning. The study program routes them to its log and message
// boxes; the editor's command line to stderr. Unset hooks drop log lines, answer
// questions with No and drop warnings.
namespace korva {

struct Hooks
{
    std::function<void(const QString &message)> log;
    std::function<bool(const QString &title, const QString &text)> askYesNo;
    std::function<void(const QString &title, const QString &text)> warn;
};

void setHooks(Hooks hooks);
const Hooks &hooks();

} // namespace korva
