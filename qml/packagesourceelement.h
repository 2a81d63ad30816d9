#pragma once

#include <TamselPackageManager/PackageRepository>
#include <TamselPackageManager/PackageSource>

#include <QObject>
#include <QPointer>

#include <memory>

namespace ts::pm {

/**
 * Declares one package source in QML. Subclasses say which one; this class sees to it that the source is
 * known to the repository exactly while both exist.
 *
 * Ownership: owns its source. Owns neither the repository nor the PackageProvider whose "sources" it is in.
 * Threads: repository thread only.
 * Errors: an element that lacks what its source needs has no source, and contributes no packages.
 */
class PackageSourceElement : public QObject
{
    Q_OBJECT

public:
    ~PackageSourceElement() override;

    PackageRepository *repository() const { return attachedRepository.data(); }

    /** Takes the source out of its repository, and adds a new one to \a repository unless that is null. */
    void setRepository(PackageRepository *repository);

    /** Looks again whether the place that the packages come from is there. Does nothing by default. */
    virtual void checkAvailability();

protected:
    explicit PackageSourceElement(QObject *parent = nullptr);

    /** A new source for the present properties, or null if they do not make one. Emits no signals. */
    virtual std::unique_ptr<PackageSource> createSource() = 0;

    /** Tells what has come of createSource(). Its listeners may have the source replaced again. Does nothing
     * by default. */
    virtual void sourceReplaced();

    /** To be called when a property has changed that createSource() reads. */
    void replaceSource();

private:
    void addSource();
    void dropSource();

    QPointer<PackageRepository> attachedRepository;
    std::unique_ptr<PackageSource> source;
};

} // namespace ts::pm
