#include "ledger/outputfile.h"

#include "ledger/keyfile.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <filesystem>

namespace ts::ledger {

namespace {

// By what they are, not by what they are called: a file can have several names.
bool isSame(const QString &path, const QString &input)
{
    std::error_code error;
    return std::filesystem::equivalent(QFile::encodeName(path).toStdString(),
                                       QFile::encodeName(input).toStdString(), error);
}

bool isBelow(const QString &path, const QString &directory)
{
    const QFileInfo input(directory);
    return input.isDir()
           && QFileInfo(path).canonicalFilePath().startsWith(input.canonicalFilePath() + QLatin1Char('/'));
}

} // namespace

OutputFile::OutputFile(const QString &path)
    : path(path)
{
}

void OutputFile::check(const QStringList &inputs, Problems &problems) const
{
    if (!QFileInfo(path).isFile())
        return;
    const bool isInput = std::any_of(inputs.begin(), inputs.end(), [this](const QString &input) {
        return isSame(path, input) || isBelow(path, input);
    });
    if (isInput)
        problems.addError(path, QStringLiteral("is read by this command, and not overwritten"));
    else if (KeyFile::isPrivate(path))
        problems.addError(path, QStringLiteral("holds a private key, and keys are never overwritten"));
}

QString OutputFile::write(const QByteArray &content) const
{
    return write(FileCopy::fillerOf(content));
}

QString OutputFile::write(const FileCopy::Filler &fill) const
{
    const QFileInfo present(path);
    if (!present.exists() || present.isFile())
        return FileCopy::write(fill, path);
    QFile device(path);
    if (!device.open(QIODevice::WriteOnly))
        return FileCopy::failureOf(device);
    const QString error = fill(device);
    return error.isNull() && !device.flush() ? FileCopy::failureOf(device) : error;
}

} // namespace ts::ledger
