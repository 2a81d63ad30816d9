#include "storage/filestore.h"
#include "storage/filestore_p.h"

#include "storage/filestoretarget.h"

#include <Tamsel/Locations>

#include <QFile>

#include <algorithm>
#include <array>
#include <string_view>

#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

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

// Hexadecimal digits to their lower case, everything else to 0. A table, since the digits of an id are random
// and branches on them mispredicted.
constexpr std::array<uchar, 256> lowerHexDigits = [] {
    std::array<uchar, 256> table{};
    for (const char digit : std::string_view("0123456789abcdef"))
        table[uchar(digit)] = uchar(digit);
    for (const char digit : std::string_view("ABCDEF"))
        table[uchar(digit)] = uchar(digit | 0x20);
    return table;
}();

uchar lowerHexDigit(QChar character)
{
    const ushort unit = character.unicode();
    return unit < lowerHexDigits.size() ? lowerHexDigits[unit] : 0;
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

// One look at the disk, with nothing around it: an install asks for each of its files.
bool exists(const QString &path)
{
#ifdef Q_OS_UNIX
    return access(QFile::encodeName(path).constData(), F_OK) == 0;
#else
    return QFile::exists(path);
#endif
}

} // namespace

QDir _storeDir()
{
    return QDir(Locations::dataLocation().absoluteFilePath(QStringLiteral("packages")));
}

FileStorePrivate::FileStorePrivate(FileStore *q, const QDir &storeDir)
    : q(q)
    , storeDir(storeDir)
    , filesPath(storeDir.absoluteFilePath(QStringLiteral("files")) + QLatin1Char('/'))
{
}

// Makes all directories up front, so that no later write has to. Returns the one that cannot be made, if any.
QString FileStorePrivate::makeDirectories() const
{
    const QDir files(filesPath);
    const QString path = files.absolutePath();
    if (!files.exists() && !files.mkpath(path))
        return path;
    for (int i = 0; i < shardCount; ++i) {
        const QString name = shardName(i);
        if (!ensureShard(files, name))
            return path + QLatin1Char('/') + name;
    }
    return QString();
}

// A store that cannot be written shows at once: the application does not go on without one.
void FileStorePrivate::initStore()
{
    const QString missing = makeDirectories();
    if (!missing.isEmpty())
        qFatal("Failed to access writable location %s", qPrintable(missing));
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
    return hasValidSize(id) && std::all_of(id.begin(), id.end(), lowerHexDigit);
}

// In one pass over the id, since every file of an install comes by here twice.
QString FileStore::pathForId(const QString &id) const
{
    if (!hasValidSize(id))
        return QString();
    const QString &directory = d->filesPath;
    QString path(directory.size() + id.size() + 1, Qt::Uninitialized);
    QChar *to = std::copy(directory.begin(), directory.end(), path.begin());
    bool isValid = true;
    const auto append = [&to, &isValid](QChar character) {
        const uchar digit = lowerHexDigit(character);
        isValid &= digit != 0;
        *to++ = QLatin1Char(char(digit));
    };
    std::for_each(id.begin(), id.begin() + charactersOfShard, append);
    *to++ = QLatin1Char('/');
    std::for_each(id.begin() + charactersOfShard, id.end(), append);
    return isValid ? path : QString();
}

bool FileStore::contains(const QString &id) const
{
    const QString path = pathForId(id);
    return !path.isEmpty() && exists(path);
}

FileStoreTarget *FileStore::getTarget(const QString &id, QCryptographicHash::Algorithm algorithm)
{
    if (!isValidId(id))
        return nullptr;
    // Somebody may have emptied the data location of a running application. What cannot be made again shows
    // when the file is committed.
    if (!exists(d->filesPath))
        Q_UNUSED(d->makeDirectories())
    auto *target = new FileStoreTarget(this, id, algorithm);
    if (!target->open(QIODevice::WriteOnly)) {
        target->deleteLater();
        return nullptr;
    }
    return target;
}

} // namespace ts::pm
