#include "packageprovider.h"

#include "packagesourceelement.h"

#include <TamselPackageManager/PackageIndex>

#include <QQmlEngine>
#include <QQmlInfo>

namespace ts::pm {

namespace {

PackageProvider *providerOf(QQmlListProperty<PackageSourceElement> *list)
{
    return static_cast<PackageProvider *>(list->object);
}

} // namespace

PackageProvider::PackageProvider(QObject *parent)
    : QObject(parent)
    , repository(std::make_unique<PackageRepository>(PackageRepository::PersistAfterUpdate))
{
    connect(repository.get(), &PackageRepository::packageIndexChanged, this,
            &PackageProvider::handleIndexChange);
    connect(repository.get(), &PackageRepository::translationsChanged, this,
            &PackageProvider::handleTranslationsChange);
}

// Elements may live longer than the provider, or be its children, which go after this.
PackageProvider::~PackageProvider()
{
    releaseElements();
}

QQmlListProperty<PackageSourceElement> PackageProvider::sources()
{
    return QQmlListProperty<PackageSourceElement>(this, nullptr, &PackageProvider::appendSource,
                                                  &PackageProvider::sourceCount, &PackageProvider::sourceAt,
                                                  &PackageProvider::clearSources);
}

// References belong to the repository, never to the engine.
PackageReference *PackageProvider::packageReference(const QString &id)
{
    PackageReference *reference = repository->packageReference(id);
    if (reference)
        QQmlEngine::setObjectOwnership(reference, QQmlEngine::CppOwnership);
    return reference;
}

void PackageProvider::update()
{
    const QList<PackageSourceElement *> present = elements; // a listener may change the list
    for (PackageSourceElement *element : present) {
        if (elements.contains(element))
            element->checkAvailability();
    }
    repository->scheduleUpdate();
}

void PackageProvider::refresh()
{
    repository->scheduleSourceUpdate();
}

void PackageProvider::appendSource(QQmlListProperty<PackageSourceElement> *list,
                                   PackageSourceElement *element)
{
    if (element)
        providerOf(list)->addElement(element);
}

int PackageProvider::sourceCount(QQmlListProperty<PackageSourceElement> *list)
{
    return providerOf(list)->elements.size();
}

PackageSourceElement *PackageProvider::sourceAt(QQmlListProperty<PackageSourceElement> *list, int position)
{
    return providerOf(list)->elements.value(position);
}

void PackageProvider::clearSources(QQmlListProperty<PackageSourceElement> *list)
{
    PackageProvider *provider = providerOf(list);
    if (provider->elements.isEmpty())
        return;
    provider->releaseElements();
    Q_EMIT provider->sourcesChanged();
}

void PackageProvider::addElement(PackageSourceElement *element)
{
    if (element->repository()) {
        qmlWarning(element) << "This source is in use already";
        return;
    }
    elements.append(element);
    connect(element, &QObject::destroyed, this, [this, element] { removeElement(element); });
    element->setRepository(repository.get());
    Q_EMIT sourcesChanged();
}

// Only compares the pointer: the element is being destroyed and has taken its source out by itself.
void PackageProvider::removeElement(PackageSourceElement *element)
{
    if (elements.removeOne(element))
        Q_EMIT sourcesChanged();
}

void PackageProvider::releaseElements()
{
    const QList<PackageSourceElement *> released = elements;
    elements.clear();
    for (PackageSourceElement *element : released) {
        element->disconnect(this);
        element->setRepository(nullptr);
    }
}

void PackageProvider::handleIndexChange()
{
    packages = repository->packageIndex()->packageCount();
    if (!ready) {
        ready = true;
        Q_EMIT readyChanged();
    }
    Q_EMIT packageIndexChanged();
}

void PackageProvider::handleTranslationsChange()
{
    Q_EMIT translationsChanged();
    if (QQmlEngine *engine = qmlEngine(this))
        engine->retranslate();
}

} // namespace ts::pm
