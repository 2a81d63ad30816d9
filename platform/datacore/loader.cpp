#include "loader.h"

#include "context.h"

#include <QJsonObject>

namespace ts::data {

Loader::Loader(int priority, Context *context)
    : QObject(context)
    , rank(priority)
    , owner(context)
{
    if (context)
        context->addLoader(this);
}

Loader::~Loader()
{
    if (owner)
        owner->removeLoader(this);
}

Context *Loader::context() const
{
    return owner;
}

void Loader::loaded(const QString &id, const QJsonObject &data)
{
    if (owner)
        owner->deliver(id, data);
}

} // namespace ts::data
