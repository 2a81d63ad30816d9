#pragma once

#include <QCommandLineParser>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>

namespace ts::ledger {

enum ExitCode {
    Success = 0,
    Failure = 1,    ///< the work could not be done; nothing half-done is left behind
    UsageError = 2, ///< the command line is not understood
    NotValid = 3,   ///< the ledger that was looked at cannot be believed, or read
};

/** Tells what went wrong, and gives the exit code for that. */
int fail(const QString &message);

/** Prints \a result, and gives the exit code of a command that ends with it. */
int conclude(const QString &result);

/** One sub-command's options and arguments, with its help. */
class CommandLine
{
public:
    CommandLine(const QString &command, const QString &description);

    void addFlag(const QString &name, const QString &description);
    void addOption(const QString &name, const QString &valueName, const QString &description);
    /** These options have to be given, unless \a instead is, with which none of them goes together. */
    void require(const QStringList &options, const QString &instead = QString());
    /** None of these options goes together with \a other. */
    void exclude(const QStringList &options, const QString &other);
    /** Every argument that is added has to be given. */
    void addArgument(const QString &name, const QString &description);

    /** \a words begin with the name of the command. The exit code if the command is to end at once. */
    std::optional<int> parse(const QStringList &words);

    bool isSet(const QString &option) const { return parser.isSet(option); }
    QString value(const QString &option) const { return parser.value(option); }
    QString argument(int index) const { return parser.positionalArguments().at(index); }

    /** Tells what is wrong with the command line, and gives the exit code for that. */
    int refuse(const QString &message) const;

private:
    struct Requirement
    {
        QString complaint(const QCommandLineParser &given) const;
        QString usage(const QMap<QString, QString> &values) const;

        QStringList options;
        QString instead;
    };

    QString emptyOption() const;
    QString conflict() const;
    QString help() const;
    QString usage() const;

    const QString command;
    QStringList arguments;
    QMap<QString, QString> valueNames; // by option
    QVector<Requirement> requirements;
    QVector<QPair<QString, QString>> exclusions; // options that do not go together
    QCommandLineParser parser;
};

} // namespace ts::ledger
