#pragma once

#include <QCommandLineParser>
#include <QString>
#include <QStringList>

#include <optional>

namespace ts::ledger {

enum ExitCode {
    Success = 0,
    Failure = 1,    ///< the work could not be done; nothing half-done is left behind
    UsageError = 2, ///< the command line is not understood
    NotValid = 3,   ///< the ledger that was looked at is not good
};

/** One sub-command's options and arguments, with its help. */
class CommandLine
{
public:
    CommandLine(const QString &command, const QString &description);

    void addFlag(const QString &name, const QString &description);
    void addOption(const QString &name, const QString &valueName, const QString &description);
    /** Every argument that is added has to be given. */
    void addArgument(const QString &name, const QString &description);

    /** \a arguments begin with the name of the command. The exit code if the command is to end at once. */
    std::optional<int> parse(const QStringList &arguments);

    bool isSet(const QString &option) const { return parser.isSet(option); }
    QString value(const QString &option) const { return parser.value(option); }
    QString argument(int index) const { return parser.positionalArguments().at(index); }

    /** Tells what is wrong with the command line, and gives the exit code for that. */
    int refuse(const QString &message) const;

    /** As refuse() for the first of \a options that is missing; nothing if all are there. */
    std::optional<int> findMissing(const QStringList &options) const;

private:
    QString help() const;

    const QString command;
    QStringList arguments;
    QCommandLineParser parser;
};

} // namespace ts::ledger
