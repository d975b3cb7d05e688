// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/instanceguard.h"

#include "core/programstate.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>

#ifdef Q_OS_LINUX
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#else
#include <QLocalServer>

#include <memory>
#endif

using namespace Qt::Literals::StringLiterals;

namespace instanceguard {

namespace {

QString g_key;

QString key()
{
    if (!g_key.isEmpty())
        return g_key;
    return KeyFor(g_BaseDirectory.isEmpty() ? QDir::homePath() : g_BaseDirectory);
}

#ifdef Q_OS_LINUX
// A socket bound to the key's name in the abstract namespace, by hand: the
// name is Qt's local server's own (the key, nothing before it), and start-up
// does not wait for Qt's network library to load.
int g_socket = -1;

bool takeKey()
{
    if (g_socket >= 0)
        return false; // this process holds it
    const QByteArray name = key().toUtf8();
    sockaddr_un address {};
    address.sun_family = AF_UNIX;
    if (size_t(name.size()) + 1 > sizeof(address.sun_path))
        return false; // never for the program's keys, which are hashes
    std::memcpy(address.sun_path + 1, name.constData(), size_t(name.size()));
    const int fd = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (fd < 0)
        return false;
    const auto length = socklen_t(offsetof(sockaddr_un, sun_path) + 1 + size_t(name.size()));
    if (::bind(fd, reinterpret_cast<const sockaddr *>(&address), length) != 0) {
        const bool held = errno == EADDRINUSE;
        ::close(fd);
        return held;
    }
    g_socket = fd;
    return false;
}

void letGo()
{
    if (g_socket >= 0)
        ::close(g_socket);
    g_socket = -1;
}
#else
std::unique_ptr<QLocalServer> g_server;

bool takeKey()
{
    if (g_server)
        return false; // this process holds it
    auto server = std::make_unique<QLocalServer>();
    server->setSocketOptions(QLocalServer::AbstractNamespaceOption);
    if (!server->listen(key()))
        return server->serverError() == QAbstractSocket::AddressInUseError;
    g_server = std::move(server);
    return false;
}

void letGo()
{
    g_server.reset();
}
#endif

} // namespace

QString KeyFor(const QString &home)
{
    // One key per home folder, from the whole of its path: users whose paths
    // start alike do not lock each other out. A hash keeps the name short
    // enough for a socket whatever the path.
    const QString path = QFileInfo(home).absoluteFilePath();
    return u"vocabrix-instance-"_s
            + QString::fromLatin1(
                    QCryptographicHash::hash(path.toUtf8(), QCryptographicHash::Sha256).toHex());
}

bool PreviousInstanceRunning()
{
    return takeKey();
}

void Release()
{
    letGo();
}

void SetKey(const QString &k)
{
    Release();
    g_key = k;
}

} // namespace instanceguard
