#include "ledger/typenames.h"

#include <QStringList>

namespace ts::ledger {

QString keywordTypeName(int type)
{
    static const QStringList names{QStringLiteral("noun"), QStringLiteral("name"),
                                   QStringLiteral("adjective"), QStringLiteral("literal"),
                                   QStringLiteral("category")};
    return names.value(type, QString::number(type));
}

QString linkTypeName(int type)
{
    static const QStringList names{QStringLiteral("is_a"),       QStringLiteral("contains"),
                                   QStringLiteral("relates_to"), QStringLiteral("is_not_a"),
                                   QStringLiteral("is"),         QStringLiteral("uses"),
                                   QStringLiteral("requires")};
    return names.value(type, QString::number(type));
}

} // namespace ts::ledger
