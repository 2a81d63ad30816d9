#pragma once

#include "packagesourceelement.h"

#include <QString>

namespace ts::pm {

/**
 * A directory of packages as a source: declares a LocalPackageSource.
 *
 * Ownership: as PackageSourceElement.
 * Threads: repository thread only.
 * Signals: pathChanged() before existsChanged().
 * Errors: a directory that is not there contributes no packages, and shows as exists being false.
 */
class LocalSource : public PackageSourceElement
{
    Q_OBJECT
    /**
     * The directory that holds "packages", "dictionary" and "links", as a path or a "file:" URL. Empty at
     * first, which makes no source. Setting it to another path replaces the source.
     */
    Q_PROPERTY(QString path READ path WRITE setPath NOTIFY pathChanged)
    /** Whether the directory is there. Looked up when the path is set and in PackageProvider::update(). */
    Q_PROPERTY(bool exists READ exists NOTIFY existsChanged)

public:
    explicit LocalSource(QObject *parent = nullptr);

    QString path() const { return directoryPath; }
    void setPath(const QString &path);

    bool exists() const { return directoryExists; }

    void checkAvailability() override;

Q_SIGNALS:
    void pathChanged();
    void existsChanged();

protected:
    std::unique_ptr<PackageSource> createSource() override;

private:
    QString directoryPath;
    bool directoryExists = false;
};

} // namespace ts::pm
