#include "packagedetails.h"

#include "manifestfacts.h"

#include <TamselPackageManager/InstallLocation>
#include <TamselPackageManager/KeywordNode>
#include <TamselPackageManager/PackageNode>

#include <QDir>
#include <QJsonArray>
#include <QJsonObject>
#include <QSet>

#include <algorithm>

namespace browser {

using ts::pm::KeywordNode;
using ts::pm::PackageNode;
using ts::pm::PackageReference;

namespace {

bool comesBefore(const KeywordNode *a, const KeywordNode *b)
{
    if (a->isCategory() != b->isCategory())
        return a->isCategory();
    return a->displayString().localeAwareCompare(b->displayString()) < 0;
}

// A keyword need not have a name in the language of the application. Packages can be chosen by a category all
// the same, but not be searched by another keyword.
QString nameOf(const KeywordNode &keyword)
{
    const QStringRef name = keyword.displayString();
    return (name.isEmpty() && keyword.isCategory() ? keyword.id() : name).toString();
}

QVariantList keywordsOf(const PackageNode &package)
{
    const QSet<KeywordNode *> carried = package.keywords();
    QVector<const KeywordNode *> ordered(carried.cbegin(), carried.cend());
    std::sort(ordered.begin(), ordered.end(), comesBefore);
    QVariantList keywords;
    for (const KeywordNode *keyword : qAsConst(ordered)) {
        if (nameOf(*keyword).isEmpty())
            continue;
        keywords.append(QVariantMap{{QStringLiteral("id"), keyword->id().toString()},
                                    {QStringLiteral("name"), nameOf(*keyword)},
                                    {QStringLiteral("category"), keyword->isCategory()}});
    }
    return keywords;
}

QStringList requiredBy(const PackageNode &package)
{
    QStringList ids;
    for (const ts::pm::PackageIndexLink &link : package.outgoingLinks()) {
        if (link.type == ts::pm::Requires && link.node->isPackage())
            ids.append(link.node->id().toString());
    }
    ids.removeDuplicates();
    return ids;
}

QVariantMap fileEntry(const QString &name, qint64 size, const QUrl &url)
{
    return {{QStringLiteral("name"), name}, {QStringLiteral("size"), size}, {QStringLiteral("url"), url}};
}

QVariantList installedFiles(const PackageReference &reference)
{
    QVariantList files;
    const QDir directory = reference.installLocation().directory(false);
    const QFileInfoList entries = directory.entryInfoList(QDir::Files, QDir::Name);
    for (const QFileInfo &entry : entries)
        files.append(fileEntry(entry.fileName(), entry.size(), QUrl::fromLocalFile(entry.filePath())));
    return files;
}

QVariantList announcedFiles(const PackageReference &reference)
{
    QVariantList files;
    const QJsonArray names = reference.manifestField(QStringLiteral("files")).toArray();
    for (const QJsonValue &name : names)
        files.append(fileEntry(name.toString(), -1, QUrl()));
    return files;
}

QUrl pictureOf(const PackageReference &reference)
{
    const QString name = reference.manifestField(QStringLiteral("picture")).toString();
    return name.isEmpty() ? QUrl() : reference.fileUrl(name);
}

} // namespace

PackageDetails::PackageDetails(QObject *parent)
    : QObject(parent)
{
}

void PackageDetails::setPackageReference(PackageReference *packageReference)
{
    if (reference == packageReference)
        return;
    if (reference)
        reference->disconnect(this);
    reference = packageReference;
    if (reference) {
        connect(reference, &PackageReference::statusChanged, this, &PackageDetails::refresh);
        connect(reference, &PackageReference::translationsChanged, this, &PackageDetails::refresh);
        connect(reference, &PackageReference::updated, this, &PackageDetails::handleUpdate);
    }
    Q_EMIT packageReferenceChanged();
    handleUpdate();
}

// Another version may have another picture under the same name, which is only read if the views let go of the
// one before.
void PackageDetails::handleUpdate()
{
    if (!pictureUrl.isEmpty()) {
        pictureUrl.clear();
        Q_EMIT detailsChanged();
    }
    refresh();
}

void PackageDetails::refresh()
{
    const PackageNode *package = reference ? reference->node() : nullptr;
    packageType = package ? package->type().toString() : QString();
    keywordList = package ? keywordsOf(*package) : QVariantList();
    requiredIds = package ? requiredBy(*package) : QStringList();
    factList = package ? manifestFacts(package->manifest()) : QVariantList();
    fileList.clear();
    if (package) {
        fileList = reference->status() == PackageReference::Installed ? installedFiles(*reference)
                                                                      : announcedFiles(*reference);
    }
    if (package && pictureUrl.isEmpty())
        pictureUrl = pictureOf(*reference);
    Q_EMIT detailsChanged();
}

} // namespace browser
