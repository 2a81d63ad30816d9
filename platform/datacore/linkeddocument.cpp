#include "linkeddocument.h"

#include "referencetype_p.h"

#include <QJsonArray>
#include <QPointer>

namespace ts::data {

namespace {

/** A link as its text names it. Without a type if the text is no link of a known type. */
struct ParsedLink
{
    const ReferenceType *type = nullptr;
    QByteArray id;
};

const QLatin1String linkPrefix("ref:");

QString linkText(const ReferenceType &type, const QByteArray &id)
{
    return linkPrefix + QString::number(type.typeId) + QLatin1Char(':')
           + QString::fromLatin1(id.toPercentEncoding());
}

ParsedLink parseLink(const QString &text)
{
    const int colon = text.indexOf(QLatin1Char(':'), linkPrefix.size());
    if (!text.startsWith(linkPrefix) || colon < 0)
        return {};
    bool isNumber = false;
    const int typeId = text.midRef(linkPrefix.size(), colon - linkPrefix.size()).toInt(&isNumber);
    const ReferenceType *type = isNumber ? referenceType(typeId) : nullptr;
    const QByteArray id = QByteArray::fromPercentEncoding(text.midRef(colon + 1).toLatin1());
    return type && !id.isEmpty() ? ParsedLink{type, id} : ParsedLink{};
}

// To attach or get an object may run other people's code, which may delete the document.
void attachLinks(const QPointer<LinkedDocument> &document, const QJsonValue &value)
{
    if (value.isObject()) {
        const QJsonObject object = value.toObject();
        for (const QJsonValue &member : object)
            attachLinks(document, member);
    } else if (value.isArray()) {
        const QJsonArray array = value.toArray();
        for (const QJsonValue &element : array)
            attachLinks(document, element);
    } else if (value.isString()) {
        const ParsedLink link = parseLink(value.toString());
        if (document && link.type && link.type->canReference(document, link.id))
            link.type->attachReference(document, link.id);
    }
}

void tellType(const QPointer<LinkedDocument> &document, const QString &text,
              decltype(ReferenceType::createReference) ReferenceType::*tell)
{
    const ParsedLink link = parseLink(text);
    QObject *object = document && link.type ? link.type->getReference(document, link.id) : nullptr;
    if (document && object)
        (link.type->*tell)(document, object);
}

QStringList pathKeys(const QString &path)
{
    return path.split(QLatin1Char('/'), Qt::SkipEmptyParts);
}

// The object with the value stored below it, at the keys from \a first on.
QJsonObject withValue(QJsonObject object, const QStringList &keys, int first, const QJsonValue &value)
{
    const QString &key = keys.at(first);
    if (first == keys.size() - 1) {
        object.insert(key, value);
        return object;
    }
    const QJsonValue inner = object.value(key);
    if (inner.isObject() || !value.isUndefined())
        object.insert(key, withValue(inner.toObject(), keys, first + 1, value));
    return object;
}

} // namespace

class LinkedDocumentPrivate
{
public:
    const QString id;
    bool isLoaded;
    QJsonObject data;
};

LinkedDocument::LinkedDocument(const QString &id, QObject *parent)
    : QObject(parent)
    , d(new LinkedDocumentPrivate{id, false, {}})
{
}

LinkedDocument::~LinkedDocument() = default;

QString LinkedDocument::id() const
{
    return d->id;
}

bool LinkedDocument::isLoaded() const
{
    return d->isLoaded;
}

QJsonObject LinkedDocument::data() const
{
    return d->data;
}

void LinkedDocument::setData(const QJsonObject &data)
{
    const bool isFirst = !d->isLoaded;
    if (!isFirst && d->data == data)
        return;
    const QPointer<LinkedDocument> guard = this;
    attachLinks(guard, data);
    if (!guard)
        return;
    d->data = data;
    d->isLoaded = true;
    if (isFirst)
        Q_EMIT loaded();
    if (guard)
        Q_EMIT dataChanged();
}

QJsonValue LinkedDocument::getStructValue(const QString &path, const QString &key) const
{
    QJsonObject object = d->data;
    const QStringList keys = pathKeys(path);
    for (const QString &pathKey : keys)
        object = object.value(pathKey).toObject();
    return object.value(key);
}

void LinkedDocument::setStructValue(const QString &path, const QString &key, const QJsonValue &value)
{
    const QJsonValue old = getStructValue(path, key);
    if (old == value)
        return;
    const QPointer<LinkedDocument> guard = this;
    tellType(guard, value.toString(), &ReferenceType::createReference);
    tellType(guard, old.toString(), &ReferenceType::deleteReference);
    if (!guard)
        return;
    d->data = withValue(d->data, pathKeys(path) << key, 0, value);
    Q_EMIT dataChanged();
}

QString LinkedDocument::encodeReference(QObject *object)
{
    const ReferenceType *type = object ? referenceTypeOf(object) : nullptr;
    if (!type || type->isLegacy)
        return QString();
    const QByteArray id = type->identifier(object);
    return type->canReference(this, id) ? linkText(*type, id) : QString();
}

QObject *LinkedDocument::decodeReference(const QString &text) const
{
    const ParsedLink link = parseLink(text);
    return link.type ? link.type->getReference(this, link.id) : nullptr;
}

QObject *LinkedDocument::owningContext() const
{
    return parent();
}

} // namespace ts::data
