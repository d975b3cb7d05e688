#include "korva/diskfile.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

using namespace Qt::Literals::StringLiterals;

namespace korva {

namespace {

bool fail(QString *error, const QString &why)
{
    if (error)
        *error = why;
    return false;
}

// Something other than a regular file (or a link to one) in the file's place.
bool notARegularFile(const QFileInfo &info)
{
    return info.exists() && !info.isFile();
}

} // namespace

bool saveFile(const QString &path, QByteArrayView data, QString *error, SaveOptions options)
{
    Q_UNUSED(options);
    if (notARegularFile(QFileInfo(path)))
        return fail(error, u"'%1' is not a regular file"_s.arg(path));
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return fail(error, file.errorString());
    if (file.write(data.data(), data.size()) != data.size() || !file.flush()) {
        const QString why = file.errorString();
        file.cancelWriting();
        return fail(error, why);
    }
    if (!file.commit())
        return fail(error, file.errorString());
    return true;
}

bool readFile(const QString &path, qint64 maxSize, QByteArray &out, QString *error)
{
    const QFileInfo info(path);
    if (!info.exists())
        return fail(error, u"the file is not there"_s);
    if (!info.isFile())
        return fail(error, u"it is not a regular file"_s);
    if (info.size() > maxSize)
        return fail(error, u"it is larger than %1 bytes"_s.arg(maxSize));
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return fail(error, file.errorString());
    QByteArray data = file.read(maxSize + 1);
    if (file.error() != QFileDevice::NoError)
        return fail(error, file.errorString());
    if (data.size() > maxSize)
        return fail(error, u"it is larger than %1 bytes"_s.arg(maxSize));
    out = std::move(data);
    return true;
}

} // namespace korva
