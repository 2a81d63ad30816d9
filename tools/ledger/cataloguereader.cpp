#include "ledger/cataloguereader.h"

#include "ledger/cataloguecheck.h"
#include "ledger/filecopy.h"
#include "ledger/keywordfile.h"
#include "ledger/latin1.h"
#include "ledger/progress.h"

#include <TamselCrypto/JsonSignature>

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QtConcurrentMap>

#include <algorithm>
#include <tuple>

namespace ts::ledger {

namespace {

constexpr int largestJsonFile = 1048576;      // bytes; applications read no more of a file
constexpr int largestNumberOfLevels = 100000; // as many as applications examine

constexpr QLatin1String manifestName = latin1("manifest.json");
constexpr QLatin1String jsonSuffix = latin1(".json");

// In a URL that is made of an id and the name of a file, these would not mean themselves.
bool isSafeInUrls(const QString &name)
{
    return std::none_of(name.begin(), name.end(), [](QChar c) { return QLatin1String(":%?#").contains(c); });
}

// Clients take ":x" for a path to somewhere else, and "c:x" for one to another drive.
bool isInstallable(const QString &name)
{
    const int colon = name.indexOf(QLatin1Char(':'));
    const QChar first = name.at(0);
    return colon != 0 && (colon != 1 || !first.isLetter() || first.unicode() >= 0x80);
}

struct Hashing
{
    CatalogueFile *file;
    QString error;

    void run(Progress &progress)
    {
        file->digest =
            FileCopy::digest(file->path, QCryptographicHash::Sha224, &error, [this, &progress](qint64 bytes) {
                file->size += bytes;
                progress.advance(bytes);
            });
    }
};

} // namespace

CatalogueReader::CatalogueReader(const QString &root, SubDirectories subDirectories, Problems &problems)
    : root(QFileInfo(root).isDir() ? QFileInfo(root).canonicalFilePath() : QString())
    , subDirectories(subDirectories)
    , problems(problems)
    , listing(this->root, problems)
{
    if (this->root.isEmpty())
        problems.addError(root, QStringLiteral("no such directory"));
}

Catalogue CatalogueReader::read()
{
    if (root.isEmpty())
        return {};
    bool isCatalogue = false;
    const QVector<DirectoryEntry> entries = listing.entries(root);
    for (const DirectoryEntry &entry : entries)
        isCatalogue |= readPart(entry);
    if (!isCatalogue)
        problems.addError(root, QStringLiteral("holds no directory 'packages', 'dictionary' or 'links'"));
    digestFiles();
    sort();
    checkCatalogue(catalogue, problems);
    return catalogue;
}

// False for what is no part of a catalogue.
bool CatalogueReader::readPart(const DirectoryEntry &part)
{
    const bool isPackages = part.name == QLatin1String("packages");
    const bool isDictionary = part.name == QLatin1String("dictionary");
    if (!isPackages && !isDictionary && part.name != QLatin1String("links"))
        return false;
    if (part.kind != DirectoryEntry::Directory)
        problems.addError(listing.placeOf(part.path), QStringLiteral("is no directory"));
    else if (isPackages)
        readPackages(part.path, QString());
    else
        readJsonFiles(part.path, isDictionary ? &CatalogueReader::readKeyword : &CatalogueReader::readLink);
    return true;
}

void CatalogueReader::readPackages(const QString &directory, const QString &type)
{
    const QString canonicalPath = QFileInfo(directory).canonicalFilePath();
    if (presentPath.contains(canonicalPath))
        return problems.addError(listing.placeOf(directory),
                                 QStringLiteral("the link leads back up to a directory above it"));
    if (++levels > largestNumberOfLevels) {
        if (levels == largestNumberOfLevels + 1)
            problems.addError(listing.placeOf(directory),
                              QStringLiteral("one of more than %1 type levels").arg(largestNumberOfLevels));
        return;
    }
    presentPath.insert(canonicalPath);
    const QVector<DirectoryEntry> entries = listing.entries(directory);
    for (const DirectoryEntry &entry : entries) {
        if (entry.kind != DirectoryEntry::Directory)
            problems.addWarning(listing.placeOf(entry.path),
                                QStringLiteral("belongs to no package, passed over"));
        else if (QFileInfo::exists(entry.path + QLatin1Char('/') + manifestName))
            readPackage(entry, type);
        else
            readTypeLevel(entry, type);
    }
    presentPath.remove(canonicalPath);
}

void CatalogueReader::readTypeLevel(const DirectoryEntry &entry, const QString &type)
{
    if (entry.name.contains(QLatin1Char(':')))
        problems.addError(listing.placeOf(entry.path), QStringLiteral("a ':' in the name of a type level"));
    else
        readPackages(entry.path, type.isEmpty() ? entry.name : type + QLatin1Char(':') + entry.name);
}

void CatalogueReader::readPackage(const DirectoryEntry &entry, const QString &type)
{
    CataloguePackage package;
    package.info.id = entry.name;
    package.info.type = type;
    package.origin = listing.placeOf(entry.path);
    const QVector<DirectoryEntry> files = listing.entries(entry.path);
    for (const DirectoryEntry &file : files)
        addFile(package, file);
    catalogue.packages.append(package);
}

void CatalogueReader::addFile(CataloguePackage &package, const DirectoryEntry &entry)
{
    const QString place = listing.placeOf(entry.path);
    if (entry.kind == DirectoryEntry::Other)
        return problems.addError(place, QStringLiteral("is no regular file"));
    if (entry.kind == DirectoryEntry::Directory) {
        if (subDirectories == SubDirectories::Skip)
            return problems.addWarning(place, QStringLiteral("sub-directory of a package, left out"));
        return problems.addError(place,
                                 QStringLiteral("sub-directory of a package; its files do not install"));
    }
    if (entry.name == manifestName) {
        package.manifest = readObject(entry.path).value_or(QJsonObject());
        return;
    }
    if (const qint64 size = QFileInfo(entry.path).size(); size > largestFile)
        return problems.addError(
            place, QStringLiteral("%1 bytes; at most %2 are possible in a file").arg(size).arg(largestFile));
    if (!isInstallable(entry.name))
        return problems.addError(place,
                                 QStringLiteral("no client installs a file whose name begins with ':', "
                                                "or with a letter and ':'"));
    if (!isSafeInUrls(package.info.id) || !isSafeInUrls(entry.name))
        problems.addWarning(place, QStringLiteral("one of ':%?#' in the id or in the name; the file can only "
                                                  "be shown once it is installed"));
    package.files.append({entry.name, entry.path, 0, QByteArray()});
}

void CatalogueReader::readJsonFiles(const QString &directory,
                                    void (CatalogueReader::*read)(const DirectoryEntry &))
{
    const QVector<DirectoryEntry> files = jsonFiles(directory);
    for (const DirectoryEntry &file : files)
        (this->*read)(file);
}

QVector<DirectoryEntry> CatalogueReader::jsonFiles(const QString &directory)
{
    QVector<DirectoryEntry> files = listing.entries(directory);
    const auto isUseless = [this](const DirectoryEntry &entry) {
        const QString place = listing.placeOf(entry.path);
        if (!entry.name.endsWith(jsonSuffix))
            problems.addWarning(place, QStringLiteral("no file '*.json', passed over"));
        else if (entry.kind != DirectoryEntry::File)
            problems.addError(place, QStringLiteral("is no regular file"));
        else if (entry.name.indexOf(QLatin1Char('.')) != entry.name.size() - jsonSuffix.size())
            problems.addError(place, QStringLiteral("a dot in the name before '.json'"));
        else
            return false;
        return true;
    };
    files.erase(std::remove_if(files.begin(), files.end(), isUseless), files.end());
    return files;
}

void CatalogueReader::readKeyword(const DirectoryEntry &entry)
{
    const std::optional<QJsonObject> object = readObject(entry.path);
    if (!object)
        return;
    const QString place = listing.placeOf(entry.path);
    catalogue.keywords.append(
        {KeywordFile(*object, place, problems).keyword(entry.name.chopped(jsonSuffix.size())), place});
}

void CatalogueReader::readLink(const DirectoryEntry &entry)
{
    const std::optional<QJsonObject> object = readObject(entry.path);
    if (!object)
        return;
    const QString place = listing.placeOf(entry.path);
    const QString type = object->value(QLatin1String("type")).toString();
    const pm::LinkInfo info{pm::Link::typeFromString(type), object->value(QLatin1String("from")).toString(),
                            object->value(QLatin1String("to")).toString()};
    if (info.type == pm::InvalidLink)
        problems.addError(place, QStringLiteral("there is no link type '%1'").arg(type));
    catalogue.links.append({info, place});
}

std::optional<QJsonObject> CatalogueReader::readObject(const QString &path)
{
    const QString place = listing.placeOf(path);
    QFile file(path);
    QJsonParseError error;
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly))
        problems.addError(place, QStringLiteral("cannot be read"));
    else if (file.size() > largestJsonFile)
        problems.addError(place, QStringLiteral("%1 bytes; at most %2 are possible in a JSON file")
                                     .arg(file.size())
                                     .arg(largestJsonFile));
    else if (const auto document = QJsonDocument::fromJson(file.readAll(), &error); error.error)
        problems.addError(
            place, QStringLiteral("no JSON, at byte %1: %2").arg(error.offset).arg(error.errorString()));
    else if (!document.isObject())
        problems.addError(place, QStringLiteral("no JSON object"));
    else if (crypto::JsonSignature::toByteArray(document.object()).isNull())
        problems.addError(place, QStringLiteral("no canonical form: half of a surrogate pair in a text, or a "
                                                "number that is too large"));
    else
        return document.object();
    return std::nullopt;
}

void CatalogueReader::digestFiles()
{
    QVector<Hashing> hashings;
    qint64 total = 0;
    for (CataloguePackage &package : catalogue.packages) {
        for (CatalogueFile &file : package.files) {
            hashings.append({&file, QString()});
            total += QFileInfo(file.path).size();
        }
    }
    Progress progress(QStringLiteral("Reading files"), total);
    QtConcurrent::blockingMap(hashings, [&progress](Hashing &hashing) { hashing.run(progress); });
    for (const Hashing &hashing : qAsConst(hashings)) {
        if (!hashing.error.isNull())
            problems.errors.append(hashing.error);
    }
}

void CatalogueReader::sort()
{
    std::sort(catalogue.packages.begin(), catalogue.packages.end(),
              [](const CataloguePackage &a, const CataloguePackage &b) {
                  return std::tie(a.info.type, a.info.id) < std::tie(b.info.type, b.info.id);
              });
    std::sort(catalogue.keywords.begin(), catalogue.keywords.end(),
              [](const CatalogueKeyword &a, const CatalogueKeyword &b) { return a.info.id < b.info.id; });
    std::sort(catalogue.links.begin(), catalogue.links.end(),
              [](const CatalogueLink &a, const CatalogueLink &b) {
                  return std::tie(a.info.from, a.info.to, a.info.type)
                         < std::tie(b.info.from, b.info.to, b.info.type);
              });
}

} // namespace ts::ledger
