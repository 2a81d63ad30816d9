#include "ledger/keyfile.h"

#include "ledger/filecopy.h"
#include "server/rootkey_p.h"

#include <QFile>
#include <QTemporaryFile>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include <unistd.h>

namespace ts::ledger {

using crypto::ed25519::PrivateKey;
using crypto::ed25519::PublicKey;

namespace {

constexpr int largestKeyFile = 65536; // bytes

constexpr QFile::Permissions others = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup
                                      | QFile::ReadOther | QFile::WriteOther | QFile::ExeOther;
constexpr QFile::Permissions ownerOnly = QFile::ReadOwner | QFile::WriteOwner;
constexpr QFile::Permissions everybody = ownerOnly | QFile::ReadGroup | QFile::ReadOther;

QByteArray read(const QString &path, Problems &problems)
{
    QFile file(path);
    if (file.open(QIODevice::ReadOnly))
        return file.read(largestKeyFile);
    problems.addError(path, file.errorString());
    return QByteArray();
}

// A hard link, unlike a new name, takes no other file's place. The file systems of memory sticks have none;
// that they say so means that the place is free.
bool move(const QByteArray &from, const QByteArray &to)
{
    if (::link(from.constData(), to.constData()) == 0)
        return true;
    return (errno == EPERM || errno == EOPNOTSUPP) && ::rename(from.constData(), to.constData()) == 0;
}

// A temporary file can be read by its owner only.
QString write(const QString &path, const QByteArray &pem, QFile::Permissions permissions)
{
    QTemporaryFile file(path + QStringLiteral(".XXXXXX"));
    if (!file.open() || file.write(pem) != pem.size() || !file.flush() || fsync(file.handle()) != 0
        || !file.setPermissions(permissions))
        return QStringLiteral("%1: %2").arg(path, FileCopy::causeOf(file));
    if (move(QFile::encodeName(file.fileName()), QFile::encodeName(path)))
        return QString();
    if (errno == EEXIST)
        return QStringLiteral("%1: the file exists, and keys are never overwritten").arg(path);
    return QStringLiteral("%1: %2").arg(path, QString::fromLocal8Bit(std::strerror(errno)));
}

} // namespace

PrivateKey KeyFile::readPrivate(const QString &path, Problems &problems)
{
    const int errorsBefore = problems.errors.size();
    const PrivateKey key = PrivateKey::fromPEM(read(path, problems));
    if (key && (QFile::permissions(path) & others))
        problems.addWarning(path, QStringLiteral("others can read this private key; set its mode to 600"));
    if (!key && problems.errors.size() == errorsBefore)
        problems.addError(path, QStringLiteral("no private Ed25519 key in PEM"));
    return key;
}

PublicKey KeyFile::readPublic(const QString &path, Problems &problems)
{
    const int errorsBefore = problems.errors.size();
    const PublicKey key = PublicKey::fromPEM(read(path, problems));
    if (!key && problems.errors.size() == errorsBefore)
        problems.addError(path, QStringLiteral("no public Ed25519 key in PEM"));
    return key;
}

bool KeyFile::isPrivate(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) && file.read(largestKeyFile).contains("PRIVATE KEY-----");
}

QString KeyFile::writePrivate(const QString &path, const PrivateKey &key)
{
    return write(path, key.toPEM(), ownerOnly);
}

QString KeyFile::writePublic(const QString &path, const PublicKey &key)
{
    return write(path, key.toPEM(), everybody);
}

PublicKey KeyFile::builtInRoot()
{
    return PublicKey::fromPEM(QByteArray(pm::RootKeyPem));
}

} // namespace ts::ledger
