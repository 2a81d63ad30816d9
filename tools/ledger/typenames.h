#pragma once

#include <QString>

namespace ts::ledger {

// The names of the types in data files; of a number that is no type, the number itself. Any thread.

QString keywordTypeName(int type);
QString linkTypeName(int type);

} // namespace ts::ledger
