#include "ledger/commandline.h"
#include "ledger/commands/commands.h"
#include "ledger/console.h"
#include "ledger/issuercertificate.h"
#include "ledger/keyfile.h"
#include "ledger/latin1.h"
#include "ledger/outputfile.h"

namespace ts::ledger {

namespace {

constexpr QLatin1String rootKey = latin1("root-key");
constexpr QLatin1String name = latin1("name");
constexpr QLatin1String secondName = latin1("second-name");
constexpr QLatin1String outputOption = latin1("output");

void addOptions(CommandLine &line)
{
    line.addOption(rootKey, QStringLiteral("FILE"), QStringLiteral("The private root key."));
    line.addOption(name, QStringLiteral("TEXT"), QStringLiteral("The issuer's name, for people."));
    line.addOption(secondName, QStringLiteral("TEXT"),
                   QStringLiteral("What follows the name, such as a department."));
    line.addOption(outputOption, QStringLiteral("FILE"), QStringLiteral("Where the certificate goes."));
    line.require({rootKey, name, outputOption});
    line.addArgument(QStringLiteral("KEY"), QStringLiteral("The issuer's public key."));
}

} // namespace

int issue(const QStringList &arguments)
{
    CommandLine line(
        QStringLiteral("issue"),
        QStringLiteral("Lets an issuer sign packages: the root key signs the issuer's public key into a "
                       "certificate. Nothing else needs the root key, so it can be kept offline. The "
                       "certificate is not secret."));
    addOptions(line);
    if (const auto exitCode = line.parse(arguments))
        return *exitCode;

    Problems problems;
    const OutputFile output(line.value(outputOption));
    output.check({line.value(rootKey), line.argument(0)}, problems);
    const auto root = KeyFile::readPrivate(line.value(rootKey), problems);
    const auto issuer = KeyFile::readPublic(line.argument(0), problems);
    for (const QLatin1String option : {name, secondName}) {
        if (line.value(option).toUtf8().size() > 0xFFFF)
            problems.addError(QLatin1String("--") + option, QStringLiteral("more than 65535 bytes"));
    }
    if (!Console::report(problems))
        return Failure;
    const auto certificate = IssuerCertificate::make(line.value(name), line.value(secondName), issuer, root);
    if (const QString error = output.write(certificate.toJson()); !error.isNull())
        return fail(error);
    return Success;
}

} // namespace ts::ledger
