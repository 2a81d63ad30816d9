#include "database/documentpackagesource.h"
#include "database/documentpackagesource_p.h"

#include "database/documentpackageaccessor.h"
#include "database/documentpackageupdate.h"
#include "logging_p.h"

#include <TamselDataCore/Context>

#include <QJsonArray>
#include <QJsonDocument>
#include <QUrlQuery>

namespace ts::pm {

namespace {

constexpr int pollInterval = 300000; // milliseconds

QString persistencePath(QString type, const QUrl &database)
{
    const QByteArray hash = hexMd5(database.toString().toLatin1());
    type.replace(QLatin1Char(':'), QLatin1Char('.'));
    return QStringLiteral("packages/%1/%2").arg(type, QString::fromLatin1(hash));
}

// The query escapes what it would misread itself, except "%"; servers read a "+" as a blank.
void addItem(QUrlQuery &query, const char *key, QString value)
{
    value.replace(QLatin1Char('%'), QLatin1String("%25")).replace(QLatin1Char('+'), QLatin1String("%2B"));
    query.addQueryItem(QLatin1String(key), value);
}

QString toText(const QJsonArray &key)
{
    return QString::fromUtf8(QJsonDocument(key).toJson(QJsonDocument::Compact));
}

} // namespace

DocumentPackageSourcePrivate::DocumentPackageSourcePrivate(DocumentPackageSource *q, const QString &type)
    : q(q)
    , type(type)
    , database(q->baseUrl())
    , listing(lcDocPackageSource, persistencePath(type, database))
    , countdown(pollInterval)
{
}

// 0 collates before every string and array that may follow the type in a key, an array after all of them.
QUrl DocumentPackageSourcePrivate::viewUrl() const
{
    QUrlQuery query;
    addItem(query, "start_key", toText({type, 0}));
    addItem(query, "end_key", toText({type, QJsonArray()}));
    addItem(query, "include_docs", QStringLiteral("true"));
    QUrl url(database.toString() + QLatin1String("/_design/melvoro/_view/by_type"));
    url.setQuery(query);
    return url;
}

void DocumentPackageSourcePrivate::finishUpdate()
{
    if (lastUpdate->error() != DocumentPackageUpdate::NoError) {
        qCCritical(lcDocPackageSource) << "Document package update failed with code "
                                       << int(lastUpdate->error()) << ": " << lastUpdate->errorString();
        return;
    }
    if (lastUpdate->hash() == listing.hash) {
        qCDebug(lcDocPackageSource) << "Document package update finished,"
                                    << "no update required for type" << type;
        return;
    }
    listing.hash = lastUpdate->hash();
    listing.dataFile = {lastUpdate->dataFile(), lastUpdate->workingDir()};
    qCInfo(lcDocPackageSource) << "Updating document packages for type" << type << "new hash" << listing.hash;
    Q_EMIT q->updateRequired();
}

DocumentPackageSource::DocumentPackageSource(const QString &type, ts::data::Context *context)
    : PackageSource(context)
    , d(new DocumentPackageSourcePrivate(this, type))
{
    if (d->listing.load())
        qCInfo(lcDocPackageSource) << "Loaded persisted document list" << type << d->listing.hash;
    d->countdown.start(this);
}

DocumentPackageSource::~DocumentPackageSource() = default;

QString DocumentPackageSource::dataFile() const
{
    return d->listing.dataFile.path;
}

QUrl DocumentPackageSource::baseUrl() const
{
    const auto *context = qobject_cast<ts::data::Context *>(parent());
    if (!context)
        return QUrl();
    return QUrl(context->serviceUrl().toString() + QLatin1Char('/') + context->database());
}

int DocumentPackageSource::priority() const
{
    return -1;
}

PackageAccessor *DocumentPackageSource::getAccessor() const
{
    return new DocumentPackageAccessor(d->type, d->listing.dataFile);
}

void DocumentPackageSource::persist()
{
    d->listing.persist();
}

void DocumentPackageSource::update()
{
    if (d->lastUpdate) {
        d->lastUpdate->disconnect(this);
        d->lastUpdate->deleteLater();
    }
    d->lastUpdate = new DocumentPackageUpdate(d->viewUrl(), this);
    connect(d->lastUpdate, &DocumentPackageUpdate::finished, this, [this] { d->finishUpdate(); });
}

void DocumentPackageSource::timerEvent(QTimerEvent *)
{
    if (d->countdown.isDue())
        update();
}

} // namespace ts::pm
