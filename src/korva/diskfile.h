#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

// The one way files are written and read whole: a save goes to a temporary
// file beside the target and replaces it only once every byte is on disk, so
// a full disk or a crash leaves the old file as it was; only regular files
// are read or replaced.
namespace korva {

struct SaveOptions
{
};

// False with a reason in error when the file could not be written; the old
// file is then left byte for byte.
bool saveFile(const QString &path, QByteArrayView data, QString *error, SaveOptions options = {});

// Reads a regular file of at most maxSize bytes into out; false with a reason
// otherwise (out is left as it was).
bool readFile(const QString &path, qint64 maxSize, QByteArray &out, QString *error);

} // namespace korva
