#include "jsonsignature.h"

#include "canonicaljson_p.h"

namespace ts::crypto {

QByteArray JsonSignature::toByteArray(const QJsonObject &object)
{
    CanonicalJson json;
    return json.write(object) ? json.take() : QByteArray();
}

} // namespace ts::crypto
