#pragma once

#include "ledger/filecopy.h"
#include "ledger/problems.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace ts::ledger {

/** The file of an option "--output". A value; any thread. */
class OutputFile
{
public:
    explicit OutputFile(const QString &path);

    /**
     * Adds an error if writing would destroy what can hardly be meant: a private key, or one of \a inputs,
     * files and directories of which some may not exist.
     */
    void check(const QStringList &inputs, Problems &problems) const;

    /** Null, or what went wrong. A device or a pipe is written as it stands; a file appears whole. */
    QString write(const QByteArray &content) const;
    QString write(const FileCopy::Filler &fill) const;

private:
    const QString path;
};

} // namespace ts::ledger
