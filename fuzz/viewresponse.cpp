// An answer of the view of packages: every row is a package, a keyword or a link, and whatever ids and names
// it has, the URLs of its files lie below that of its document.

#include "database/couchdbpackageaccessor.h"
#include "database/couchdburl_p.h"
#include "target.h"

#include <Tamsel/Locations>

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>

using namespace ts::pm;
using ts::fuzz::require;

namespace {

const QTemporaryDir &scratch()
{
    static const QTemporaryDir directory;
    return directory;
}

ListingFile listingOf(const QByteArray &bytes)
{
    QFile file(scratch().filePath(QStringLiteral("listing")));
    require(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size(),
            "the listing can be written");
    return {file.fileName(), std::nullopt};
}

// Half a pair of surrogates has no UTF-8 form, and so none in a URL.
bool isText(const QString &name)
{
    return QString::fromUtf8(name.toUtf8()) == name;
}

void checkUrl(const QUrl &document, const QString &name)
{
    const QUrl url = attachmentUrl(document, name);
    if (url.isEmpty())
        return;
    const QByteArray text = url.toEncoded();
    require(url.isValid() && !url.hasQuery() && !url.hasFragment(), "the URL is a path");
    require(text.startsWith(document.toEncoded()), "the attachment lies below its document");
    const QByteArray last = text.mid(document.toEncoded().size());
    for (const QByteArray &segment : last.split('/'))
        require(!segment.isEmpty() && segment != "." && segment != "..", "no segment leads elsewhere");
    require(!isText(name) || QUrl::fromPercentEncoding(last) == name, "the URL names the attachment");
}

void checkPackage(const CouchDBPackageAccessor &accessor, const QUrl &database, const QJsonObject &document,
                  int index)
{
    const QString id = document.value(QLatin1String("_id")).toString();
    require(accessor.packageInfo(index).id == id.mid(8), "the id is that of the document");
    require(accessor.packageManifest(index) == document.value(QLatin1String("manifest")).toObject(),
            "the manifest is that of the document");
    const QUrl url = documentUrl(database, id);
    const QStringList names = document.value(QLatin1String("_attachments")).toObject().keys();
    for (const QString &name : names) {
        checkUrl(url, name);
        require(accessor.packageFileUrl(index, name) == attachmentUrl(url, name), "files are attachments");
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const bool isFirst = ts::Locations::setDataLocation(QDir(scratch().path()));
    require(isFirst, "the data location can be set");
    const QUrl database(QStringLiteral("http://localhost:5984/db"));
    const QByteArray bytes = ts::fuzz::bytes(data, size);
    CouchDBPackageAccessor accessor(database, listingOf(bytes), nullptr);
    accessor.initialize();
    const QJsonArray rows = QJsonDocument::fromJson(bytes).object().value(QLatin1String("rows")).toArray();
    require(accessor.packageCount() + accessor.keywordCount() + accessor.linkCount() == rows.size(),
            "each row is one record");
    int package = 0;
    for (const QJsonValue &value : rows) {
        const QJsonObject row = value.toObject();
        if (row.value(QLatin1String("key")).toArray().at(0).toString() == QLatin1String("package"))
            checkPackage(accessor, database, row.value(QLatin1String("value")).toObject(), package++);
    }
    require(package == accessor.packageCount(), "each package has its row");
    for (int i = 0; i < accessor.keywordCount(); ++i)
        accessor.keywordInfo(i);
    for (int i = 0; i < accessor.linkCount(); ++i)
        accessor.linkInfo(i);
    return 0;
}
