#include "repository/localpackageaccessor.h"

#include "repository/keywordstrings_p.h"
#include "storage/installlocation.h"
#include "storage/localpackageinstaller.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>

namespace ts::pm {

namespace {

constexpr int largestFile = 1048576;          // bytes read of one file
constexpr int largestManifestData = 1 << 30;  // bytes of all manifests; those beyond it read as empty
constexpr int largestNumberOfLevels = 100000; // links among directories can make a small tree look endless

// Opening anything else than a regular file could block, or never end.
bool openRegular(QFile &file)
{
    return QFileInfo(file).isFile() && file.open(QIODevice::ReadOnly);
}

// Of a package, below the root.
QString pathOf(const QString &id, QString type)
{
    return QStringLiteral("packages/%1/%2").arg(type.replace(QLatin1Char(':'), QLatin1Char('/')), id);
}

} // namespace

// The working directory may be another one when files are looked for.
LocalPackageAccessor::LocalPackageAccessor(const QString &root)
    : root(QDir(root).absolutePath())
{
}

LocalPackageAccessor::~LocalPackageAccessor() = default;

void LocalPackageAccessor::initialize()
{
    QSet<QString> presentPath;
    loadPackages(QDir(root.absoluteFilePath(QStringLiteral("packages"))), QString(), presentPath);
    listJsonFiles(QStringLiteral("dictionary"), keywordNames);
    listJsonFiles(QStringLiteral("links"), linkNames);
}

// A directory on the present path is not entered again: links may lead back up. Names are joined as text: one
// with a colon, behind nothing or behind the name of a search path, is to Qt a whole path to somewhere else.
void LocalPackageAccessor::loadPackages(const QDir &directory, const QString &type,
                                        QSet<QString> &presentPath)
{
    const QString canonicalPath = directory.canonicalPath();
    if (canonicalPath.isEmpty() || presentPath.contains(canonicalPath) || ++levels > largestNumberOfLevels)
        return;
    presentPath.insert(canonicalPath);
    const QStringList names = directory.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Unsorted);
    for (const QString &name : names) {
        const QString path = directory.absolutePath() + QLatin1Char('/') + name;
        if (!loadManifest(path + QLatin1String("/manifest.json"), name, type))
            loadPackages(QDir(path), type.isEmpty() ? name : type + QLatin1Char(':') + name, presentPath);
    }
    presentPath.remove(canonicalPath);
}

bool LocalPackageAccessor::loadManifest(const QString &path, const QString &id, const QString &type)
{
    QFile file(path);
    if (!openRegular(file))
        return false;
    const int position = manifestData.size();
    const int length = int(qMin<qint64>(file.size(), qMin(largestFile, largestManifestData - position)));
    manifestData.append(length, '\0');
    file.read(manifestData.data() + position, length); // what does not come stays 0, which is no JSON
    packages.append({id, type, position, length});
    return true;
}

// Base names are found as text too, for the same reason.
void LocalPackageAccessor::listJsonFiles(const QString &directory, QVector<QStringRef> &names)
{
    const QDir files(root.absoluteFilePath(directory));
    const QStringList entries =
        files.entryList(QStringList(QStringLiteral("*.json")), QDir::Files, QDir::Unsorted);
    names.reserve(entries.size());
    for (const QString &entry : entries) {
        const QString name = entry.section(QLatin1Char('.'), 0, 0);
        names.append(QStringRef(&nameBuffer, nameBuffer.size(), name.size()));
        nameBuffer += name;
    }
}

// An empty object for a file that cannot be read or is no JSON: its record then comes out in its default
// state.
QJsonObject LocalPackageAccessor::readObject(const QString &directory, const QStringRef &name) const
{
    QFile file(root.absoluteFilePath(QStringLiteral("%1/%2.json").arg(directory, name)));
    if (!openRegular(file))
        return QJsonObject();
    return QJsonDocument::fromJson(file.read(largestFile)).object();
}

int LocalPackageAccessor::packageCount() const
{
    return packages.size();
}

PackageInfo LocalPackageAccessor::packageInfo(int index) const
{
    const Package_ &package = packages.at(index);
    return {package.id, package.type, QString()};
}

QJsonObject LocalPackageAccessor::packageManifest(int index) const
{
    const Package_ &package = packages.at(index);
    const char *data = manifestData.constData() + package.manifestPosition;
    return QJsonDocument::fromJson(QByteArray::fromRawData(data, package.manifestLength)).object();
}

QUrl LocalPackageAccessor::packageFileUrl(int index, const QString &name) const
{
    const Package_ &package = packages.at(index);
    const QString path = pathOf(package.id, package.type) + QLatin1Char('/') + name;
    return QUrl::fromLocalFile(root.absoluteFilePath(path));
}

PackageInstaller *LocalPackageAccessor::packageInstaller(int index, const InstallLocation &location) const
{
    const Package_ &package = packages.at(index);
    const QDir directory(root.absoluteFilePath(pathOf(package.id, package.type)));
    return new LocalPackageInstaller(directory, location);
}

int LocalPackageAccessor::keywordCount() const
{
    return keywordNames.size();
}

KeywordInfo LocalPackageAccessor::keywordInfo(int index) const
{
    const QStringRef &name = keywordNames.at(index);
    const QJsonObject keyword = readObject(QStringLiteral("dictionary"), name);
    const Keyword::Type type = Keyword::typeFromString(keyword.value(QLatin1String("type")).toString());
    return {name.toString(), type, keywordStrings(keyword, type)};
}

QStringList LocalPackageAccessor::keywordLanguages() const
{
    return {QStringLiteral("de"), QStringLiteral("en")};
}

int LocalPackageAccessor::linkCount() const
{
    return linkNames.size();
}

LinkInfo LocalPackageAccessor::linkInfo(int index) const
{
    const QJsonObject link = readObject(QStringLiteral("links"), linkNames.at(index));
    return {Link::typeFromString(link.value(QLatin1String("type")).toString()),
            link.value(QLatin1String("from")).toString(), link.value(QLatin1String("to")).toString()};
}

} // namespace ts::pm
