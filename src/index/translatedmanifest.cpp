#include "index/translatedmanifest_p.h"

#include <QJsonArray>
#include <QtGlobal>

namespace ts::pm {

namespace {

QJsonValue translateValue(const QJsonValue &value);

QJsonObject translateObject(const QJsonObject &object)
{
    QJsonObject translated;
    for (auto entry = object.begin(); entry != object.end(); ++entry)
        translated.insert(entry.key(), translateValue(entry.value()));
    return translated;
}

QJsonArray translateArray(const QJsonArray &array)
{
    QJsonArray translated;
    for (const QJsonValue &element : array)
        translated.append(translateValue(element));
    return translated;
}

QString translateString(const QString &string)
{
    const QString marker = QStringLiteral("id:");
    if (!string.startsWith(marker))
        return string;
    return qtTrId(string.mid(marker.size()).toLatin1().constData(), -1);
}

QJsonValue translateValue(const QJsonValue &value)
{
    switch (value.type()) {
    case QJsonValue::Object:
        return translateObject(value.toObject());
    case QJsonValue::Array:
        return translateArray(value.toArray());
    case QJsonValue::String:
        return translateString(value.toString());
    default:
        return value;
    }
}

} // namespace

TranslatedManifest::TranslatedManifest(const QJsonObject &manifest, quint32 generation)
    : manifest(translateObject(manifest))
    , generation(generation)
{
}

} // namespace ts::pm
