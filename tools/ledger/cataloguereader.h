#pragma once

#include "ledger/catalogue.h"
#include "ledger/directorylisting.h"
#include "ledger/problems.h"

#include <QSet>

#include <optional>

namespace ts::ledger {

/**
 * Reads a catalogue in the local directory format, as strictly as its publisher needs it.
 *
 * An application that reads such a directory makes the best of what it finds. Here, whatever an application
 * would pass over, cut off or install only in part is an error that names the file.
 *
 * Threads: one; files are hashed on the global thread pool. A reader reads once.
 */
class CatalogueReader
{
public:
    enum class SubDirectories {
        Refuse, ///< files in sub-directories of a package are errors, since they do not install
        Skip,   ///< they are left out, with a warning
    };

    CatalogueReader(const QString &root, SubDirectories subDirectories, Problems &problems);

    /** The whole directory. Only good if \a problems has no errors. */
    Catalogue read();

private:
    bool readPart(const DirectoryEntry &part);
    void readPackages(const QString &directory, const QString &type);
    void readTypeLevel(const DirectoryEntry &entry, const QString &type);
    void readPackage(const DirectoryEntry &entry, const QString &type);
    void addFile(CataloguePackage &package, const DirectoryEntry &entry);
    void readJsonFiles(const QString &directory, void (CatalogueReader::*read)(const DirectoryEntry &));
    QVector<DirectoryEntry> jsonFiles(const QString &directory);
    void readKeyword(const DirectoryEntry &entry);
    void readLink(const DirectoryEntry &entry);
    std::optional<QJsonObject> readObject(const QString &path);
    void digestFiles();
    void sort();

    const QString root; // canonical; empty if there is no such directory
    const SubDirectories subDirectories;
    Problems &problems;
    const DirectoryListing listing;
    Catalogue catalogue;
    QSet<QString> presentPath; // canonical paths of the directories on the way down
    int levels = 0;            // directories examined so far
};

} // namespace ts::ledger
