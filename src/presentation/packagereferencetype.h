#pragma once

#include "tamselpackagemanager_export.h"

#include <QByteArray>

namespace ts::data {
class LinkedDocument;
}

namespace ts::pm {

class PackageReference;

/**
 * How documents of the data layer link to packages: the operations that ts::data::ReferenceType lists.
 *
 * The application makes it known once, before it opens documents:
 * ts::data::registerReferenceType<PackageReferenceType>(). The QML module does so when it is loaded.
 *
 * A link is resolved through the IPackageProvider that the owningContext() of its document implements. A
 * document in another context has links to packages that lead nowhere. An identifier is the package's id in
 * Latin-1, so packages with other characters in their ids cannot be linked to.
 *
 * Ownership: references belong to the repository and stay for as long as it does, whatever documents do.
 * Threads: repository thread only.
 * Errors: none; what cannot be resolved is null.
 */
class TAMSELPACKAGEMANAGER_EXPORT PackageReferenceType
{
public:
    /** 1 */
    static int typeId();
    static QByteArray identifier(PackageReference *reference);
    /** True for every document and id. */
    static bool canReference(ts::data::LinkedDocument *document, const QByteArray &id);
    /** Makes the reference, so that the package gets installed and the repository keeps it. */
    static void attachReference(ts::data::LinkedDocument *document, const QByteArray &id);
    /** Does nothing. */
    static void createReference(ts::data::LinkedDocument *document, PackageReference *reference);
    /** Does nothing. */
    static void deleteReference(ts::data::LinkedDocument *document, PackageReference *reference);
    /** The reference to the package \a id, which starts to be installed; null without a provider. */
    static PackageReference *getReference(const ts::data::LinkedDocument *document, const QByteArray &id);
    /** False. */
    static bool isLegacyReference();
};

} // namespace ts::pm
