#pragma once

#include "database/listingfile_p.h"
#include "repository/packageaccessor.h"
#include "testexport_p.h"

#include <QNetworkAccessManager>
#include <QPointer>
#include <QSharedPointer>
#include <QVector>

namespace ts::pm {

class FileStore;

/**
 * The packages, keywords and links of one answer of the view, see CouchDBPackageSource.
 *
 * initialize() reads the data file as a whole.
 *
 * Ownership and threads: as PackageAccessor. The access manager is not owned, and may go away at any time.
 * Errors: of a listing that is longer than 4 MiB nothing is read. Without an access manager the installers
 * fail.
 */
class TAMSEL_TEST_EXPORT CouchDBPackageAccessor : public PackageAccessor
{
public:
    CouchDBPackageAccessor(const QUrl &database, const ListingFile &dataFile, QNetworkAccessManager *manager);
    ~CouchDBPackageAccessor() override;

    void initialize() override;
    int packageCount() const override;
    PackageInfo packageInfo(int index) const override;
    QJsonObject packageManifest(int index) const override;
    QUrl packageFileUrl(int index, const QString &name) const override;
    PackageInstaller *packageInstaller(int index, const InstallLocation &location) const override;
    int keywordCount() const override;
    KeywordInfo keywordInfo(int index) const override;
    QStringList keywordLanguages() const override;
    int linkCount() const override;
    LinkInfo linkInfo(int index) const override;

private:
    QVector<int> &rowsOfKind(const QString &kind);
    const QJsonObject &package(int index) const { return documents.at(packages.at(index)); }

    const QUrl database;
    const ListingFile dataFile;
    QVector<QJsonObject> documents; // of all rows, in their order
    QVector<int> packages;          // these three name documents
    QVector<int> keywords;
    QVector<int> links;
    const QPointer<QNetworkAccessManager> manager;
    const QSharedPointer<FileStore> store;
};

} // namespace ts::pm
