#include "repository/link.h"

#include <QHash>
#include <QString>

namespace ts::pm {

LinkType Link::typeFromString(const QString &name)
{
    static const QHash<QString, LinkType> types{
        {QStringLiteral("is_a"), IsA},
        {QStringLiteral("contains"), Contains},
        {QStringLiteral("relates_to"), RelatesTo},
        {QStringLiteral("is_not_a"), IsNotA},
        {QStringLiteral("is"), Is},
        {QStringLiteral("uses"), Uses},
        {QStringLiteral("requires"), Requires},
    };
    return types.value(name, InvalidLink);
}

} // namespace ts::pm
