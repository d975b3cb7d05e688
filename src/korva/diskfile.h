// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <functional>

// The one way the program reads and saves its files.
//
// Only regular files (and links to them) are read or written. A folder, named
// pipe, socket or device where a file is expected is refused at once: it is
// looked at before it is opened, opened without waiting, and never written to
// or replaced.
//
// A save writes a new file beside the target, unbuffered, syncs it to disk and
// only then renames it over the target, so the target is either the complete
// old file or the complete new one, and every failure on the way is reported.
namespace korva {

enum class PathKind { Missing, Regular, Special };

struct PathInfo
{
    PathKind kind = PathKind::Missing;
    // For a special path, what it is: "a folder", "a named pipe", ...
    QString what;
};

// What the path names once links are followed. A link that leads nowhere is
// special: writing through it would create a file somewhere else.
PathInfo inspectPath(const QString &path);

// "it is a named pipe, not a file", for messages that go on "couldn't be
// read: ...".
QString notAFileReason(const PathInfo &info);

enum class ReadStatus { Ok, Missing, TooLarge, Failed };

// Reads a whole regular file of at most maxSize bytes. Failed covers special
// files and read errors, with the reason in error.
ReadStatus readFile(const QString &path, qint64 maxSize, QByteArray &out, QString *error);

// Creates an empty file where nothing is; fails when anything is there.
bool createNewFile(const QString &path, QString *error);

struct SaveOptions
{
    // The new file may be written by its owner even when the old one could
    // not (the user agreed to overwrite a read-only file).
    bool ownerWritable = false;
};

// Replaces the file at path (the file a link leads to, the link kept) by data,
// or creates it. On failure returns false with the reason; the old file is
// then untouched and no temporary file is left. Temporary files of earlier
// saves of the same target that were cut off (the process killed) are
// removed first.
bool saveFile(const QString &path, QByteArrayView data, QString *error, SaveOptions options = {});

// The temporary files a save of target writes are named
// target + kTempInfix + six letters or digits.
inline constexpr char16_t kTempInfix[] = u".vxsave-";

// True when both paths name the same existing file (links followed, hard
// links included).
bool sameFile(const QString &a, const QString &b);

// A seam for tests: called before each step of a save with the step and, for
// writes, the number of the write (from 1). A non-zero result is an error
// number (ENOSPC, EIO...) that the step then fails with.
enum class SaveStep { Create, Write, Sync, Close, Rename };
using SaveFault = std::function<int(SaveStep step, int count)>;
void setSaveFault(SaveFault fault);

} // namespace korva
