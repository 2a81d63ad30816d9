// An answer of the view of documents, and a data file of any bytes: what is kept of an answer reads back to
// the same bytes, or each poll would take it for news, and gives one package for each row.

#include "database/documentpackageaccessor.h"
#include "database/rowdata_p.h"
#include "target.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonObject>
#include <QTemporaryDir>

using namespace ts::pm;
using ts::fuzz::require;

namespace {

int packagesIn(const QByteArray &bytes)
{
    static const QTemporaryDir directory;
    QFile file(directory.filePath(QStringLiteral("rows")));
    require(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.flush(),
            "the rows can be written");
    DocumentPackageAccessor accessor(QStringLiteral("type"), {file.fileName(), std::nullopt});
    accessor.initialize();
    for (int i = -1; i <= accessor.packageCount(); ++i) {
        const QString revision = accessor.packageManifest(i).value(QLatin1String("_rev")).toString();
        require(accessor.packageInfo(i).revision == revision, "the revision is that of the document");
    }
    return accessor.packageCount();
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes = ts::fuzz::bytes(data, size);
    packagesIn(bytes);
    QJsonParseError error{};
    const QByteArray rows = normalisedRows(bytes, &error);
    if (error.error != QJsonParseError::NoError)
        return 0;
    const int count = QJsonDocument::fromJson(bytes).object().value(QLatin1String("rows")).toArray().size();
    require(packagesIn(rows) == count, "each row that is kept is one package");
    require(normalisedRows("{\"rows\":" + rows + '}', &error) == rows, "what is kept does not change again");
    return 0;
}
