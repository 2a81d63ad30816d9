#pragma once

#include "database/persistedlisting_p.h"
#include "testexport_p.h"

#include <QJsonDocument>

class QJsonArray;
struct QJsonParseError;

namespace ts::pm {

/** The longest answer of a view that a source accepts, in bytes: four times what is read of a data file,
 * which bounds the memory that a parsed one takes. */
constexpr qint64 largestViewResponse = 16777216;

/** The most that its rows may take when they are written with indentation, in bytes. */
constexpr qint64 largestRows = 4 * largestViewResponse;

/**
 * The data file of a listing. No more than 4 MiB are read, so a longer one is no JSON. Null for a file that
 * does not exist, and with a message in \a category for one that does not open or is no JSON. Any thread.
 */
QJsonDocument readDataFile(LogCategory category, const QString &path);

/** The rows of a data file of documents: the array that it is, or the member "rows" of its object. */
QJsonArray readRowData(const QString &path);

/**
 * The rows of an answer of a view as they are kept and hashed: the array alone, written anew, since counts
 * and offsets beside it can change without a change of any document. Null, with \a error set, if the answer
 * is no JSON, or if the rows might take more than largestRows: the indentation of values that are nested
 * 1,000 levels deep is 2,000 times as long as they are. Any thread.
 */
TAMSEL_TEST_EXPORT QByteArray normalisedRows(const QByteArray &response, QJsonParseError *error);

} // namespace ts::pm
