// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

#include <optional>

// The operating system's version as major, minor and build numbers: here the
// kernel's version (major.minor, build = patch). Drawing and start-up choose
// their paths by the version code major x 100 + minor; tests put in an older
// system to run the paths kept for one.
struct OsVersion
{
    int major = 0;
    int minor = 0;
    int build = 0;

    qint32 code() const { return major * 100 + minor; }
};

// The version, or nothing when it cannot be read.
std::optional<OsVersion> QueryOsVersion();
// Replaces what QueryOsVersion() answers; nullopt goes back to the real one.
void SetOsVersionOverride(std::optional<OsVersion> version);
