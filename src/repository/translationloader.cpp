#include "repository/packagerepository.h"
#include "repository/packagerepository_p.h"

#include "index/packageindex.h"
#include "index/packagenode.h"
#include "presentation/packagereference.h"

#include <QCoreApplication>
#include <QFile>
#include <QJsonObject>
#include <QLocale>
#include <QTranslator>

#include <algorithm>

namespace ts::pm {

namespace {

QTranslator *translatorOf(PackageReference *reference)
{
    auto *translator = reference->findChild<QTranslator *>(QString(), Qt::FindDirectChildrenOnly);
    if (!translator) {
        translator = new QTranslator(reference);
        QCoreApplication::installTranslator(translator);
    }
    return translator;
}

// The first language that the package has decides, even where its file turns out to be missing.
QString translationFileName(const QJsonObject &manifest)
{
    const QString locale = QLocale().name();
    const QStringList languages{locale, locale.left(2), QStringLiteral("en")};
    const auto known = std::find_if(languages.begin(), languages.end(),
                                    [&](const QString &language) { return manifest.contains(language); });
    return known == languages.end() ? QString() : manifest.value(*known).toString();
}

// Workers translate manifests at any time, under a lock that loading does not take; so the translator is out
// of use while it loads.
void loadFile(QTranslator *translator, const QString &path)
{
    QCoreApplication::removeTranslator(translator);
    Q_UNUSED(translator->load(path, QString(), QString(), QString())) // a bad file leaves it empty
    QCoreApplication::installTranslator(translator);
}

} // namespace

void PackageRepository::loadTranslations()
{
    if (!d->index)
        return;
    const PackageList packages =
        PackageIndex::selectPackages(d->index, QStringLiteral("translation"), {}, {});
    for (const PackageNode *package : packages)
        d->trackTranslation(package->id().toString());
}

void PackageRepositoryPrivate::trackTranslation(const QString &id)
{
    if (translationReferences.contains(id))
        return;
    PackageReference *reference = q->packageReference(id);
    if (!reference)
        return;
    translationReferences.insert(id, reference);
    const auto load = [this, reference] { loadTranslation(reference); };
    QObject::connect(reference, &PackageReference::statusChanged, reference, load);
    QObject::connect(reference, &PackageReference::updated, reference, load);
    load();
}

void PackageRepositoryPrivate::loadTranslation(PackageReference *reference)
{
    if (reference->status() != PackageReference::Installed)
        return;
    QTranslator *translator = translatorOf(reference);
    const QString fileName = translationFileName(reference->manifest());
    const QString path = fileName.isNull() ? QString() : reference->fileUrl(fileName).toLocalFile();
    if (QFile::exists(path))
        loadFile(translator, path);
    if (translationNotifyPending)
        return;
    translationNotifyPending = true;
    QMetaObject::invokeMethod(
        q, [this] { notifyPendingTranslations(); }, Qt::AutoConnection);
}

void PackageRepositoryPrivate::notifyPendingTranslations()
{
    translationNotifyPending = false;
    q->notifyTranslationUpdate();
}

void PackageRepository::notifyTranslationUpdate()
{
    if (!d->index)
        return;
    d->index->invalidateManifests();
    const QHash<QString, PackageReference *> references = d->references; // listeners may ask for new ones
    for (PackageReference *reference : references)
        Q_EMIT reference->translationsChanged();
    Q_EMIT translationsChanged();
}

} // namespace ts::pm
