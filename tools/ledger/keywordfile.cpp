#include "ledger/keywordfile.h"

namespace ts::ledger {

namespace {

// The limit of a ledger, which knows languages but not their files.
constexpr int longestLanguage = 0xFFFF; // bytes

} // namespace

KeywordFile::KeywordFile(const QJsonObject &object, const QString &place, Problems &problems)
    : object(object)
    , place(place)
    , problems(problems)
{
}

pm::KeywordInfo KeywordFile::keyword(const QString &id)
{
    const QString type = object.value(QLatin1String("type")).toString();
    info = {id, pm::Keyword::typeFromString(type), {}};
    if (info.type == pm::Keyword::Invalid)
        problems.addError(place, QStringLiteral("there is no keyword type '%1'").arg(type));
    else if (info.type == pm::Keyword::Literal)
        readLiteral();
    else
        readStrings();
    return info;
}

void KeywordFile::readLiteral()
{
    const QJsonValue string = object.value(QLatin1String("string"));
    if (!string.isString())
        problems.addError(place, QStringLiteral("a literal needs a text 'string'"));
    info.strings.append({QString(), text(string), QString()});
}

void KeywordFile::readStrings()
{
    const QJsonObject strings = object.value(QLatin1String("strings")).toObject();
    if (strings.isEmpty())
        problems.addError(place, QStringLiteral("needs an object 'strings' with an array for each language"));
    for (auto language = strings.begin(); language != strings.end(); ++language) {
        if (language.key().isEmpty() || !language.value().isArray() || language.key().contains(QChar::Null))
            problems.addError(place, QStringLiteral("no array for the language '%1'").arg(language.key()));
        else if (const int size = language.key().toUtf8().size(); size > longestLanguage)
            problems.addError(place, QStringLiteral("language of %1 bytes; at most %2 are possible")
                                         .arg(size)
                                         .arg(longestLanguage));
        else
            readForms(language.key(), language.value().toArray());
    }
}

void KeywordFile::readForms(const QString &language, const QJsonArray &forms)
{
    for (const QJsonValue &form : forms) {
        if (info.type == pm::Keyword::Noun && form.isObject())
            addNoun(language, form.toObject());
        else if (info.type != pm::Keyword::Noun && form.isString())
            info.strings.append({language, text(form), QString()});
        else
            problems.addError(
                place, QStringLiteral("in the language '%1': %2")
                           .arg(language, info.type == pm::Keyword::Noun
                                              ? QStringLiteral("a noun needs objects with 'sg' and 'pl'")
                                              : QStringLiteral("all but nouns need plain texts")));
    }
}

void KeywordFile::addNoun(const QString &language, const QJsonObject &noun)
{
    for (const QLatin1String key : {QLatin1String("sg"), QLatin1String("pl")}) {
        const QJsonValue value = noun.value(key);
        if (!value.isUndefined() && !value.isString())
            problems.addError(place,
                              QStringLiteral("'%1' in the language '%2' is no text").arg(key, language));
    }
    info.strings.append(
        {language, text(noun.value(QLatin1String("sg"))), text(noun.value(QLatin1String("pl")))});
}

// A ledger keeps singular and plural in one text, with a NUL between them.
QString KeywordFile::text(const QJsonValue &value)
{
    const QString text = value.toString();
    if (text.contains(QChar::Null))
        problems.addError(place, QStringLiteral("a NUL in a text"));
    return text;
}

} // namespace ts::ledger
