#include "repository/keywordstrings_p.h"

#include <QJsonArray>
#include <QJsonObject>

namespace ts::pm {

namespace {

LangString langString(const QString &language, const QJsonValue &value, Keyword::Type type)
{
    if (type != Keyword::Noun)
        return {language, value.toString(), QString()};
    const QJsonObject noun = value.toObject();
    return {language, noun.value(QLatin1String("sg")).toString(), noun.value(QLatin1String("pl")).toString()};
}

QVector<LangString> langStrings(const QJsonObject &strings, Keyword::Type type)
{
    QVector<LangString> result;
    for (auto language = strings.begin(); language != strings.end(); ++language) {
        const QJsonArray forms = language.value().toArray();
        for (const QJsonValue &form : forms)
            result.append(langString(language.key(), form, type));
    }
    return result;
}

} // namespace

QVector<LangString> keywordStrings(const QJsonObject &keyword, Keyword::Type type)
{
    switch (type) {
    case Keyword::Noun:
    case Keyword::Name:
    case Keyword::Adjective:
    case Keyword::Category:
        return langStrings(keyword.value(QLatin1String("strings")).toObject(), type);
    case Keyword::Literal:
        return {{QString(), keyword.value(QLatin1String("string")).toString(), QString()}};
    case Keyword::Invalid:
        break;
    }
    return {};
}

} // namespace ts::pm
