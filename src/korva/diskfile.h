#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

// Saving and reading whole files, checked. A save replaces the file in one
// step (a temporary file beside it, synced, then renamed over it), so a
// failure leaves the old file as it was; only regular files are read or
// replaced: a FIFO, device or directory in their place is refused at once.
namespace korva {

struct SaveOptions
{
};

// Writes data as the whole file at path. False, with the reason in error
// (when given), when it could not be written; the old file is then unchanged.
bool saveFile(const QString &path, QByteArrayView data, QString *error, SaveOptions options = {});

// Reads the whole file at path into out. False, with the reason, when it is no
// regular file, is larger than maxSize bytes or cannot be read; out is then
// untouched.
bool readFile(const QString &path, qint64 maxSize, QByteArray &out, QString *error);

} // namespace korva
