#include "ledger/commandline.h"
#include "ledger/commands/commands.h"
#include "ledger/console.h"
#include "ledger/keyfile.h"

#include <QFile>
#include <QFileInfo>

namespace ts::ledger {

using crypto::ed25519::PrivateKey;

int keygen(const QStringList &arguments)
{
    CommandLine line(
        QStringLiteral("keygen"),
        QStringLiteral("Makes a key pair, for a root or for an issuer: NAME.key.pem, the private key, "
                       "which only its owner can read, and NAME.pem, the public one. Existing files "
                       "are never overwritten."));
    line.addArgument(QStringLiteral("NAME"),
                     QStringLiteral("Path of the key files, without what follows the dot."));
    if (const auto exitCode = line.parse(arguments))
        return *exitCode;
    if (QFileInfo(line.argument(0)).fileName().isEmpty())
        return line.refuse(QStringLiteral("'%1' names no file.").arg(line.argument(0)));

    const QString publicPath = line.argument(0) + QStringLiteral(".pem");
    const QString privatePath = line.argument(0) + QStringLiteral(".key.pem");
    if (QFileInfo::exists(publicPath))
        return fail(QStringLiteral("%1: the file exists, and keys are never overwritten").arg(publicPath));
    const PrivateKey key = PrivateKey::generate();
    if (!key)
        return fail(QStringLiteral("The system gives no random numbers."));
    if (const QString error = KeyFile::writePrivate(privatePath, key); !error.isNull())
        return fail(error);
    if (const QString error = KeyFile::writePublic(publicPath, key.publicKey()); !error.isNull()) {
        QFile::remove(privatePath);
        return fail(error);
    }
    return Console::print(privatePath) && Console::print(publicPath) ? Success : Failure;
}

} // namespace ts::ledger
