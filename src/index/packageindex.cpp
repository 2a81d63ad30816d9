#include "index/packageindex.h"
#include "index/packageindex_p.h"

#include "index/keywordnode.h"
#include "index/manifestorder_p.h"
#include "index/packageindexbuilder_p.h"
#include "index/packagenode.h"
#include "index/translatedmanifest_p.h"
#include "pooljobs_p.h"
#include "repository/packageaccessor.h"
#include "repository/packagesource.h"

#include <QCoreApplication>
#include <QThread>

#include <algorithm>
#include <atomic>
#include <utility>

namespace ts::pm {

namespace {

quint64 nextSerial()
{
    static std::atomic<quint64> last{0};
    return ++last;
}

using Accessors = std::vector<std::unique_ptr<PackageAccessor>>;

void destroyFromLastToFirst(Accessors &accessors)
{
    while (!accessors.empty())
        accessors.pop_back();
}

QThread *threadOfApplication(QThread *withoutOne)
{
    const QCoreApplication *application = QCoreApplication::instance();
    return application ? application->thread() : withoutOne;
}

struct LeftAlone
{
    Accessors accessors;
    LeftAlone *next;
};

// Held in memory without ever being destroyed.
void leaveAlone(Accessors &accessors)
{
    static std::atomic<LeftAlone *> all{nullptr};
    auto *const left = new LeftAlone{std::move(accessors), all.load()};
    while (!all.compare_exchange_weak(left->next, left)) {
    }
}

// Sources make accessors on their own thread, where they may have to sign off from other objects. The last
// share of an index may go on a worker thread. An application that goes waits for its workers, and its thread
// runs nothing for them any more. To sign off on a worker could crash, so that nobody does then.
void destroyOnMainThread(Accessors &accessors, QThread *mainThread)
{
    if (QThread::currentThread() == threadOfApplication(mainThread)) {
        destroyFromLastToFirst(accessors);
        return;
    }
    QCoreApplication *application = QCoreApplication::instance();
    if (!application) {
        leaveAlone(accessors);
        return;
    }
    const auto shared = std::make_shared<Accessors>(std::move(accessors));
    QMetaObject::invokeMethod(
        application, [shared] { destroyFromLastToFirst(*shared); }, Qt::QueuedConnection);
}

void destroyNodes(const QVector<PackageIndexNode *> &nodes, TranslatedManifest *retiredManifests)
{
    qDeleteAll(nodes);
    while (TranslatedManifest *manifest = retiredManifests) {
        retiredManifests = manifest->nextRetired;
        delete manifest;
    }
}

// To free those of a large catalogue takes several frames of a user interface, so that its thread leaves that
// to a worker.
void destroyNodesOnWorker(const QVector<PackageIndexNode *> &nodes, TranslatedManifest *retiredManifests,
                          QThread *mainThread)
{
    if (QThread::currentThread() == threadOfApplication(mainThread) && jobPool())
        runOnPool(QRunnable::create([=] { destroyNodes(nodes, retiredManifests); }));
    else
        destroyNodes(nodes, retiredManifests);
}

void sortPackages(QVector<const PackageNode *> &packages, const PackageIndex::PackageOrder &less)
{
    if (const auto *order = less.target<ManifestOrder>())
        order->sort(packages);
    else
        std::stable_sort(packages.begin(), packages.end(), less);
}

} // namespace

PackageIndexPrivate::PackageIndexPrivate(PackageIndex *q)
    : q(q)
    , serial(nextSerial())
    , mainThread(threadOfApplication(QThread::currentThread()))
{
}

// Nodes first, which look at nothing else when they go, then the lock of the install root, then the accessors
// from last to first.
PackageIndexPrivate::~PackageIndexPrivate()
{
    destroyNodesOnWorker(nodes.take(), retiredManifests, mainThread);
    installLocation = InstallLocation();
    destroyOnMainThread(accessors, mainThread);
}

void PackageIndexPrivate::retire(TranslatedManifest *manifest)
{
    manifest->nextRetired = retiredManifests.load(std::memory_order_relaxed);
    while (!retiredManifests.compare_exchange_weak(manifest->nextRetired, manifest, std::memory_order_release,
                                                   std::memory_order_relaxed)) {
    }
}

PackageIndex::PackageIndex()
    : d(new PackageIndexPrivate(this))
{
}

PackageIndex::~PackageIndex() = default;

void PackageIndex::addSource(PackageSource *source)
{
    if (PackageAccessor *accessor = source ? source->getAccessor() : nullptr)
        d->accessors.emplace_back(accessor);
}

void PackageIndex::build()
{
    PackageIndexBuilder(*d).build();
}

QStringRef PackageIndex::addString(const QString &string)
{
    return d->stringBuffer.addString(string);
}

QStringRef PackageIndex::activeLanguage() const
{
    return d->activeLanguage;
}

PackageAccessor *PackageIndex::accessor(int position) const
{
    return d->accessors[size_t(position)].get();
}

int PackageIndex::packageCount() const
{
    return d->packages.size();
}

KeywordNode *PackageIndex::getKeyword(const QStringRef &id) const
{
    PackageIndexNode *node = d->nodes.value(id);
    return node ? node->toKeyword() : nullptr;
}

PackageNode *PackageIndex::getPackage(const QStringRef &id) const
{
    PackageIndexNode *node = d->nodes.value(id);
    return node ? node->toPackage() : nullptr;
}

KeywordList PackageIndex::selectKeywords(QSharedPointer<PackageIndex> index, const KeywordFilter &filter)
{
    if (!index)
        return KeywordList();
    QVector<const KeywordNode *> selected;
    for (KeywordNode *keyword : qAsConst(index->d->keywords)) {
        if (!filter || filter(keyword))
            selected.append(keyword);
    }
    return KeywordList(std::move(index), selected);
}

PackageList PackageIndex::selectPackages(QSharedPointer<PackageIndex> index, const QString &type,
                                         const PackageFilter &filter, const PackageOrder &less)
{
    if (!index)
        return PackageList();
    const QVector<PackageNode *> &packages = index->d->packages;
    QPair<int, int> range(0, packages.size() - 1);
    if (!type.isEmpty()) {
        const auto known = index->d->typeRanges.constFind(QStringRef(&type));
        if (known == index->d->typeRanges.constEnd())
            return PackageList();
        range = *known;
    }
    QVector<const PackageNode *> selected;
    if (!filter)
        selected.reserve(range.second - range.first + 1);
    for (int position = range.first; position <= range.second; ++position) {
        if (!filter || filter(packages.at(position)))
            selected.append(packages.at(position));
    }
    if (less)
        sortPackages(selected, less);
    return PackageList(std::move(index), selected);
}

InstallLocation PackageIndex::installLocation() const
{
    return d->installLocation;
}

// Whoever reads a manifest of an older generation reads and translates it anew.
void PackageIndex::invalidateManifests()
{
    d->manifestGeneration.fetch_add(1, std::memory_order_acq_rel);
}

} // namespace ts::pm
