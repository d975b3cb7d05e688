#include "app/instanceguard.h"

#include <QDir>
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
    // One key per user: another user's copy does not count.
    return u"vocabrix-instance-"_s
            + QString::fromLatin1(QDir::homePath().toUtf8().toHex().left(40));
}

} // namespace

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
