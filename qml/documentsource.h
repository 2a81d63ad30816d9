#pragma once

#include "packagesourceelement.h"

#include <QString>
#include <QUrl>

namespace ts::data {
class Context;
}

namespace ts::pm {

/**
 * The documents of one type in a database as a source: declares a DocumentPackageSource, with a data context
 * of its own. There is no source as long as one of the properties is empty, as all are at first; a change of
 * one replaces it.
 *
 * Ownership: as PackageSourceElement. Owns the context.
 * Threads: repository thread only.
 * Errors: a database that is away contributes the documents that were there when they were last saved.
 */
class DocumentSource : public PackageSourceElement
{
    Q_OBJECT
    /** Where the data service is, without the name of the database, as in "https://example.org:6984". */
    Q_PROPERTY(QUrl serviceUrl READ serviceUrl WRITE setServiceUrl NOTIFY serviceUrlChanged)
    /** The name of the database there. */
    Q_PROPERTY(QString database READ database WRITE setDatabase NOTIFY databaseChanged)
    /** The type of the documents; that of the packages is "compat:" and this one. */
    Q_PROPERTY(QString documentType READ documentType WRITE setDocumentType NOTIFY documentTypeChanged)

public:
    explicit DocumentSource(QObject *parent = nullptr);
    ~DocumentSource() override;

    QUrl serviceUrl() const { return service; }
    void setServiceUrl(const QUrl &url);

    QString database() const { return databaseName; }
    void setDatabase(const QString &database);

    QString documentType() const { return type; }
    void setDocumentType(const QString &documentType);

Q_SIGNALS:
    void serviceUrlChanged();
    void databaseChanged();
    void documentTypeChanged();

protected:
    std::unique_ptr<PackageSource> createSource() override;

private:
    QUrl service;
    QString databaseName;
    QString type;
    ts::data::Context *context = nullptr; // a child, which outlives the source that is its child in turn
};

} // namespace ts::pm
