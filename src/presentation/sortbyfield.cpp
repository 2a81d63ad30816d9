#include "presentation/sortbyfield.h"

namespace ts::pm {

class SortByFieldPrivate
{
public:
    QString name;
};

SortByField::SortByField(QObject *parent)
    : PackageSorter(parent)
    , d(new SortByFieldPrivate)
{
}

SortByField::~SortByField() = default;

QString SortByField::name() const
{
    return d->name;
}

void SortByField::setName(const QString &name)
{
    if (d->name == name)
        return;
    d->name = name;
    Q_EMIT nameChanged();
}

} // namespace ts::pm
