#include "cataloguelisting.h"

#include "browseroptions.h"
#include "browserpaths.h"
#include "translationstate.h"

#include <TamselAccount/Service>
#include <TamselPackageManager/CouchDBPackageSource>
#include <TamselPackageManager/KeywordNode>
#include <TamselPackageManager/LocalPackageSource>
#include <TamselPackageManager/PackageNode>
#include <TamselPackageManager/PackageServer>

#include <QEventLoop>
#include <QFileInfo>
#include <QNetworkAccessManager>
#include <QTextStream>
#include <QTimer>

#include <algorithm>
#include <array>
#include <cstdio>
#include <functional>
#include <memory>
#include <vector>

namespace browser {

using ts::account::Service;
using ts::pm::CouchDBPackageSource;
using ts::pm::PackageNode;
using ts::pm::PackageServer;

namespace {

constexpr int timeLimit = 60000; // milliseconds
constexpr int columnCount = 4;
constexpr int columnGap = 2;
constexpr int widestColumn = 60; // characters

using Row = std::array<QString, columnCount>;

void printError(const QString &message)
{
    QTextStream(stderr) << QStringLiteral("tamsel-browser: ") << message << '\n';
}

bool allExist(const QStringList &directories)
{
    bool exist = true;
    for (const QString &directory : directories) {
        if (QFileInfo(directory).isDir())
            continue;
        printError(QStringLiteral("There is no directory '%1'.").arg(directory));
        exist = false;
    }
    return exist;
}

std::unique_ptr<Service> serviceFor(const ServerOption &server)
{
    auto service = std::make_unique<Service>(server.url);
    if (!server.token.isEmpty())
        service->setBearerToken(server.token);
    else if (!server.user.isEmpty())
        service->setUserAndPassword(server.user, server.password);
    return service;
}

QString troubleWith(PackageServer::PollResult result)
{
    switch (result) {
    case PackageServer::LedgerRejected:
        return QStringLiteral("The package server '%1' cannot be trusted.");
    case PackageServer::PollFailed:
        return QStringLiteral("The package server '%1' cannot be reached.");
    case PackageServer::LedgerUnchanged:
    case PackageServer::LedgerUpdated:
        break;
    }
    return QString();
}

// Returns whether it has given its packages.
bool waitForAnswer(const PackageServer &server)
{
    QEventLoop loop;
    QString trouble = troubleWith(PackageServer::PollFailed);
    QObject::connect(&server, &PackageServer::pollFinished, &loop, [&](PackageServer::PollResult result) {
        trouble = troubleWith(result);
        loop.quit();
    });
    QTimer::singleShot(timeLimit, &loop, &QEventLoop::quit);
    loop.exec();
    if (!trouble.isEmpty())
        printError(trouble.arg(displayed(server.service()->baseUrl())));
    return trouble.isEmpty();
}

// As above. There is nothing saved that an answer could be the same as: the data directory is a new one.
bool waitForAnswer(CouchDBPackageSource &database, const QUrl &url)
{
    QEventLoop loop;
    bool answered = false;
    QObject::connect(&database, &CouchDBPackageSource::updateRequired, &loop, [&] {
        answered = true;
        loop.quit();
    });
    database.update();
    QTimer patience; // for as long as a request is under way, which may be a second one by then
    QObject::connect(&patience, &QTimer::timeout, &loop, [&] {
        if (database.children().isEmpty())
            loop.quit();
    });
    patience.start(100);
    QTimer::singleShot(timeLimit, &loop, &QEventLoop::quit);
    loop.exec();
    if (!answered)
        printError(QStringLiteral("The database '%1' cannot be read.").arg(displayed(url)));
    return answered;
}

bool waitForTexts(const TranslationState &state)
{
    if (state.isSettled())
        return true;
    QEventLoop loop;
    QObject::connect(&state, &TranslationState::settledChanged, &loop, &QEventLoop::quit);
    QTimer::singleShot(timeLimit, &loop, &QEventLoop::quit);
    loop.exec();
    return state.isSettled();
}

QString categoriesOf(const PackageNode &package)
{
    QStringList names;
    const QSet<ts::pm::KeywordNode *> keywords = package.keywords();
    for (const ts::pm::KeywordNode *keyword : keywords) {
        if (keyword->isCategory())
            names.append(keyword->displayString().toString());
    }
    std::sort(names.begin(), names.end(),
              [](const QString &a, const QString &b) { return a.localeAwareCompare(b) < 0; });
    return names.join(QStringLiteral(", "));
}

bool isVisible(uint character)
{
    const QChar::Category category = QChar::category(character);
    return category != QChar::Other_Control && category != QChar::Other_Format;
}

// A table has one line for each package, whatever its texts hold, and nothing in it steers the terminal.
QString cell(const QString &text)
{
    QVector<uint> characters = text.simplified().toUcs4();
    characters.erase(std::remove_if(characters.begin(), characters.end(), std::not_fn(isVisible)),
                     characters.end());
    const bool fits = characters.size() <= widestColumn;
    const QString start =
        QString::fromUcs4(characters.constData(), fits ? characters.size() : widestColumn - 1);
    return fits ? start : start + QChar(0x2026); // an ellipsis
}

std::vector<Row> rowsOf(const ts::pm::PackageList &packages)
{
    std::vector<Row> rows;
    rows.push_back({QStringLiteral("ID"), QStringLiteral("TYPE"), QStringLiteral("TITLE"),
                    QStringLiteral("CATEGORIES")});
    for (const PackageNode *package : packages) {
        rows.push_back({cell(package->id().toString()), cell(package->type().toString()),
                        cell(package->readManifest(QStringLiteral("title")).toString()),
                        cell(categoriesOf(*package))});
    }
    return rows;
}

// Returns whether the output has taken all of it.
bool print(const std::vector<Row> &rows)
{
    std::array<int, columnCount> widths{};
    for (const Row &row : rows) {
        for (std::size_t column = 0; column < row.size(); ++column)
            widths[column] = std::max(widths[column], row[column].size());
    }
    QTextStream output(stdout);
    output.setCodec("UTF-8");
    for (const Row &row : rows) {
        QString line;
        for (std::size_t column = 0; column < row.size(); ++column)
            line += row[column].leftJustified(widths[column] + columnGap);
        output << line.trimmed() << '\n';
    }
    output.flush();
    return output.status() == QTextStream::Ok && std::fflush(stdout) == 0;
}

} // namespace

int listCatalogue(const BrowserOptions &options)
{
    const QStringList directories = cataloguesFor(options);
    if (!allExist(directories))
        return 1;
    std::vector<std::unique_ptr<Service>> services;
    std::vector<std::unique_ptr<ts::pm::PackageSource>> sources;
    for (const ServerOption &server : options.servers) {
        services.push_back(serviceFor(server));
        auto source = std::make_unique<PackageServer>(services.back().get());
        if (!waitForAnswer(*source))
            return 1;
        sources.push_back(std::move(source));
    }
    QNetworkAccessManager manager;
    for (const QUrl &database : options.databases) {
        auto source = std::make_unique<CouchDBPackageSource>(database, &manager);
        if (!waitForAnswer(*source, database))
            return 1;
        sources.push_back(std::move(source));
    }
    for (const QString &directory : directories)
        sources.push_back(std::make_unique<ts::pm::LocalPackageSource>(directory));
    ts::pm::PackageRepository repository(ts::pm::PackageRepository::PersistOnRequest);
    for (const auto &source : sources)
        repository.addSource(source.get());
    TranslationState state;
    state.setRepository(&repository);
    if (!waitForTexts(state)) {
        printError(QStringLiteral("The catalogue could not be read in time."));
        return 1;
    }
    const auto packages = ts::pm::PackageIndex::selectPackages(repository.packageIndex(), QString(), {}, {});
    if (packages.isEmpty())
        printError(QStringLiteral("There are no packages."));
    if (print(rowsOf(packages)))
        return 0;
    printError(QStringLiteral("The table cannot be written."));
    return 1;
}

} // namespace browser
