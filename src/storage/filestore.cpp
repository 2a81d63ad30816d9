#include "storage/filestore.h"
#include "storage/filestore_p.h"

#include "storage/filestoretarget.h"

#include <Tamsel/Locations>

#include <QFile>
#include <QStringBuilder>

#include <algorithm>

namespace ts::pm {

namespace {

constexpr int shortestId = 8;
constexpr int longestId = 128;
constexpr int shardCount = 256;
constexpr int charactersOfShard = 2; // the first of an id

bool hasValidSize(const QString &id)
{
    return id.size() >= shortestId && id.size() <= longestId;
}

// A hexadecimal digit, in lower case; 0 for anything else.
ushort lowerHexDigit(ushort unit)
{
    if (unit >= '0' && unit <= '9')
        return unit;
    const ushort lower = unit | 0x20U;
    return lower >= 'a' && lower <= 'f' ? lower : 0;
}

QString shardName(int number)
{
    return QStringLiteral("%1").arg(number, 2, 16, QLatin1Char('0'));
}

// Another process may be making the same directories at this moment.
bool ensureShard(const QDir &files, const QString &name)
{
    return files.exists(name) || files.mkdir(name) || files.exists(name);
}

} // namespace

QDir _storeDir()
{
    return QDir(Locations::dataLocation().absoluteFilePath(QStringLiteral("packages")));
}

FileStorePrivate::FileStorePrivate(FileStore *q, const QDir &storeDir)
    : q(q)
    , storeDir(storeDir)
{
}

// Makes all directories up front, so that no later write has to, and a store that cannot be written shows at
// once: the application does not go on without one.
void FileStorePrivate::initStore()
{
    const QDir files(storeDir.absoluteFilePath(QStringLiteral("files")));
    const QString path = files.absolutePath();
    if (!files.exists() && !files.mkpath(path))
        qFatal("Failed to access writable location %s", qPrintable(path));
    for (int i = 0; i < shardCount; ++i) {
        const QString name = shardName(i);
        if (!ensureShard(files, name))
            qFatal("Failed to access writable location %s/%s", qPrintable(path), qPrintable(name));
    }
}

FileStore::FileStore()
    : d(new FileStorePrivate(this, _storeDir()))
{
    d->initStore();
}

FileStore::~FileStore() = default;

QSharedPointer<FileStore> FileStore::defaultStore()
{
    static QWeakPointer<FileStore> current;
    QSharedPointer<FileStore> store = current.toStrongRef();
    if (!store) {
        store.reset(new FileStore);
        current = store;
    }
    return store;
}

bool FileStore::isValidId(const QString &id) const
{
    return hasValidSize(id) && std::all_of(id.begin(), id.end(), [](QChar character) {
               return lowerHexDigit(character.unicode()) != 0;
           });
}

// In one pass over the id, since every file of an install comes by here twice.
QString FileStore::pathForId(const QString &id) const
{
    if (!hasValidSize(id))
        return QString();
    const QString directory = d->storeDir.absolutePath() % QLatin1String("/files/");
    QString path(directory.size() + id.size() + 1, Qt::Uninitialized);
    QChar *to = std::copy(directory.begin(), directory.end(), path.begin());
    for (int i = 0; i < id.size(); ++i) {
        if (i == charactersOfShard)
            *to++ = QLatin1Char('/');
        *to = lowerHexDigit(id.at(i).unicode());
        if ((to++)->isNull())
            return QString();
    }
    return path;
}

bool FileStore::contains(const QString &id) const
{
    const QString path = pathForId(id);
    return !path.isEmpty() && QFile::exists(path);
}

FileStoreTarget *FileStore::getTarget(const QString &id, QCryptographicHash::Algorithm algorithm)
{
    if (!isValidId(id))
        return nullptr;
    auto *target = new FileStoreTarget(this, id, algorithm);
    if (!target->open(QIODevice::WriteOnly)) {
        target->deleteLater();
        return nullptr;
    }
    return target;
}

} // namespace ts::pm
