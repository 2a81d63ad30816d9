#pragma once

#include "tamselpackagemanager_export.h"

#include <QObject>
#include <QString>

namespace ts::pm {

class PackageReference;
class PackageRepository;

/**
 * Through this interface objects of the user interface find their repository: an application implements it in
 * the object that it assigns to "packageProvider" properties, and names it in Q_INTERFACES.
 *
 * Ownership: not owned by the objects that it is assigned to.
 * Threads: repository thread only.
 */
class TAMSELPACKAGEMANAGER_EXPORT IPackageProvider
{
public:
    virtual ~IPackageProvider();

    /** The repository, not owned by the caller. May be null. */
    virtual PackageRepository *packageRepository() const = 0;

    /** As PackageRepository::packageReference(). */
    virtual PackageReference *packageReference(const QString &id) = 0;
};

} // namespace ts::pm

Q_DECLARE_INTERFACE(ts::pm::IPackageProvider, "tamsel.IPackageProvider/1.0")
