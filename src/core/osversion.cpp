// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/osversion.h"

#include <QStringList>
#include <QSysInfo>

namespace {
std::optional<OsVersion> g_override;
}

std::optional<OsVersion> QueryOsVersion()
{
    if (g_override)
        return g_override;
    // "6.1.0-27-amd64": the numbers up to the first character that is neither
    // a digit nor a dot.
    const QString kernel = QSysInfo::kernelVersion();
    qsizetype end = 0;
    while (end < kernel.size() && (kernel[end].isDigit() || kernel[end] == u'.'))
        ++end;
    const QStringList parts = kernel.left(end).split(u'.', Qt::SkipEmptyParts);
    if (parts.isEmpty())
        return std::nullopt;
    OsVersion v;
    v.major = parts.value(0).toInt();
    v.minor = parts.value(1).toInt();
    v.build = parts.value(2).toInt();
    return v;
}

void SetOsVersionOverride(std::optional<OsVersion> version)
{
    g_override = version;
}
