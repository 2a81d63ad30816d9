#pragma once

#include <QStringList>

namespace ts::ledger {

// The sub-commands. Each takes its arguments, its own name first, and gives the exit code.

int keygen(const QStringList &arguments);
int issue(const QStringList &arguments);
int build(const QStringList &arguments);
int publish(const QStringList &arguments);
int verify(const QStringList &arguments);
int inspect(const QStringList &arguments);
int serve(const QStringList &arguments);
int couchdb(const QStringList &arguments);

} // namespace ts::ledger
