#pragma once

#include "index/nodetable_p.h"
#include "index/packageindex.h"
#include "index/stringbuffer_p.h"

#include <QMap>
#include <QPair>
#include <QVector>

#include <atomic>
#include <memory>
#include <vector>

QT_BEGIN_NAMESPACE
class QThread;
QT_END_NAMESPACE

namespace ts::pm {

struct TranslatedManifest;

// Written by addSource() and the build, then immutable, any thread, apart from the two atomics.
class PackageIndexPrivate
{
public:
    explicit PackageIndexPrivate(PackageIndex *q);
    ~PackageIndexPrivate();

    /** Keeps \a manifest until the index goes. Any thread. */
    void retire(TranslatedManifest *manifest);

    PackageIndex *const q;
    StringBuffer stringBuffer;
    NodeTable nodes;
    QVector<PackageNode *> packages;
    QVector<KeywordNode *> keywords;
    QMap<QStringRef, QPair<int, int>> typeRanges; // first and last position in packages, both inclusive
    QStringRef activeLanguage;
    std::vector<std::unique_ptr<PackageAccessor>> accessors; // in source order
    InstallLocation installLocation;

    const quint64 serial; // tells this index from all others of the process, also from those long gone
    std::atomic<quint32> manifestGeneration{0};

private:
    Q_DISABLE_COPY(PackageIndexPrivate)

    std::atomic<TranslatedManifest *> retiredManifests{nullptr};
    QThread *const mainThread; // for the time when there is no application to ask for it; only compared
};

} // namespace ts::pm
