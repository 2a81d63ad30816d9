#include "ledger/commandline.h"

#include "ledger/console.h"

namespace ts::ledger {

int fail(const QString &message)
{
    Console::error(message);
    return Failure;
}

int conclude(const QString &result)
{
    return Console::print(result) ? Success : Failure;
}

// About the first option that is missing; null if none is.
QString CommandLine::Requirement::complaint(const QCommandLineParser &given) const
{
    if (!instead.isEmpty() && given.isSet(instead))
        return QString();
    for (const QString &option : options) {
        if (!given.isSet(option))
            return instead.isEmpty() ? QStringLiteral("--%1 is missing.").arg(option)
                                     : QStringLiteral("--%1 or --%2 is missing.").arg(option, instead);
    }
    return QString();
}

QString CommandLine::Requirement::usage(const QMap<QString, QString> &values) const
{
    const auto inFull = [&values](const QString &option) {
        return QStringLiteral("--%1 <%2>").arg(option, values.value(option));
    };
    QStringList all;
    for (const QString &option : options)
        all.append(inFull(option));
    const QString text = all.join(QLatin1Char(' '));
    return instead.isEmpty() ? text : QStringLiteral("(%1 | %2)").arg(text, inFull(instead));
}

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
    valueNames.insert(name, valueName);
}

void CommandLine::require(const QStringList &options, const QString &instead)
{
    requirements.append({options, instead});
    if (!instead.isEmpty())
        exclude(options, instead);
}

void CommandLine::exclude(const QStringList &options, const QString &other)
{
    for (const QString &option : options)
        exclusions.append({option, other});
}

void CommandLine::addArgument(const QString &name, const QString &description)
{
    arguments.append(name);
    parser.addPositionalArgument(name, description);
}

std::optional<int> CommandLine::parse(const QStringList &words)
{
    if (!parser.parse(words))
        return refuse(parser.errorText());
    if (parser.isSet(QStringLiteral("help")))
        return conclude(help());
    const int given = parser.positionalArguments().size();
    if (given > arguments.size())
        return refuse(QStringLiteral("Unexpected argument '%1'.")
                          .arg(parser.positionalArguments().at(arguments.size())));
    if (given < arguments.size())
        return refuse(QStringLiteral("%1 is missing.").arg(arguments.at(given)));
    const int empty = parser.positionalArguments().indexOf(QString());
    if (empty >= 0)
        return refuse(QStringLiteral("%1 is empty.").arg(arguments.at(empty)));
    if (const QString option = emptyOption(); !option.isNull())
        return refuse(QStringLiteral("--%1 is empty.").arg(option));
    if (const QString complaint = conflict(); !complaint.isNull())
        return refuse(complaint);
    for (const Requirement &requirement : qAsConst(requirements)) {
        const QString complaint = requirement.complaint(parser);
        if (!complaint.isNull())
            return refuse(complaint);
    }
    return std::nullopt;
}

int CommandLine::refuse(const QString &message) const
{
    Console::error(message);
    Console::hint(QStringLiteral("See 'tamsel-ledger %1 --help'.").arg(command));
    return UsageError;
}

// As a script gives it whose variable is not set; null if every option that is given has a value.
QString CommandLine::emptyOption() const
{
    for (auto option = valueNames.keyBegin(); option != valueNames.keyEnd(); ++option) {
        if (parser.isSet(*option) && parser.value(*option).isEmpty())
            return *option;
    }
    return QString();
}

// About the first two options that do not go together; null if all do.
QString CommandLine::conflict() const
{
    for (const auto &[option, other] : exclusions) {
        if (parser.isSet(option) && parser.isSet(other))
            return QStringLiteral("--%1 and --%2 do not go together.").arg(option, other);
    }
    return QString();
}

// The first line of the parser's own text names the program only.
QString CommandLine::help() const
{
    const QString text = parser.helpText();
    return usage() + QLatin1String("\n\n") + text.mid(text.indexOf(QLatin1Char('\n'))).trimmed();
}

QString CommandLine::usage() const
{
    QStringList words{QStringLiteral("Usage: tamsel-ledger"), command};
    for (const Requirement &requirement : requirements)
        words.append(requirement.usage(valueNames));
    words.append(QStringLiteral("[options]"));
    return (words + arguments).join(QLatin1Char(' '));
}

} // namespace ts::ledger
