#include "server/packageserveraccessor.h"

#include "logging_p.h"
#include "server/ledgerfile_p.h"
#include "server/ledgerformat_p.h"
#include "server/mainthread_p.h"
#include "server/packagefiles_p.h"
#include "server/packageledger.h"
#include "server/packageserverinstaller.h"
#include "server/proxypath_p.h"
#include "storage/fileproxyserver.h"
#include "storage/filestore.h"
#include "storage/filestoretarget.h"

#include <Tamsel/Request>
#include <TamselAccount/Service>

#include <QJsonDocument>

namespace ts::pm {

namespace {

constexpr int revisionBytes = 24; // of a signature
constexpr int httpOk = 200;
constexpr int notFound = 404;
constexpr int internalError = 500;
constexpr int badGateway = 502;
constexpr quint8 sourceIsPackage = 0x0f; // any of these bits
constexpr quint8 targetIsPackage = 0xf0;

QByteArray bytesOf(const Utf8String &text)
{
    return QByteArray::fromRawData(text.data, text.length);
}

QByteArray digestBytes(const unsigned char *digest)
{
    return QByteArray(reinterpret_cast<const char *>(digest), ledgerformat::DigestSize);
}

Keyword::Type keywordType(int number)
{
    return number >= Keyword::Noun && number <= Keyword::Category ? Keyword::Type(number) : Keyword::Invalid;
}

LinkType linkType(quint32 number)
{
    return number <= Requires ? LinkType(number) : InvalidLink;
}

// A noun has two forms, singular and plural, with a NUL between them.
LangString langString(const QString &language, const Utf8String &value)
{
    const QList<QByteArray> forms = bytesOf(value).split('\0');
    return {language, QString::fromUtf8(forms.at(0)),
            forms.size() > 1 ? QString::fromUtf8(forms.at(1)) : QString()};
}

template<typename Entry>
QString idAt(const QVector<Entry> &entries, quint32 index)
{
    return index < quint32(entries.size()) ? entries.at(int(index)).id.toString() : QString();
}

QString endOfLink(const PackageLedger &ledger, bool isPackage, quint32 index)
{
    return isPackage ? idAt(ledger.packages, index) : idAt(ledger.keywords, index);
}

} // namespace

PackageServerAccessor::PackageServerAccessor(ts::account::Service *service,
                                             const QSharedPointer<PackageLedger> &ledger)
    : ledger(ledger)
    , service(service)
    , store(FileStore::defaultStore())
{
}

// A download under way still answers those who wait for it; whoever asks from now on gets a 404.
PackageServerAccessor::~PackageServerAccessor()
{
    if (proxy)
        proxy->uninstall(proxyKey);
    delete proxyBase.load();
}

void PackageServerAccessor::initialize() {}

int PackageServerAccessor::packageCount() const
{
    return ledger->packages.size();
}

// The revision comes from the signature, so that a package that is signed anew gets a new one.
PackageInfo PackageServerAccessor::packageInfo(int index) const
{
    const PackageEntry &package = ledger->packages.at(index);
    const auto *signature = reinterpret_cast<const char *>(package.signature);
    const QByteArray revision = QByteArray::fromRawData(signature, revisionBytes).toBase64();
    return {package.id.toString(), ledger->types.at(package.typeIndex).toString(),
            QString::fromLatin1(revision)};
}

QJsonObject PackageServerAccessor::packageManifest(int index) const
{
    QJsonParseError error;
    const QByteArray manifest = bytesOf(ledger->packages.at(index).manifest);
    const QJsonDocument document = QJsonDocument::fromJson(manifest, &error);
    if (error.error != QJsonParseError::NoError)
        qCCritical(lcLedger) << "Package manifest parsing failed:" << error.errorString();
    return document.object();
}

QUrl PackageServerAccessor::packageFileUrl(int index, const QString &name) const
{
    const PackageEntry &package = ledger->packages.at(index);
    const unsigned char *digest = fileDigest(package, name);
    if (!digest)
        return QUrl();
    const QString id = QString::fromLatin1(digestBytes(digest).toHex());
    if (store->contains(id))
        return QUrl::fromLocalFile(store->pathForId(id));
    const QUrl *known = proxyBase.load(std::memory_order_acquire);
    const QUrl base = known ? *known : askMainThread([this] { return openProxy(); });
    return base.isEmpty() ? QUrl() : base.resolved(proxyPath(package.id.toString(), name));
}

// From the first call on, the server knows this object until it is destroyed.
QUrl PackageServerAccessor::openProxy() const
{
    if (!proxy) {
        proxy = FileProxyServer::defaultServer();
        proxyKey = proxy->install(const_cast<PackageServerAccessor *>(this));
        proxyBase.store(new QUrl(proxy->fileUrl(proxyKey, QUrl())), std::memory_order_release);
    }
    return *proxyBase.load();
}

PackageInstaller *PackageServerAccessor::packageInstaller(int index, const InstallLocation &location) const
{
    QHash<QString, QByteArray> files;
    const QVector<PackageFile> packaged = packageFiles(ledger->packages.at(index));
    files.reserve(packaged.size());
    for (const PackageFile &file : packaged)
        files.insert(file.path, digestBytes(file.digest));
    return new PackageServerInstaller(files, service, store, location);
}

int PackageServerAccessor::keywordCount() const
{
    return ledger->keywords.size();
}

KeywordInfo PackageServerAccessor::keywordInfo(int index) const
{
    const KeywordEntry &keyword = ledger->keywords.at(index);
    KeywordInfo info{keyword.id.toString(), keywordType(keyword.type), {}};
    for (auto group = keyword.names.begin(); group != keyword.names.end(); ++group) {
        const QString language = ledger->languages.at(group.key()).toString();
        for (const Utf8String &value : group.value())
            info.strings.append(langString(language, value));
    }
    return info;
}

QStringList PackageServerAccessor::keywordLanguages() const
{
    QStringList languages;
    languages.reserve(ledger->languages.size());
    for (const Utf8String &language : qAsConst(ledger->languages))
        languages.append(language.toString());
    return languages;
}

int PackageServerAccessor::linkCount() const
{
    return ledger->links.size();
}

LinkInfo PackageServerAccessor::linkInfo(int index) const
{
    const LinkEntry &link = ledger->links.at(index);
    return {linkType(link.type), endOfLink(*ledger, link.flags & sourceIsPackage, link.source),
            endOfLink(*ledger, link.flags & targetIsPackage, link.target)};
}

void PackageServerAccessor::requestFile(const QUrl &url)
{
    if (!service) {
        proxy->resolveFile(proxyKey, url, badGateway, QString());
        return;
    }
    const QByteArray id = requestedFileId(url);
    const QString storeId = QString::fromLatin1(id);
    if (id.isEmpty())
        proxy->resolveFile(proxyKey, url, notFound, QString());
    else if (store->contains(storeId))
        proxy->resolveFile(proxyKey, url, httpOk, store->pathForId(storeId));
    else
        loadFile(id, url);
}

QByteArray PackageServerAccessor::requestedFileId(const QUrl &url) const
{
    const QStringList parts = url.path(QUrl::FullyDecoded).split(QLatin1Char('/'));
    if (parts.size() < 2)
        return QByteArray();
    const QByteArray plain = fileId(parts.at(0).toLatin1(), QStringList(parts.mid(1)).join(QLatin1Char('/')));
    const QStringList escaped = unescapedProxyPath(parts);
    return plain.isEmpty() && !escaped.isEmpty() ? fileId(escaped.at(0).toUtf8(), escaped.at(1)) : plain;
}

// Empty if there is no such file.
QByteArray PackageServerAccessor::fileId(const QByteArray &packageId, const QString &name) const
{
    const PackageEntry *package = ledger->findPackage(packageId);
    const unsigned char *digest = package ? fileDigest(*package, name) : nullptr;
    return digest ? digestBytes(digest).toHex() : QByteArray();
}

// What answers holds shares of its own: this object may be gone by then.
void PackageServerAccessor::loadFile(const QByteArray &id, const QUrl &url)
{
    const QString storeId = QString::fromLatin1(id);
    FileStoreTarget *target = store->getTarget(storeId, QCryptographicHash::Sha224);
    ts::Request *request = service->getRequest(ledgerFileUrl(storeId));
    target->setParent(request);
    request->setDataSink(target);
    const auto answer = [request, target, proxy = proxy, store = store, key = proxyKey, storeId, url] {
        if (!request->isOk(httpOk))
            proxy->resolveFile(key, url, request->responseCode(), QString());
        else if (target->commit() != 0)
            proxy->resolveFile(key, url, internalError, QString());
        else
            proxy->resolveFile(key, url, httpOk, store->pathForId(storeId));
    };
    QObject::connect(request, &ts::Request::finished, request, answer);
}

} // namespace ts::pm
