#include "database/documentpackageupdate.h"

#include "database/documentpackagesource.h"
#include "database/rowdata_p.h"
#include "pooljobs_p.h"
#include "storage/randomname_p.h"

#include <Tamsel/GetRequest>
#include <TamselNetwork/NetworkAccessManager>

#include <QFile>
#include <QFutureWatcher>
#include <QJsonDocument>
#include <QNetworkReply>
#include <QNetworkRequest>

namespace ts::pm {

namespace {

constexpr int httpOk = 200;

} // namespace

struct DocumentPackageUpdate::Result
{
    Error error;
    QString errorString;
    QString dataFile;
    QByteArray hash;
};

DocumentPackageUpdate::DocumentPackageUpdate(const QUrl &url, DocumentPackageSource *source)
    : QObject(source)
    , manager(ts::network::NetworkAccessManager::sharedInstance())
{
    QNetworkRequest request(url);
    request.setRawHeader(QByteArrayLiteral("Connection"), QByteArrayLiteral("close"));
    auto *fetch = new ts::GetRequest(request, manager.data(), this);
    fetch->setMaximumBodySize(largestViewResponse);
    fetch->setSuppressErrors(true);
    connect(fetch, &ts::Request::finished, this, [this, fetch] { finishFetch(*fetch); });
}

DocumentPackageUpdate::~DocumentPackageUpdate() = default;

void DocumentPackageUpdate::finishFetch(const ts::Request &request)
{
    if (request.isOk(httpOk)) {
        processResponse(request.rawResponse());
        return;
    }
    // An answer without an error, such as a 204, has a text in the reply alone.
    const bool hasOwnText = request.error() != QNetworkReply::NoError || !request.reply();
    const QString text = hasOwnText ? request.errorString() : request.reply()->errorString();
    const QString code = QString::number(request.error());
    finish({FetchError, QStringLiteral("Fetch of document data failed %1: %2").arg(code, text), QString(),
            QByteArray()});
}

void DocumentPackageUpdate::processResponse(const QByteArray &response)
{
    auto *watcher = new QFutureWatcher<Result>(this);
    connect(watcher, &QFutureWatcher<Result>::finished, this, [this, watcher] {
        const Result result = watcher->result();
        watcher->deleteLater();
        finish(result);
    });
    runOnPool(watcher, [response, directory = directory] { return normalise(response, directory); });
}

DocumentPackageUpdate::Result DocumentPackageUpdate::normalise(const QByteArray &response,
                                                               const ts::util::WorkingDir &directory)
{
    QJsonParseError parseError;
    const QByteArray bytes = normalisedRows(response, &parseError);
    if (parseError.error != QJsonParseError::NoError)
        return {ParseError, parseError.errorString(), QString(), QByteArray()};
    const QString path = directory.filePath(randomName());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.flush())
        return {FileError, file.errorString(), QString(), QByteArray()};
    return {NoError, QString(), path, hexMd5(bytes)};
}

void DocumentPackageUpdate::finish(const Result &result)
{
    updateError = result.error;
    updateErrorString = result.errorString;
    dataFilePath = result.dataFile;
    dataHash = result.hash;
    Q_EMIT finished();
}

} // namespace ts::pm
