// Any text: its canonical form is JSON again, and its own canonical form.

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

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QJsonObject object = QJsonDocument::fromJson(ts::fuzz::bytes(data, size)).object();
    const QByteArray form = JsonSignature::toByteArray(object);
    // Qt 5.15 takes a byte order mark off the beginning of each text that it reads.
    if (form.isNull() || form.contains("\xef\xbb\xbf"))
        return 0;
    QJsonParseError error{};
    const QJsonObject again = QJsonDocument::fromJson(form, &error).object();
    require(error.error == QJsonParseError::NoError, "the canonical form is JSON");
    require(sortedKeys(again) == sortedKeys(object), "the canonical form has the same keys");
    require(JsonSignature::toByteArray(again) == form, "the canonical form is canonical");
    return 0;
}
