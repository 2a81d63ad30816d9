#include "repository/providercast_p.h"

#include "logging_p.h"
#include "repository/ipackageprovider.h"

namespace ts::pm {

IPackageProvider *packageProviderCast(QObject *object)
{
    auto *provider = qobject_cast<IPackageProvider *>(object);
    if (object && !provider)
        qCCritical(lcPm) << "Object" << object << "does not implement the IPackageProvider interface";
    return provider;
}

} // namespace ts::pm
