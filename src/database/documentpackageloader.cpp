#include "database/documentpackageloader.h"

#include "presentation/packagereference.h"
#include "repository/ipackageprovider.h"

#include <TamselDataCore/Context>
#include <TamselDataCore/LinkedDocument>

#include <QVariant>

namespace ts::pm {

namespace {

constexpr int loaderPriority = 1;
constexpr char takenProperty[] = "_ts_documentLoaded";

QJsonObject documentData(const PackageReference *reference)
{
    QJsonObject manifest = reference->manifest();
    fixManifest(manifest);
    return manifest;
}

void refresh(const ts::data::Context *context, const PackageReference *reference)
{
    if (reference->status() != PackageReference::Installed)
        return;
    if (ts::data::LinkedDocument *document = context->loadedDocument(reference->id()))
        document->setData(documentData(reference));
}

} // namespace

void fixManifest(QJsonObject &manifest)
{
    if (!manifest.contains(QLatin1String("type")))
        manifest.insert(QLatin1String("type"), manifest.value(QLatin1String("docType")).toString());
    manifest.insert(QLatin1String("wasCached"), true);
}

DocumentPackageLoader::DocumentPackageLoader(const QString &prefix, ts::data::Context *context)
    : Loader(loaderPriority, context)
    , prefix(prefix)
    , provider(qobject_cast<IPackageProvider *>(context))
{
}

DocumentPackageLoader::~DocumentPackageLoader() = default;

// The mark on the reference is all the memory that there is of what has been taken in hand. Sources and
// installers that are called while it is made may delete this loader.
bool DocumentPackageLoader::tryLoad(const QString &id)
{
    if (!provider || !id.startsWith(prefix))
        return false;
    const QPointer<DocumentPackageLoader> alive(this);
    PackageReference *reference = provider->packageReference(id);
    if (!reference || !alive)
        return false;
    if (reference->property(takenProperty).toBool())
        return true;
    ts::data::Context *const owner = context();
    connect(reference, &PackageReference::statusChanged, this, [this, reference] { deliver(reference); });
    connect(reference, &PackageReference::updated, owner, [owner, reference] { refresh(owner, reference); });
    reference->setProperty(takenProperty, true);
    deliver(reference);
    return true;
}

// Whoever hears of the data may delete this loader: nothing may follow the call.
void DocumentPackageLoader::deliver(PackageReference *reference)
{
    if (reference->status() < PackageReference::Installing)
        return;
    reference->disconnect(this);
    loaded(reference->id(), documentData(reference));
}

} // namespace ts::pm
