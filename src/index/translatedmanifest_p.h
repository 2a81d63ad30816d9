#pragma once

#include <QJsonObject>

namespace ts::pm {

/**
 * A manifest with its translatable strings in the application's language, as a package node caches it.
 *
 * Ownership: the node's. One that has been replaced is kept until its index goes, for readers that still look
 * at it.
 * Threads: immutable, any thread, once published.
 */
struct TranslatedManifest
{
    TranslatedManifest(const QJsonObject &manifest, quint32 generation);

    const QJsonObject manifest;
    /** The generation of translations that it was made in. */
    const quint32 generation;
    TranslatedManifest *nextRetired = nullptr;
};

} // namespace ts::pm
