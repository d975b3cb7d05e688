// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>

class QIODevice;

// The editor's command-line verbs:
//   vxedit dump FILE                               a KORVA file as JSON
//   vxedit import SRC -o OUT.zel [--title TITLE]   a chapter from TSV or CSV
//                [--header | --no-header]          column names on line 1? (default: detected)
//   vxedit export FILE.zel [-o OUT.tsv|OUT.csv]    a chapter's cards as text
//   vxedit print FILE.zel|FILE.vxs -o OUT.pdf [--trouble-only] [--fold]
//                                                   cards on paper, as a PDF
//   vxedit languages FILE.zel [--set Q,A | --clear] the languages kept beside
//                                                   a chapter, shown or set
//   vxedit --help | --version
// Refused input gives exit status 1 and one line on err naming the file (and
// line); nothing is written then. Usage errors (an unknown verb or option
// among them) give 2.
namespace commandline {

// True when the arguments (without the program name) ask for a verb rather
// than the editor's window: anything but nothing or a file to open, so that a
// mistyped verb gets the usage rather than a window.
bool IsCommandLine(const QStringList &args);
// True for the verbs that lay text out (print): they need the machine's
// fonts, so a Qt Gui application (on the offscreen platform: no display).
bool NeedsFonts(const QStringList &args);

int Run(const QStringList &args, QIODevice &out, QIODevice &err);

} // namespace commandline
