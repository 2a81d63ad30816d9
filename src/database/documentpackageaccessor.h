#pragma once

#include "database/listingfile_p.h"
#include "repository/packageaccessor.h"
#include "testexport_p.h"

#include <QVector>

namespace ts::pm {

/**
 * The documents of one type as packages, see DocumentPackageSource. The document is the manifest; there are
 * no files, keywords and links.
 *
 * Ownership and threads: as PackageAccessor.
 * Errors: numbers out of range give empty records, and no installer.
 */
class TAMSEL_TEST_EXPORT DocumentPackageAccessor : public PackageAccessor
{
public:
    DocumentPackageAccessor(const QString &type, const ListingFile &dataFile);
    ~DocumentPackageAccessor() override;

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
    const QString type;
    const ListingFile dataFile;
    QVector<QJsonObject> documents;
};

} // namespace ts::pm
