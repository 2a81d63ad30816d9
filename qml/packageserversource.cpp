#include "packageserversource.h"

namespace ts::pm {

using account::Service;

PackageServerSource::PackageServerSource(QObject *parent)
    : PackageSourceElement(parent)
{
}

PackageServerSource::~PackageServerSource() = default;

void PackageServerSource::setUrl(const QUrl &url)
{
    if (serverUrl == url)
        return;
    serverUrl = url;
    replaceServer(&PackageServerSource::urlChanged);
}

void PackageServerSource::setUuid(const QString &uuid)
{
    if (serverUuid == uuid)
        return;
    serverUuid = uuid;
    replaceServer(&PackageServerSource::uuidChanged);
}

void PackageServerSource::setToken(const QString &token)
{
    setCredential(bearerToken, token);
}

void PackageServerSource::setUser(const QString &user)
{
    setCredential(userName, user);
}

void PackageServerSource::setPassword(const QString &password)
{
    setCredential(userPassword, password);
}

void PackageServerSource::setCredential(QString &credential, const QString &text)
{
    if (credential == text)
        return;
    credential = text;
    applyCredentials();
    Q_EMIT credentialsChanged();
}

void PackageServerSource::applyCredentials()
{
    if (!service)
        return;
    if (!bearerToken.isEmpty())
        service->setBearerToken(bearerToken);
    else if (!userName.isEmpty())
        service->setUserAndPassword(userName, userPassword);
    else
        service->clearCredentials();
}

void PackageServerSource::classBegin()
{
    complete = false;
}

void PackageServerSource::componentComplete()
{
    complete = true;
    replaceSource();
}

// A listener of the change may destroy the element.
void PackageServerSource::replaceServer(void (PackageServerSource::*changed)())
{
    const QPointer<PackageServerSource> self(this);
    Q_EMIT(this->*changed)();
    if (!self || !complete)
        return;
    if (repository())
        replaceSource();
    else
        forgetServer();
}

// Of an element that is not in use: what one server has answered says nothing of the next.
void PackageServerSource::forgetServer()
{
    service.reset();
    setStatus(NoServer);
}

// An element that is not in use makes no source.
std::unique_ptr<PackageSource> PackageServerSource::createSource()
{
    service.reset();
    if (!complete || serverUrl.isEmpty())
        return nullptr;
    service = std::make_unique<Service>(serverUrl, serverUuid);
    applyCredentials();
    auto server = std::make_unique<PackageServer>(service.get());
    connect(service.get(), &Service::statusChanged, this, &PackageServerSource::handleServiceStatus);
    connect(server.get(), &PackageServer::pollFinished, this, &PackageServerSource::handlePoll);
    return server;
}

void PackageServerSource::sourceReplaced()
{
    if (service)
        handleServiceStatus();
    else
        setStatus(NoServer);
}

void PackageServerSource::handleServiceStatus()
{
    setStatus(service->status() == Service::Failed ? Invalid : Connecting);
}

void PackageServerSource::handlePoll(PackageServer::PollResult result)
{
    switch (result) {
    case PackageServer::LedgerUnchanged:
    case PackageServer::LedgerUpdated:
        return setStatus(Ready);
    case PackageServer::LedgerRejected:
        return setStatus(Untrusted);
    case PackageServer::PollFailed:
        return setStatus(Unreachable);
    }
}

void PackageServerSource::setStatus(Status status)
{
    if (currentStatus == status)
        return;
    currentStatus = status;
    Q_EMIT statusChanged();
}

} // namespace ts::pm
