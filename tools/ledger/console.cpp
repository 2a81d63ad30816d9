#include "ledger/console.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

#include <unistd.h>

namespace ts::ledger {

namespace {

constexpr int mostMessages = 50;

void tell(const char *colour, const char *kind, const QString &message)
{
    const bool coloured = Console::isErrorTerminal() && !qEnvironmentVariableIsSet("NO_COLOR");
    std::fprintf(stderr, "tamsel-ledger: %s%s:%s %s\n", coloured ? colour : "", kind,
                 coloured ? "\x1b[0m" : "", Console::printable(message).toUtf8().constData());
}

void tellAll(void (*tellOne)(const QString &), const QStringList &messages, int notKept)
{
    const QStringList told = Console::abridged(messages, notKept, mostMessages);
    for (const QString &message : told)
        tellOne(message);
}

} // namespace

bool Console::isErrorTerminal()
{
    static const bool isTerminal = isatty(STDERR_FILENO);
    return isTerminal;
}

void Console::error(const QString &message)
{
    tell("\x1b[1;31m", "error", message);
}

void Console::warning(const QString &message)
{
    tell("\x1b[1;33m", "warning", message);
}

void Console::hint(const QString &message)
{
    std::fprintf(stderr, "%s\n", message.toUtf8().constData());
}

QStringList Console::abridged(const QStringList &messages, int notKept, int most)
{
    QStringList result = messages.mid(0, most);
    if (const int more = messages.size() - result.size() + notKept; more > 0)
        result.append(QStringLiteral("... and %1 more").arg(more));
    return result;
}

bool Console::report(const Problems &problems)
{
    tellAll(&Console::warning, problems.warnings, problems.moreWarnings);
    tellAll(&Console::error, problems.errors, problems.moreErrors);
    return problems.errors.isEmpty();
}

QString Console::printable(QString text)
{
    for (QChar &character : text) {
        if (!character.isPrint() && !character.isSurrogate())
            character = QChar::ReplacementCharacter;
    }
    return text;
}

bool Console::print(const QString &line)
{
    if (std::fputs((line + QLatin1Char('\n')).toUtf8().constData(), stdout) >= 0 && std::fflush(stdout) == 0)
        return true;
    error(
        QStringLiteral("the output cannot be written: %1").arg(QString::fromLocal8Bit(std::strerror(errno))));
    return false;
}

} // namespace ts::ledger
