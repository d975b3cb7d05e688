// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/instanceguard.h"

#include "core/programstate.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <QLocalServer>

#include <memory>

using namespace Qt::Literals::StringLiterals;

namespace instanceguard {

namespace {

std::unique_ptr<QLocalServer> g_server;
QString g_key;

QString key()
{
    if (!g_key.isEmpty())
        return g_key;
    return KeyFor(g_BaseDirectory.isEmpty() ? QDir::homePath() : g_BaseDirectory);
}

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
    if (g_server)
        return false; // this process holds it
    auto server = std::make_unique<QLocalServer>();
    server->setSocketOptions(QLocalServer::AbstractNamespaceOption);
    if (!server->listen(key()))
        return server->serverError() == QAbstractSocket::AddressInUseError;
    g_server = std::move(server);
    return false;
}

void Release()
{
    g_server.reset();
}

void SetKey(const QString &k)
{
    Release();
    g_key = k;
}

} // namespace instanceguard
