#include "resource.h"

#include <QUuid>

namespace ts::account {

namespace {

QUuid idOf(const QString &text)
{
    // The name space of URLs (RFC 4122), for texts that are no UUID.
    static const QUuid names(QStringLiteral("{6ba7b811-9dad-11d1-80b4-00c04fd430c8}"));
    const QUuid id(text);
    return id.isNull() ? QUuid::createUuidV5(names, text) : id;
}

} // namespace

Resource::Resource(const QString &uuid, QObject *parent)
    : QObject(parent)
    , id(idOf(uuid).toString(QUuid::WithoutBraces))
{
}

Resource::~Resource() = default;

QString Resource::uuid() const
{
    return id;
}

} // namespace ts::account
