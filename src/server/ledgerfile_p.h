#pragma once

#include <QString>
#include <QUrl>

namespace ts::pm {

/** Where a package server has the file with the SHA-224 digest \a fileId, relative to its service. */
inline QUrl ledgerFileUrl(const QString &fileId)
{
    return QUrl(QStringLiteral("./api/v1/ledger/%1").arg(fileId));
}

} // namespace ts::pm
