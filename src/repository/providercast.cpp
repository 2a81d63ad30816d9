#include "repository/providercast_p.h"

#include "logging_p.h"
#include "repository/ipackageprovider.h"

namespace ts::pm {

IPackageProvider *packageProviderCast(QObject *object)
{
    if (!object)
        return nullptr;
    void *provider = object->qt_metacast("tamsel.IPackageProvider/1.0");
    if (!provider)
        qCCritical(lcPm) << "Object" << object << "does not implement the IPackageProvider interface";
    return static_cast<IPackageProvider *>(provider);
}

} // namespace ts::pm
