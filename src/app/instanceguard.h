// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

// Tells whether another copy of the program runs for this user. The first
// copy listens on a local socket in the abstract namespace: nothing lies on
// disk, so a crashed copy leaves nothing behind that could block the next.
namespace instanceguard {

// True when another instance holds the key; otherwise this process takes it
// and keeps it until it ends (or Release).
bool PreviousInstanceRunning();
void Release();
// The key the instances share; tests give each run its own.
void SetKey(const QString &key);
// The key of the copies that keep their files in a home folder.
QString KeyFor(const QString &home);

} // namespace instanceguard
