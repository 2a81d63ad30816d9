#include "jsonsignature.h"

#include "canonicaljson_p.h"
#include "canonicaltext_p.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <utility>

namespace ts::crypto {

namespace {

// The member goes with the comma that follows it, or else with the one before.
QByteArray withoutMember(const QByteArray &object, CanonicalText::Span member)
{
    if (*member.end == ',')
        ++member.end;
    else if (member.begin[-1] == ',')
        --member.begin;
    const int before = int(member.begin - object.constData());
    const int after = int(object.constData() + object.size() - member.end);
    QByteArray rest;
    rest.reserve(before + after);
    rest.append(object.constData(), before);
    rest.append(member.end, after);
    return rest;
}

} // namespace

QByteArray JsonSignature::toByteArray(const QJsonObject &object)
{
    CanonicalJson json;
    return json.write(object) ? json.take() : QByteArray();
}

QByteArray JsonSignature::toByteArray(const QByteArray &json, QLatin1String key)
{
    CanonicalText text(json.constData(), json.size());
    if (text.isObject(key)) {
        if (text.member().begin)
            return withoutMember(json, text.member());
        return QByteArray(json.constData(), json.size()); // the caller may own the bytes of the other one
    }
    QJsonObject object = QJsonDocument::fromJson(json).object();
    object.remove(key);
    return toByteArray(object);
}

bool JsonSignature::appendString(QStringView text, QByteArray *json)
{
    const int before = json->size();
    CanonicalJson writer(std::move(*json));
    const bool isWritten = writer.writeString(text);
    *json = writer.take();
    if (!isWritten)
        json->truncate(before);
    return isWritten;
}

} // namespace ts::crypto
