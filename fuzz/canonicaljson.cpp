// Any text: its canonical form is JSON again, and its own canonical form, and a member is left out of it with
// the same result whether the text is taken apart or only looked through.

#include "target.h"

#include <TamselCrypto/JsonSignature>

#include <QJsonDocument>
#include <QJsonObject>

using ts::crypto::JsonSignature;
using ts::fuzz::require;

namespace {

// The order of keys() depends on how the text wrote them.
QStringList sortedKeys(const QJsonObject &object)
{
    QStringList keys = object.keys();
    keys.sort();
    return keys;
}

const QLatin1String key("a");

QByteArray withoutMember(QJsonObject object)
{
    object.remove(key);
    return JsonSignature::toByteArray(object);
}

QByteArray withoutMember(const QByteArray &text)
{
    return JsonSignature::toByteArray(text, key);
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray text = ts::fuzz::bytes(data, size);
    const QJsonObject object = QJsonDocument::fromJson(text).object();
    const QByteArray form = JsonSignature::toByteArray(object);
    require(withoutMember(text) == withoutMember(object),
            "a member is left out of the text as of the object");
    // Qt 5.15 takes a byte order mark off the beginning of each text that it reads.
    if (form.isNull() || form.contains("\xef\xbb\xbf"))
        return 0;
    QJsonParseError error{};
    const QJsonObject again = QJsonDocument::fromJson(form, &error).object();
    require(error.error == QJsonParseError::NoError, "the canonical form is JSON");
    require(sortedKeys(again) == sortedKeys(object), "the canonical form has the same keys");
    require(JsonSignature::toByteArray(again) == form, "the canonical form is canonical");
    require(withoutMember(form) == withoutMember(again), "a member is left out of the canonical form");
    return 0;
}
