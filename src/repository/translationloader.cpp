#include "repository/packagerepository.h"
#include "repository/packagerepository_p.h"

#include "index/packageindex.h"
#include "index/packagenode.h"
#include "presentation/packagereference.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QJsonObject>
#include <QLocale>
#include <QReadWriteLock>
#include <QTranslator>

#include <algorithm>
#include <memory>

namespace ts::pm {

namespace {

void loadTexts(QTranslator *translator, const QString &path)
{
    Q_UNUSED(translator->load(path, QString(), QString(), QString())) // a bad file leaves it empty
}

// Keeps its place among the translators of the application when it gets another file.
//
// Workers translate manifests at any time, under a lock of Qt's that loading does not take. So a file is
// loaded aside and swapped in under a lock of its own. The texts before it are destroyed outside that lock: a
// translator takes Qt's when it goes. The file is loaded here too, where no worker looks: for whoever asks
// for filePath() or language(), and because that tells the application of the new language.
class PackageTranslator final : public QTranslator
{
public:
    explicit PackageTranslator(PackageReference *reference)
        : QTranslator(reference)
    {
        QCoreApplication::installTranslator(this);
    }
    ~PackageTranslator() override
    {
        if (QCoreApplication::instance())
            QCoreApplication::removeTranslator(this); // workers may still ask it until then
    }

    void replaceTexts(const QString &path)
    {
        auto replaced = std::make_unique<QTranslator>();
        loadTexts(replaced.get(), path);
        {
            const QWriteLocker locker(&lock);
            texts.swap(replaced);
        }
        loadTexts(this, path);
    }

    QString translate(const char *context, const char *sourceText, const char *disambiguation,
                      int n) const override
    {
        const QReadLocker locker(&lock);
        return texts->translate(context, sourceText, disambiguation, n);
    }

    bool isEmpty() const override
    {
        const QReadLocker locker(&lock);
        return texts->isEmpty();
    }

private:
    mutable QReadWriteLock lock;
    std::unique_ptr<QTranslator> texts = std::make_unique<QTranslator>();
};

QTranslator *translatorOf(PackageReference *reference)
{
    auto *translator = reference->findChild<QTranslator *>(QString(), Qt::FindDirectChildrenOnly);
    return translator ? translator : new PackageTranslator(reference);
}

// A translator that somebody else has given to the reference is theirs to install.
void loadFile(QTranslator *translator, const QString &path)
{
    if (auto *own = dynamic_cast<PackageTranslator *>(translator))
        own->replaceTexts(path);
    else
        loadTexts(translator, path);
}

// The first language that the package has decides, even where it names no file, or one that is missing.
QString translationFileName(const QJsonObject &manifest)
{
    const QString locale = QLocale().name();
    const QStringList languages{locale, locale.left(2), QStringLiteral("en")};
    const auto known = std::find_if(languages.begin(), languages.end(),
                                    [&](const QString &language) { return manifest.contains(language); });
    return known == languages.end() ? QString() : manifest.value(*known).toString();
}

// Empty if there is nothing to load.
QString translationFile(const PackageReference &reference)
{
    const QString name = translationFileName(reference.manifest());
    const QString path = name.isEmpty() ? QString() : reference.fileUrl(name).toLocalFile();
    return QFileInfo(path).isFile() ? path : QString();
}

} // namespace

void PackageRepository::loadTranslations()
{
    if (!d->index)
        return;
    const PackageList packages =
        PackageIndex::selectPackages(d->index, QStringLiteral("translation"), {}, {});
    const QPointer<PackageRepository> repository(this); // listeners may destroy it
    for (const PackageNode *package : packages) {
        if (repository)
            d->trackTranslation(package->id().toString());
    }
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
    const QString path = translationFile(*reference);
    if (!path.isEmpty())
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
    // Listeners may ask for new references, and destroy any, or the repository.
    const QPointer<PackageRepository> repository(this);
    const auto references = d->references;
    for (const QPointer<PackageReference> &reference : references) {
        if (reference)
            Q_EMIT reference->translationsChanged();
    }
    if (repository)
        Q_EMIT translationsChanged();
}

} // namespace ts::pm
