#pragma once

#include "repository/packageaccessor.h"

#include <QByteArray>
#include <QDir>
#include <QSet>
#include <QStringRef>
#include <QVector>

namespace ts::pm {

/**
 * Reads the local directory format, see LocalPackageSource.
 *
 * initialize() lists the tree and reads all manifests; keyword and link files are read one by one when the
 * index build asks for them. No more is read than 1 MiB of any file, 1 GiB of all manifests together, and
 * 100,000 directories that are no packages.
 *
 * Ownership and threads: as PackageAccessor.
 * Errors: none; a directory or file that cannot be read is missing, a manifest that is no JSON object is
 * empty.
 */
class TAMSELPACKAGEMANAGER_EXPORT LocalPackageAccessor : public PackageAccessor
{
public:
    explicit LocalPackageAccessor(const QString &root);
    ~LocalPackageAccessor() override;

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
    struct Package_
    {
        QString id;
        QString type;
        int manifestPosition; // in manifestData, in bytes
        int manifestLength;   // in bytes
    };

    void loadPackages(const QDir &directory, const QString &type, QSet<QString> &presentPath);
    bool loadManifest(const QString &path, const QString &id, const QString &type);
    void listJsonFiles(const QString &directory, QVector<QStringRef> &names);
    QJsonObject readObject(const QString &directory, const QStringRef &name) const;

    QDir root;
    QByteArray manifestData;
    QString nameBuffer; // the references in keywordNames and linkNames name this very object
    QVector<Package_> packages;
    QVector<QStringRef> keywordNames;
    QVector<QStringRef> linkNames;
    int levels = 0; // directories examined so far
};

} // namespace ts::pm
