#include "ledger/commandline.h"

#include "ledger/console.h"

#include <QCoreApplication>

namespace ts::ledger {

CommandLine::CommandLine(const QString &command, const QString &description)
    : command(command)
{
    parser.setApplicationDescription(description);
    parser.addOption(
        {{QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Print this help and exit.")});
}

void CommandLine::addFlag(const QString &name, const QString &description)
{
    parser.addOption({name, description});
}

void CommandLine::addOption(const QString &name, const QString &valueName, const QString &description)
{
    parser.addOption({name, description, valueName});
}

void CommandLine::addArgument(const QString &name, const QString &description)
{
    arguments.append(name);
    parser.addPositionalArgument(name, description);
}

std::optional<int> CommandLine::parse(const QStringList &arguments)
{
    if (!parser.parse(arguments))
        return refuse(parser.errorText());
    if (parser.isSet(QStringLiteral("help")))
        return Console::print(help()) ? Success : Failure;
    const int given = parser.positionalArguments().size();
    if (given > this->arguments.size())
        return refuse(QStringLiteral("Unexpected argument '%1'.")
                          .arg(parser.positionalArguments().at(this->arguments.size())));
    if (given < this->arguments.size())
        return refuse(QStringLiteral("%1 is missing.").arg(this->arguments.at(given)));
    return std::nullopt;
}

int CommandLine::refuse(const QString &message) const
{
    Console::error(message);
    Console::hint(QStringLiteral("See 'tamsel-ledger %1 --help'.").arg(command));
    return UsageError;
}

std::optional<int> CommandLine::findMissing(const QStringList &options) const
{
    for (const QString &option : options) {
        if (!isSet(option))
            return refuse(QStringLiteral("--%1 is missing.").arg(option));
    }
    return std::nullopt;
}

// The first line of the parser's own text names the program only.
QString CommandLine::help() const
{
    const QString text = parser.helpText();
    const QString usage =
        QStringLiteral("Usage: tamsel-ledger %1 [options] %2").arg(command, arguments.join(QLatin1Char(' ')));
    return usage.trimmed()
           + text.mid(text.indexOf(QLatin1Char('\n'))).trimmed().prepend(QLatin1String("\n\n"));
}

} // namespace ts::ledger
