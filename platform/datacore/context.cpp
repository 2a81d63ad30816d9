#include "context.h"

#include "linkeddocument.h"
#include "loader.h"

#include <QHash>
#include <QPointer>
#include <QVector>

#include <algorithm>

namespace ts::data {

class ContextPrivate
{
public:
    void findLoader(const QString &id);
    void findLoaders();
    void scheduleSearch();

    Context *const q;
    const QUrl serviceUrl;
    const QString database;
    QVector<Loader *> loaders;                  // in descending priority; children of q
    QHash<QString, LinkedDocument *> documents; // all that are open; children of q
    QHash<QString, Loader *> undelivered;       // who takes care of a document without data; null if nobody
};

// A loader may deliver, make or delete loaders, and delete the context, while it is asked.
void ContextPrivate::findLoader(const QString &id)
{
    const QPointer<Context> alive = q;
    const QVector<Loader *> asked = loaders;
    for (Loader *loader : asked) {
        const bool isTaken = loaders.contains(loader) && loader->tryLoad(id);
        if (!alive)
            return;
        if (!isTaken)
            continue;
        if (undelivered.contains(id) && loaders.contains(loader))
            undelivered.insert(id, loader);
        return;
    }
}

void ContextPrivate::findLoaders()
{
    const QPointer<Context> alive = q;
    const QStringList ids = undelivered.keys(nullptr);
    for (const QString &id : ids) {
        if (alive)
            findLoader(id);
    }
}

// Not at once: a loader cannot be asked from the constructor of its base class.
void ContextPrivate::scheduleSearch()
{
    if (!undelivered.isEmpty())
        QMetaObject::invokeMethod(
            q, [this] { findLoaders(); }, Qt::QueuedConnection);
}

Context::Context(const QUrl &serviceUrl, const QString &database, QObject *parent)
    : QObject(parent)
    , d(new ContextPrivate{this, serviceUrl, database, {}, {}, {}})
{
}

Context::~Context() = default;

QUrl Context::serviceUrl() const
{
    return d->serviceUrl;
}

QString Context::database() const
{
    return d->database;
}

LinkedDocument *Context::openDocument(const QString &id)
{
    if (id.isEmpty())
        return nullptr;
    if (LinkedDocument *open = d->documents.value(id))
        return open;
    QPointer<LinkedDocument> document = new LinkedDocument(id, this);
    connect(document, &QObject::destroyed, this, [this, id] {
        d->documents.remove(id);
        d->undelivered.remove(id);
    });
    d->documents.insert(id, document);
    d->undelivered.insert(id, nullptr);
    d->findLoader(id);
    return document;
}

LinkedDocument *Context::loadedDocument(const QString &id) const
{
    LinkedDocument *document = d->documents.value(id);
    return document && document->isLoaded() ? document : nullptr;
}

void Context::addLoader(Loader *loader)
{
    const auto place =
        std::upper_bound(d->loaders.begin(), d->loaders.end(), loader,
                         [](const Loader *a, const Loader *b) { return a->priority() > b->priority(); });
    d->loaders.insert(place, loader);
    d->scheduleSearch();
}

void Context::removeLoader(Loader *loader)
{
    d->loaders.removeOne(loader);
    for (Loader *&caretaker : d->undelivered) {
        if (caretaker == loader)
            caretaker = nullptr;
    }
    d->scheduleSearch();
}

void Context::deliver(const QString &id, const QJsonObject &data)
{
    LinkedDocument *document = d->documents.value(id);
    if (!document)
        return;
    d->undelivered.remove(id);
    document->setData(data);
}

} // namespace ts::data
