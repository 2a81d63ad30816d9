#include "packageprovider.h"

#include "packagesourceelement.h"

#include <TamselPackageManager/PackageIndex>

#include <QPointer>
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
    const QPointer<PackageProvider> self(this); // a listener may destroy it, or change the list
    const QList<PackageSourceElement *> present = elements;
    for (PackageSourceElement *element : present) {
        if (elements.contains(element))
            element->checkAvailability();
        if (!self)
            return;
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
    QObject *object = element; // of any class: push() in QML does not look
    if (qobject_cast<PackageSourceElement *>(object))
        providerOf(list)->addElement(element);
    else if (object)
        qmlWarning(list->object) << object->metaObject()->className() << " is no source";
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
    const QPointer<PackageProvider> self(this); // a listener of the element may destroy it
    element->setRepository(repository.get());
    if (self)
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
    const QPointer<PackageProvider> self(this); // a listener may destroy it
    if (!ready) {
        ready = true;
        Q_EMIT readyChanged();
    }
    if (self)
        Q_EMIT packageIndexChanged();
}

void PackageProvider::handleTranslationsChange()
{
    const QPointer<QQmlEngine> engine(qmlEngine(this)); // a listener may destroy either
    Q_EMIT translationsChanged();
    if (engine)
        engine->retranslate();
}

} // namespace ts::pm
