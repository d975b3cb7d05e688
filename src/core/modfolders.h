// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace modFolders {

inline constexpr qint32 kFolderPersonal = 5; // the user's documents folder

// The path of a special folder with a trailing separator; empty when it cannot
// be resolved. Only the documents folder is known here.
QString SpecialFolderPath(qint32 folderId);
QString DocumentsFolder();

// g_BaseDirectory = documents folder + "Vocabrix", created when missing. When
// the documents folder cannot be resolved the bare relative name is used.
void SetHomeDirectory();

// Where the program's own files lie: the example chapters, the editor, the
// updater file, the manual.
QString ProgramDirectory();
// Puts the program's files elsewhere (tests); empty goes back to the real place.
void SetProgramDirectory(const QString &path);

} // namespace modFolders

// A program's file name on this platform: "vxedit" here, "vxedit.exe" on Windows.
QString ExecutableFileName(const QString &baseName);
