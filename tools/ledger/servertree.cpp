#include "ledger/servertree.h"

#include <QDir>

namespace ts::ledger {

ServerTree::ServerTree(const QString &root)
    : ledgerDirectory(QDir(root).absoluteFilePath(QStringLiteral("api/v1/ledger")))
{
}

} // namespace ts::ledger
