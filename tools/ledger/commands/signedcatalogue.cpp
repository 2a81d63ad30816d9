#include "ledger/commands/signedcatalogue.h"

#include "ledger/cataloguereader.h"
#include "ledger/issuercertificate.h"
#include "ledger/keyfile.h"
#include "ledger/latin1.h"
#include "ledger/ledgerbuilder.h"
#include "ledger/ledgerreader.h"
#include "ledger/ledgerverification.h"
#include "ledger/ledgerwriter.h"

#include <QFile>

namespace ts::ledger {

using crypto::ed25519::PrivateKey;
using crypto::ed25519::PublicKey;

namespace {

constexpr QLatin1String certificateOption = latin1("certificate");
constexpr QLatin1String keyOption = latin1("key");
constexpr QLatin1String rootKeyOption = latin1("root-key");
constexpr QLatin1String skipOption = latin1("skip-subdirectories");

IssuerCertificate readCertificate(const QString &path, Problems &problems)
{
    constexpr int largestCertificate = 1048576; // bytes
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        problems.addError(path, file.errorString());
        return {};
    }
    const IssuerCertificate certificate = IssuerCertificate::fromJson(file.read(largestCertificate));
    if (certificate.publicKey.isNull())
        problems.addError(path, QStringLiteral("no certificate of an issuer"));
    return certificate;
}

} // namespace

void addRootKeyOption(CommandLine &line)
{
    line.addOption(
        rootKeyOption, QStringLiteral("FILE"),
        QStringLiteral("The public root key that clients believe. Without it, the one that the library of "
                       "this build believes."));
}

PublicKey rootKey(const CommandLine &line, Problems &problems)
{
    return line.isSet(rootKeyOption) ? KeyFile::readPublic(line.value(rootKeyOption), problems)
                                     : KeyFile::builtInRoot();
}

void addCatalogue(CommandLine &line)
{
    line.addArgument(QStringLiteral("CATALOGUE"), QStringLiteral("Directory of the catalogue."));
    line.addFlag(skipOption,
                 QStringLiteral("Leave out files in sub-directories of packages, which do not install, "
                                "instead of refusing them."));
}

Catalogue readCatalogue(const CommandLine &line, Problems &problems)
{
    using SubDirectories = CatalogueReader::SubDirectories;
    const SubDirectories policy = line.isSet(skipOption) ? SubDirectories::Skip : SubDirectories::Refuse;
    return CatalogueReader(line.argument(0), policy, problems).read();
}

QStringList catalogueInputs(const CommandLine &line)
{
    const QString directory = line.argument(0);
    return {directory + QStringLiteral("/packages"), directory + QStringLiteral("/dictionary"),
            directory + QStringLiteral("/links")};
}

void SignedCatalogue::addOptions(CommandLine &line, const QString &ready)
{
    line.addOption(certificateOption, QStringLiteral("FILE"), QStringLiteral("The issuer's certificate."));
    line.addOption(keyOption, QStringLiteral("FILE"), QStringLiteral("The issuer's private key."));
    line.require({certificateOption, keyOption}, ready);
    addRootKeyOption(line);
    addCatalogue(line);
}

QStringList SignedCatalogue::inputs(const CommandLine &line)
{
    return {line.value(certificateOption), line.value(keyOption), line.value(rootKeyOption)};
}

void SignedCatalogue::sign(const CommandLine &line, Problems &problems)
{
    const PublicKey root = rootKey(line, problems);
    const PrivateKey key = KeyFile::readPrivate(line.value(keyOption), problems);
    const QString path = line.value(certificateOption);
    const IssuerCertificate certificate = readCertificate(path, problems);
    if (!problems.errors.isEmpty())
        return;
    if (!certificate.isSignedBy(root))
        return problems.addError(path, QStringLiteral("not signed by the root key that clients believe"));
    if (certificate.publicKey != key.publicKey().toDER())
        return problems.addError(
            path, QStringLiteral("not the certificate of the key %1").arg(line.value(keyOption)));
    records = LedgerBuilder(catalogue, certificate, key, problems).build();
    const LedgerWriter writer(records);
    problems.errors += writer.errors();
    ledger = writer.toByteArray();
}

void SignedCatalogue::takeLedger(const QString &path, const CommandLine &line, Problems &problems)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return problems.addError(path, file.errorString());
    const QByteArray document = file.readAll();
    const PublicKey root = rootKey(line, problems);
    QString error;
    const std::optional<LedgerRecords> read = LedgerReader::read(document, &error);
    if (!read)
        return problems.addError(path, error);
    records = *read;
    ledger = document;
    problems.add(LedgerVerification::of(records, root).problems);
}

} // namespace ts::ledger
