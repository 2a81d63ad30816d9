#pragma once

#include "index/packagesnapshot.h"
#include "storage/installlocation.h"
#include "tamselpackagemanager_export.h"

#include <QJsonObject>
#include <QObject>
#include <QScopedPointer>
#include <QUrl>

namespace ts::pm {

class PackageReferencePrivate;
class PackageRepository;

/**
 * The live handle on one package id. It follows the id through every new index, and installs the package as
 * soon as an index has it.
 *
 * When a newer index arrives, the reference goes on showing the package it has until the newer one is
 * installed, and only then swaps. A package that fails to install is tried again after 30 s, 60 s, 120 s and
 * so on. A package that is missing makes the repository ask its sources for news.
 *
 * Ownership: made by PackageRepository::packageReference() only, and a child of the repository.
 * Threads: repository thread only.
 * Signals: on a swap statusChanged() (if it changed), typeChanged() (if it changed), updated(), in this
 * order. A package that appears for the first time, or goes, shows by statusChanged() alone.
 * Errors: show as status; what went wrong is in the log of the installer.
 */
class TAMSELPACKAGEMANAGER_EXPORT PackageReference : public QObject
{
    Q_OBJECT
    /** That of the package. */
    Q_PROPERTY(QString id READ id CONSTANT)
    /** Null while the package is in no index. */
    Q_PROPERTY(QString type READ type NOTIFY typeChanged)
    /** How far the package is installed. */
    Q_PROPERTY(ts::pm::PackageReference::Status status READ status NOTIFY statusChanged)

public:
    enum Status {
        Unavailable = -3, ///< in no index; the sources have been asked for news
        Incomplete = -2,  ///< the install failed; it will be tried again
        Unknown = -1,     ///< never seen by a caller
        Installing = 0,   ///< the package can be read, its files are on their way
        Installed = 1,    ///< the package and all that it requires are installed
    };
    Q_ENUM(Status)

    ~PackageReference() override;

    QString id() const;
    QString type() const;
    Status status() const;

    /** The node shown, null while the package is in no index. Valid while packageIndex() is held. */
    PackageNode *node() const;

    /** The index of node(), null without one. */
    QSharedPointer<PackageIndex> packageIndex() const;

    /** Where the package is being installed; null without a node. */
    InstallLocation installLocation() const;

    /** The package as it is now, if it is Installed; otherwise an empty snapshot. */
    PackageSnapshot snapshot() const;

    /** The translated manifest; empty without a node. */
    Q_INVOKABLE QJsonObject manifest() const;

    /** One field of the manifest; undefined if there is none, or no node. */
    Q_INVOKABLE QJsonValue manifestField(const QString &field) const;

    /** Where the file is now, installed or at its source; an empty URL without a node. */
    Q_INVOKABLE QUrl fileUrl(const QString &fileName) const;

Q_SIGNALS:
    void typeChanged();
    void statusChanged();
    /** The reference shows another version of the package. */
    void updated();
    /** Texts of the manifest may have changed, since translations of the application did. */
    void translationsChanged();

private Q_SLOTS:
    void init();
    void update();
    void computeStatus();

private:
    friend class PackageReferencePrivate;
    friend class PackageRepository;
    PackageReference(const QString &id, PackageRepository *repository);
    void follow();

    QScopedPointer<PackageReferencePrivate> d;
};

} // namespace ts::pm
