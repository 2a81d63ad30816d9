#include "presentation/packagereferencetype.h"

#include "presentation/packagereference.h"
#include "repository/ipackageprovider.h"

#include <TamselDataCore/LinkedDocument>

namespace ts::pm {

int PackageReferenceType::typeId()
{
    return 1;
}

QByteArray PackageReferenceType::identifier(PackageReference *reference)
{
    return reference->id().toLatin1();
}

bool PackageReferenceType::canReference(ts::data::LinkedDocument *document, const QByteArray &id)
{
    Q_UNUSED(document)
    Q_UNUSED(id)
    return true;
}

void PackageReferenceType::attachReference(ts::data::LinkedDocument *document, const QByteArray &id)
{
    getReference(document, id);
}

void PackageReferenceType::createReference(ts::data::LinkedDocument *document, PackageReference *reference)
{
    Q_UNUSED(document)
    Q_UNUSED(reference)
}

void PackageReferenceType::deleteReference(ts::data::LinkedDocument *document, PackageReference *reference)
{
    Q_UNUSED(document)
    Q_UNUSED(reference)
}

// Documents without packages are nothing unusual, so a context that is no provider is not worth a message.
PackageReference *PackageReferenceType::getReference(const ts::data::LinkedDocument *document,
                                                     const QByteArray &id)
{
    auto *provider = qobject_cast<IPackageProvider *>(document->owningContext());
    return provider ? provider->packageReference(QString::fromLatin1(id)) : nullptr;
}

bool PackageReferenceType::isLegacyReference()
{
    return false;
}

} // namespace ts::pm
