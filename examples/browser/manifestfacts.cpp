#include "manifestfacts.h"

#include <QJsonArray>
#include <QStringList>

#include <algorithm>

namespace browser {

namespace {

bool hasOwnPlace(const QString &key)
{
    static const QStringList keys{QStringLiteral("title"),     QStringLiteral("description"),
                                  QStringLiteral("picture"),   QStringLiteral("pictureSize"),
                                  QStringLiteral("files"),     QStringLiteral("featured"),
                                  QStringLiteral("monthFrom"), QStringLiteral("monthTo")};
    return keys.contains(key);
}

// The list of files shows them already.
bool isFileName(const QJsonObject &manifest, const QJsonValue &value)
{
    return value.isString() && manifest.value(QLatin1String("files")).toArray().contains(value);
}

QStringList wellKnownKeys()
{
    return {QStringLiteral("latinName"), QStringLiteral("scale"), QStringLiteral("lengthKm"),
            QStringLiteral("ascentM"),   QStringLiteral("hours"), QStringLiteral("difficulty")};
}

bool isPlain(const QJsonValue &value)
{
    if (value.isArray()) {
        const QJsonArray elements = value.toArray();
        return !elements.isEmpty()
               && std::all_of(elements.begin(), elements.end(), [](const QJsonValue &element) {
                      return element.isString() || element.isDouble();
                  });
    }
    return value.isBool() || value.isDouble() || !value.toString().isEmpty();
}

QStringList finalKeys()
{
    return {QStringLiteral("edition"), QStringLiteral("year"), QStringLiteral("version"),
            QStringLiteral("license")};
}

QStringList orderedKeys(const QJsonObject &manifest)
{
    const QStringList last = finalKeys();
    QStringList keys = wellKnownKeys();
    const QStringList present = manifest.keys();
    for (const QString &key : present) {
        if (!keys.contains(key) && !last.contains(key))
            keys.append(key);
    }
    return keys + last;
}

QVariantMap fact(const QString &key, const QVariant &value)
{
    return {{QStringLiteral("key"), key}, {QStringLiteral("value"), value}};
}

// Two keys that make one fact: the months from and to which something can be seen, counted from 1.
void appendSeason(QVariantList &facts, const QJsonObject &manifest)
{
    const int from = manifest.value(QLatin1String("monthFrom")).toInt();
    const int to = manifest.value(QLatin1String("monthTo")).toInt();
    if (qMin(from, to) >= 1 && qMax(from, to) <= 12)
        facts.append(fact(QStringLiteral("season"), QVariantList{from, to}));
}

} // namespace

QVariantList manifestFacts(const QJsonObject &manifest)
{
    QVariantList facts;
    const QStringList keys = orderedKeys(manifest);
    for (const QString &key : keys) {
        const QJsonValue value = manifest.value(key);
        if (!hasOwnPlace(key) && isPlain(value) && !isFileName(manifest, value))
            facts.append(fact(key, value.toVariant()));
        if (key == wellKnownKeys().constLast())
            appendSeason(facts, manifest);
    }
    return facts;
}

} // namespace browser
