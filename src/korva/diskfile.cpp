// SPDX-License-Identifier: GPL-3.0-or-later
#include "korva/diskfile.h"

#include <QDateTime>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>

#include <cerrno>
#include <cstring>

#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#endif
#ifdef Q_OS_WIN
#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <sys/stat.h>
#include <windows.h>
#endif

using namespace Qt::Literals::StringLiterals;

// Saves do not use QSaveFile: its buffered write hides an error of the final
// flush inside commit(), so a full disk left an empty or cut file behind.

namespace korva {

namespace {

SaveFault g_fault;

int injected(SaveStep step, int count)
{
    return g_fault ? g_fault(step, count) : 0;
}

// Whether a step of a save went well, or a test's failure in its place (errno set).
bool succeeded(SaveStep step, bool done)
{
    if (const int e = injected(step, 1)) {
        errno = e;
        return false;
    }
    return done;
}

QString errnoText(int error)
{
    return QString::fromLocal8Bit(std::strerror(error));
}

constexpr qsizetype kTempRandomLength = 6;
constexpr qsizetype kWriteChunk = 64 * 1024;

// The temporary name keeps to the usual 255 bytes of a file name.
QString tempPrefix(QString fileName)
{
    const QString infix = QString::fromUtf16(kTempInfix);
    while (!fileName.isEmpty()
           && QFile::encodeName(fileName + infix).size() + kTempRandomLength > 255) {
        fileName.chop(1);
        if (!fileName.isEmpty() && fileName.back().isHighSurrogate())
            fileName.chop(1);
    }
    return fileName + infix;
}

bool isTempName(const QString &name, const QString &prefix)
{
    if (name.size() != prefix.size() + kTempRandomLength || !name.startsWith(prefix))
        return false;
    for (qsizetype i = prefix.size(); i < name.size(); ++i) {
        const char16_t c = name[i].unicode();
        if (!((c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || (c >= u'0' && c <= u'9')))
            return false;
    }
    return true;
}

QString randomSuffix()
{
    static const char16_t kLetters[] =
            u"abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
    QString s;
    for (qsizetype i = 0; i < kTempRandomLength; ++i)
        s += QChar(kLetters[QRandomGenerator::global()->bounded(62)]);
    return s;
}

#ifdef Q_OS_UNIX

QString specialKind(mode_t mode)
{
    if (S_ISDIR(mode))
        return u"a folder"_s;
    if (S_ISFIFO(mode))
        return u"a named pipe"_s;
    if (S_ISSOCK(mode))
        return u"a socket"_s;
    if (S_ISCHR(mode) || S_ISBLK(mode))
        return u"a device"_s;
    return u"something other than a file"_s;
}

int openNew(const QString &path)
{
    return ::open(QFile::encodeName(path).constData(),
                  O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOCTTY, 0666);
}

qint64 writeSome(int fd, const char *data, qint64 size)
{
    qint64 n;
    do {
        n = ::write(fd, data, size_t(size));
    } while (n < 0 && errno == EINTR);
    return n;
}

bool syncFd(int fd)
{
    return succeeded(SaveStep::Sync, ::fsync(fd) == 0);
}

// A close interrupted by a signal has still closed the file on Linux.
bool closeFd(int fd)
{
    return succeeded(SaveStep::Close, ::close(fd) == 0) || errno == EINTR;
}

// The new file gets the old one's permissions, and as root its owner too, so
// a save by an administrator does not take a user's file away from them.
void takeOver(int fd, const QString &target, bool ownerWritable)
{
    struct stat st;
    if (::stat(QFile::encodeName(target).constData(), &st) != 0)
        return;
    if (::geteuid() == 0 && ::fchown(fd, st.st_uid, st.st_gid) != 0)
        errno = 0; // best effort: the file stays the administrator's
    ::fchmod(fd, (st.st_mode & 07777) | (ownerWritable ? S_IWUSR : 0));
}

bool replaceFile(const QString &from, const QString &to, QString *why)
{
    // A fault put in by a test stands for the system refusing the rename.
    errno = injected(SaveStep::Rename, 1);
    if (errno == 0
        && ::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) == 0)
        return true;
    *why = errnoText(errno);
    return false;
}

// A temporary file is locked for as long as its save runs; one that is no
// longer locked, is ours and is a plain file was left by a save that was cut
// off.
void removeIfAbandoned(const QString &path)
{
    const QByteArray native = QFile::encodeName(path);
    const int fd =
            ::open(native.constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
    if (fd < 0)
        return;
    struct stat st;
    if (::fstat(fd, &st) == 0 && S_ISREG(st.st_mode) && st.st_uid == ::geteuid() && st.st_nlink == 1
        && ::flock(fd, LOCK_EX | LOCK_NB) == 0)
        ::unlink(native.constData());
    ::close(fd);
}

void markInUse(int fd)
{
    ::flock(fd, LOCK_EX | LOCK_NB);
}

#else

int openNew(const QString &path)
{
    int fd = -1;
    _wsopen_s(&fd, reinterpret_cast<const wchar_t *>(path.utf16()),
              _O_WRONLY | _O_CREAT | _O_EXCL | _O_BINARY | _O_NOINHERIT, _SH_DENYNO,
              _S_IREAD | _S_IWRITE);
    return fd;
}

qint64 writeSome(int fd, const char *data, qint64 size)
{
    return _write(fd, data, unsigned(qMin<qint64>(size, 1 << 30)));
}

bool syncFd(int fd)
{
    return succeeded(SaveStep::Sync, _commit(fd) == 0);
}

bool closeFd(int fd)
{
    return succeeded(SaveStep::Close, _close(fd) == 0);
}

void takeOver(int, const QString &target, bool ownerWritable)
{
    // A read-only file cannot be replaced here until it may be written.
    if (ownerWritable)
        QFile::setPermissions(target, QFile::permissions(target) | QFileDevice::WriteOwner);
}

bool replaceFile(const QString &from, const QString &to, QString *why)
{
    if (const int e = injected(SaveStep::Rename, 1)) {
        *why = errnoText(e);
        return false;
    }
    if (MoveFileExW(reinterpret_cast<const wchar_t *>(from.utf16()),
                    reinterpret_cast<const wchar_t *>(to.utf16()),
                    MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH))
        return true;
    *why = qt_error_string(int(GetLastError()));
    return false;
}

// Without locks to tell, a temporary file an hour old is taken as abandoned.
void removeIfAbandoned(const QString &path)
{
    const QFileInfo info(path);
    if (info.isFile() && !info.isSymLink()
        && info.lastModified().secsTo(QDateTime::currentDateTime()) > 3600)
        QFile::remove(path);
}

void markInUse(int) {}

#endif

void removeAbandonedTemps(const QString &folder, const QString &prefix)
{
    QDirIterator it(folder, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    while (it.hasNext()) {
        it.next();
        if (isTempName(it.fileName(), prefix))
            removeIfAbandoned(it.filePath());
    }
}

} // namespace

PathInfo inspectPath(const QString &path)
{
    if (path.isEmpty())
        return {};
#ifdef Q_OS_UNIX
    const QByteArray native = QFile::encodeName(path);
    struct stat st;
    if (::stat(native.constData(), &st) == 0) {
        if (S_ISREG(st.st_mode))
            return {PathKind::Regular, {}};
        return {PathKind::Special, specialKind(st.st_mode)};
    }
    const int error = errno;
    if (::lstat(native.constData(), &st) == 0)
        return {PathKind::Special,
                error == ELOOP ? u"a loop of links"_s : u"a link that leads nowhere"_s};
    return {};
#else
    const QFileInfo info(path);
    if (info.isSymLink() && !info.exists())
        return {PathKind::Special, u"a link that leads nowhere"_s};
    if (!info.exists())
        return {};
    if (info.isFile())
        return {PathKind::Regular, {}};
    return {PathKind::Special, info.isDir() ? u"a folder"_s : u"something other than a file"_s};
#endif
}

QString notAFileReason(const PathInfo &info)
{
    return u"it is "_s + info.what + u", not a file"_s;
}

ReadStatus readFile(const QString &path, qint64 maxSize, QByteArray &out, QString *error)
{
    auto fail = [error](const QString &why) {
        if (error)
            *error = why;
        return ReadStatus::Failed;
    };
    const PathInfo info = inspectPath(path);
    if (info.kind == PathKind::Missing) {
        if (error)
            *error = u"no such file"_s;
        return ReadStatus::Missing;
    }
    if (info.kind == PathKind::Special)
        return fail(notAFileReason(info));

    QFile file;
#ifdef Q_OS_UNIX
    // Opened without waiting and checked again once open: what was looked at
    // may have been swapped for a pipe or a device meanwhile.
    const int fd = ::open(QFile::encodeName(path).constData(),
                          O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
    if (fd < 0) {
        const int e = errno;
        if (e == ENOENT)
            return ReadStatus::Missing;
        return fail(errnoText(e));
    }
    struct stat st;
    if (::fstat(fd, &st) != 0) {
        const int e = errno;
        ::close(fd);
        return fail(errnoText(e));
    }
    if (!S_ISREG(st.st_mode)) {
        ::close(fd);
        return fail(notAFileReason({PathKind::Special, specialKind(st.st_mode)}));
    }
    if (!file.open(fd, QIODevice::ReadOnly | QIODevice::Unbuffered, QFileDevice::AutoCloseHandle)) {
        ::close(fd);
        return fail(file.errorString());
    }
#else
    file.setFileName(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return fail(file.errorString());
#endif
    if (file.size() > maxSize)
        return ReadStatus::TooLarge;
    // Read in pieces up to the limit: a file may grow while it is read.
    QByteArray data;
    data.reserve(qsizetype(file.size()));
    char buffer[64 * 1024];
    qint64 n;
    while ((n = file.read(buffer, sizeof buffer)) > 0) {
        if (data.size() + n > maxSize)
            return ReadStatus::TooLarge;
        data.append(buffer, qsizetype(n));
    }
    if (n < 0)
        return fail(file.errorString());
    out = std::move(data);
    return ReadStatus::Ok;
}

bool createNewFile(const QString &path, QString *error)
{
    QFile file(path);
    if (file.open(QIODevice::WriteOnly | QIODevice::NewOnly))
        return true;
    if (error)
        *error = file.errorString();
    return false;
}

bool saveFile(const QString &path, QByteArrayView data, QString *error, SaveOptions options)
{
    auto fail = [error](const QString &why) {
        if (error)
            *error = why;
        return false;
    };
    if (path.isEmpty())
        return fail(u"no file name was given"_s);
    const PathInfo info = inspectPath(path);
    if (info.kind == PathKind::Special)
        return fail(notAFileReason(info));

    // Through a link, the file it leads to is replaced and the link stays.
    QString target = QFileInfo(path).absoluteFilePath();
    if (info.kind == PathKind::Regular) {
        const QString canonical = QFileInfo(path).canonicalFilePath();
        if (!canonical.isEmpty())
            target = canonical;
    }
    const QFileInfo targetInfo(target);
    const QString folder = targetInfo.absolutePath();
    const QString prefix = tempPrefix(targetInfo.fileName());
    removeAbandonedTemps(folder, prefix);

    QString temp;
    int fd = -1;
    for (int attempt = 0; fd < 0; ++attempt) {
        if (const int e = injected(SaveStep::Create, 1))
            return fail(errnoText(e));
        temp = folder + u'/' + prefix + randomSuffix();
        fd = openNew(temp);
        if (fd < 0 && (errno != EEXIST || attempt >= 16))
            return fail(errnoText(errno));
    }
    markInUse(fd);
    if (info.kind == PathKind::Regular)
        takeOver(fd, target, options.ownerWritable);

    auto abandon = [&](int e) {
        if (fd >= 0)
            closeFd(fd);
        QFile::remove(temp);
        return fail(errnoText(e));
    };

    int writes = 0;
    for (qsizetype at = 0; at < data.size();) {
        if (const int e = injected(SaveStep::Write, ++writes))
            return abandon(e);
        const qint64 n = writeSome(fd, data.data() + at, qMin(kWriteChunk, data.size() - at));
        if (n <= 0)
            return abandon(n < 0 ? errno : EIO);
        at += qsizetype(n);
    }
    if (!syncFd(fd))
        return abandon(errno);
    const bool closed = closeFd(fd);
    const int closeError = errno;
    fd = -1;
    if (!closed)
        return abandon(closeError);

    QString why;
    // The new file is on disk before its name replaces the old one's, so
    // whatever happens the target holds one of the two whole. The folder is
    // not synced as well: that would only make the new name last sooner, at
    // ten times the cost of a save.
    if (!replaceFile(temp, target, &why)) {
        QFile::remove(temp);
        return fail(why);
    }
    return true;
}

bool sameFile(const QString &a, const QString &b)
{
#ifdef Q_OS_UNIX
    struct stat sa, sb;
    return ::stat(QFile::encodeName(a).constData(), &sa) == 0
            && ::stat(QFile::encodeName(b).constData(), &sb) == 0 && sa.st_dev == sb.st_dev
            && sa.st_ino == sb.st_ino;
#else
    const QFileInfo ia(a), ib(b);
    return ia.exists() && ib.exists() && ia == ib;
#endif
}

void setSaveFault(SaveFault fault)
{
    g_fault = std::move(fault);
}

} // namespace korva
