#pragma once

#include <QQmlExtensionPlugin>

/**
 * Makes the types of the library, and the declarative sources and provider, known to the QML engine under
 * Tamsel.PackageManager 1.0.
 *
 * Ownership: made and kept by the QML engine.
 * Threads: as the QML engine calls it.
 */
class TamselPackageManagerPlugin : public QQmlExtensionPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QQmlExtensionInterface_iid)

public:
    void registerTypes(const char *uri) override;

    /** Lets the engine fetch files that are not local yet, unless the application has a way of its own. */
    void initializeEngine(QQmlEngine *engine, const char *uri) override;
};
