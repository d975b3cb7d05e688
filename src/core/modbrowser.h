// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace modBrowser {

// The browser's command line as one text of 128 characters, padded with blanks:
// the program path in double quotes, then its arguments with "%1" where the
// address goes. Empty (with a warning in the log) when no browser is known or
// its command is 128 characters or longer.
//
// It comes from the BROWSER environment variable when that is set, else from
// the desktop entry of the default handler of http addresses.
QString DefaultBrowserCommand();

// Turns a BROWSER value or a desktop entry's Exec line into the form above:
// the program quoted, %s / %u / %U / %f / %F written as %1 (BROWSER without %s
// gets "%1" appended). Empty when there is no program.
QString BrowserCommandFromBrowserVariable(const QString &value);
QString BrowserCommandFromExecLine(const QString &exec);

// The Exec line of the default http handler's desktop entry, or empty.
QString DefaultBrowserExecLine();

struct SplitCommand
{
    QString file;
    QString args;
};
// The quote that closes a quoted program path ends the file; the rest,
// trimmed, are the arguments. An unquoted path leaves the file empty.
SplitCommand SplitBrowserCommand(const QString &command);

void OpenUrl(const QString &url);
QString ProductPageUrl();
void OpenProductPage();

} // namespace modBrowser
