#pragma once

#include "tamselpackagemanager_export.h"

#include <TamselDataCore/Loader>

#include <QString>

class QJsonObject;

namespace ts::pm {

class IPackageProvider;
class PackageReference;

/**
 * Lets a data context open packages as documents: a document whose id is that of a package gets the package's
 * manifest as its data, and gets it anew whenever a newer version of the package has been installed.
 *
 * In the data, "wasCached" is true, and "type" is that of the manifest or, if it has none, its "docType".
 *
 * Ownership: a child of its context, which has to implement IPackageProvider, and to do so for as long as the
 * loader lives.
 * Threads: repository thread only, which has to be that of the context.
 * Errors: none; a document whose package is in no index stays without data until one has it.
 *
 * A reference is taken in hand once in its life, by the first loader that is asked for it: a second context
 * with the same repository does not get the document.
 */
class TAMSELPACKAGEMANAGER_EXPORT DocumentPackageLoader : public ts::data::Loader
{
    Q_OBJECT

public:
    /** Takes care of documents whose ids begin with \a prefix, which is compared with case. */
    DocumentPackageLoader(const QString &prefix, ts::data::Context *context);
    ~DocumentPackageLoader() override;

    bool tryLoad(const QString &id) override;

private:
    void deliver(PackageReference *reference);

    const QString prefix;
    IPackageProvider *const provider; // the context; null without one
};

/** Makes \a manifest into the data of a document, as DocumentPackageLoader tells it. */
TAMSELPACKAGEMANAGER_EXPORT void fixManifest(QJsonObject &manifest);

} // namespace ts::pm
