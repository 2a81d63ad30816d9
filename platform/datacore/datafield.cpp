#include "datafield.h"

#include "linkeddocument.h"

namespace ts::data {

class DataFieldPrivate
{
public:
    QString name;
};

DataField::DataField(QObject *parent)
    : QObject(parent)
    , d(new DataFieldPrivate)
{
}

DataField::~DataField() = default;

QString DataField::name() const
{
    return d->name;
}

void DataField::setName(const QString &name)
{
    if (d->name == name)
        return;
    d->name = name;
    Q_EMIT nameChanged();
}

bool DataField::compare(const QVariant &a, const QVariant &b) const
{
    return a == b;
}

QVariant DataField::convert(const QVariant &value) const
{
    return value;
}

bool DataField::acceptsValue(LinkedDocument *document, const QVariant &value) const
{
    Q_UNUSED(value)
    return document;
}

QVariant DataField::read(LinkedDocument *document, const QString &path) const
{
    return document ? document->getStructValue(path, name()).toVariant() : QVariant();
}

void DataField::write(LinkedDocument *document, const QString &path, const QVariant &value)
{
    if (!document)
        return;
    document->setStructValue(
        path, name(), value.isValid() ? QJsonValue::fromVariant(value) : QJsonValue(QJsonValue::Undefined));
}

} // namespace ts::data
