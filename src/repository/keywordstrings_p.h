#pragma once

#include "repository/packagerecords.h"

class QJsonObject;

namespace ts::pm {

/**
 * The strings of a keyword that is described in JSON: "strings" maps each language to a list of strings, or
 * for a noun to a list of objects with "sg" and "pl"; a literal has one "string" and no language. None for an
 * invalid type.
 */
QVector<LangString> keywordStrings(const QJsonObject &keyword, Keyword::Type type);

} // namespace ts::pm
