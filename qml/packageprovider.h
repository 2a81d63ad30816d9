#pragma once

#include <TamselPackageManager/IPackageProvider>
#include <TamselPackageManager/PackageReference>
#include <TamselPackageManager/PackageRepository>

#include <QList>
#include <QObject>
#include <QQmlListProperty>

#include <memory>

namespace ts::pm {

class PackageSourceElement;

/**
 * The package repository of a QML application: declares the sources, and is what "packageProvider" properties
 * take.
 *
 * Ownership: owns its repository, which persists its sources after each update, and thereby all references.
 * Does not own the elements in sources; those declared inside it are its children.
 * Threads: the thread of the QML engine.
 * Signals: packageIndexChanged() after each new index; readyChanged() before the first. translationsChanged()
 * after translation packages have changed the texts of the application; the texts of the engine's bindings
 * follow right after it.
 * Errors: an element that another provider has, or that is listed twice, is refused with a warning, and so is
 * an object that is no source.
 */
class PackageProvider : public QObject, public IPackageProvider
{
    Q_OBJECT
    Q_INTERFACES(ts::pm::IPackageProvider)
    Q_CLASSINFO("DefaultProperty", "sources")
    /** The elements whose packages the repository has. One that is destroyed is taken out. */
    Q_PROPERTY(QQmlListProperty<ts::pm::PackageSourceElement> sources READ sources NOTIFY sourcesChanged)
    /** Whether there is an index. Does not become false again. */
    Q_PROPERTY(bool ready READ isReady NOTIFY readyChanged)
    /** Number of packages in the index. */
    Q_PROPERTY(int packageCount READ packageCount NOTIFY packageIndexChanged)

public:
    explicit PackageProvider(QObject *parent = nullptr);
    ~PackageProvider() override;

    QQmlListProperty<PackageSourceElement> sources();
    bool isReady() const { return ready; }
    int packageCount() const { return packages; }

    PackageRepository *packageRepository() const override { return repository.get(); }

    /** The reference to the package \a id; null for an empty id. Starts to install the package. */
    Q_INVOKABLE ts::pm::PackageReference *packageReference(const QString &id) override;

    /** Builds a new index, after looking which places of sources are there. */
    Q_INVOKABLE void update();

    /** Asks the sources to look for news, at most once in 120 seconds. */
    Q_INVOKABLE void refresh();

Q_SIGNALS:
    void sourcesChanged();
    void readyChanged();
    void packageIndexChanged();
    void translationsChanged();

private:
    static void appendSource(QQmlListProperty<PackageSourceElement> *list, PackageSourceElement *element);
    static int sourceCount(QQmlListProperty<PackageSourceElement> *list);
    static PackageSourceElement *sourceAt(QQmlListProperty<PackageSourceElement> *list, int position);
    static void clearSources(QQmlListProperty<PackageSourceElement> *list);

    void addElement(PackageSourceElement *element);
    void removeElement(PackageSourceElement *element);
    void releaseElements();
    void handleIndexChange();
    void handleTranslationsChange();

    std::unique_ptr<PackageRepository> repository;
    QList<PackageSourceElement *> elements;
    bool ready = false;
    int packages = 0;
};

} // namespace ts::pm
