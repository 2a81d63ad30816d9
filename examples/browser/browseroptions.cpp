#include "browseroptions.h"

#include "browserpaths.h"
#include "latin1.h"

#include <QCommandLineParser>
#include <QLocale>
#include <QRegularExpression>

namespace browser {

namespace {

constexpr int smallestSide = 320; // pixels

constexpr QLatin1String couchdbOption = latin1("couchdb");
constexpr QLatin1String directoryOption = latin1("directory");
constexpr QLatin1String helpOption = latin1("help");
constexpr QLatin1String languageOption = latin1("language");
constexpr QLatin1String listOption = latin1("list");
constexpr QLatin1String passwordOption = latin1("password");
constexpr QLatin1String screenshotOption = latin1("screenshot");
constexpr QLatin1String serverOption = latin1("server");
constexpr QLatin1String sizeOption = latin1("size");
constexpr QLatin1String themeOption = latin1("theme");
constexpr QLatin1String tokenOption = latin1("token");
constexpr QLatin1String userOption = latin1("user");
constexpr QLatin1String variantOption = latin1("screenshot-variant");
constexpr QLatin1String versionOption = latin1("version");

void addServerOptions(QCommandLineParser &parser)
{
    parser.addOption({serverOption,
                      QStringLiteral("Show the packages of the package server at URL. May be given several "
                                     "times; the credentials below then go to the servers in that order."),
                      QStringLiteral("URL")});
    parser.addOption(
        {tokenOption, QStringLiteral("Show the server this bearer token."), QStringLiteral("TOKEN")});
    parser.addOption({userOption, QStringLiteral("Log in to the server as NAME."), QStringLiteral("NAME")});
    parser.addOption({passwordOption,
                      QStringLiteral("Log in with that password; otherwise with the one in the environment "
                                     "variable TAMSEL_PASSWORD, which other users cannot read."),
                      QStringLiteral("PASSWORD")});
}

void addOptions(QCommandLineParser &parser)
{
    // Those of Qt, such as -reverse, are words and no options of one letter each.
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    parser.setApplicationDescription(QStringLiteral("Browses catalogues of content packages."));
    parser.addOption({{QStringLiteral("h"), helpOption}, QStringLiteral("Print this help and exit.")});
    parser.addOption({{QStringLiteral("v"), versionOption}, QStringLiteral("Print the version and exit.")});
    parser.addOption(
        {directoryOption,
         QStringLiteral("Show the catalogue in PATH. May be given several times; without it, and "
                        "without --server and --couchdb, the sample catalogue is shown."),
         QStringLiteral("PATH")});
    parser.addOption({couchdbOption,
                      QStringLiteral("Show the packages of the CouchDB database at URL. May be given several "
                                     "times."),
                      QStringLiteral("URL")});
    parser.addOption(
        {languageOption, QStringLiteral("Use the language CODE, such as de or en."), QStringLiteral("CODE")});
    parser.addOption({listOption, QStringLiteral("Print the catalogue as a table and exit.")});
    parser.addOption(
        {screenshotOption,
         QStringLiteral("Write a picture of each view into DIR and exit. Does so in both languages "
                        "unless --language is given, and in both themes unless --theme is given."),
         QStringLiteral("DIR")});
    parser.addOption(
        {sizeOption, QStringLiteral("Open the window with that size."), QStringLiteral("WIDTHxHEIGHT")});
    parser.addOption(
        {themeOption, QStringLiteral("Use the theme NAME: light, dark or system."), QStringLiteral("NAME")});
    addServerOptions(parser);
    QCommandLineOption variant{variantOption, QString(), QStringLiteral("NAME")};
    variant.setFlags(QCommandLineOption::HiddenFromHelp);
    parser.addOption(variant);
}

BrowserOptions::Action chosenAction(const QCommandLineParser &parser)
{
    using Action = BrowserOptions::Action;
    if (parser.isSet(helpOption))
        return Action::Help;
    if (parser.isSet(versionOption))
        return Action::Version;
    if (parser.isSet(listOption))
        return Action::List;
    return parser.isSet(screenshotOption) ? Action::Screenshot : Action::Browse;
}

// Null for a text that is no size, or one in which nothing could be read.
QSize toSize(const QString &text)
{
    static const QRegularExpression pattern(QStringLiteral("^([0-9]{1,5})x([0-9]{1,5})$"));
    const QRegularExpressionMatch match = pattern.match(text);
    const QSize size(match.captured(1).toInt(), match.captured(2).toInt());
    return size.width() < smallestSide || size.height() < smallestSide ? QSize() : size;
}

// QLocale takes any text, and gives the C locale for what it does not know.
bool isKnownLanguage(const QString &code)
{
    return QLocale(code).language() != QLocale::C;
}

QVector<ServerOption> readServers(const QCommandLineParser &parser)
{
    const QStringList urls = parser.values(serverOption);
    const QStringList tokens = parser.values(tokenOption);
    const QStringList users = parser.values(userOption);
    const QStringList passwords = parser.values(passwordOption);
    const QString usualPassword = qEnvironmentVariable("TAMSEL_PASSWORD");
    QVector<ServerOption> servers;
    for (int i = 0; i < urls.size(); ++i)
        servers.append(
            {QUrl(urls.at(i)), tokens.value(i), users.value(i), passwords.value(i, usualPassword)});
    return servers;
}

BrowserOptions read(const QCommandLineParser &parser)
{
    BrowserOptions options;
    options.action = chosenAction(parser);
    options.directories = parser.values(directoryOption);
    options.servers = readServers(parser);
    const QStringList databases = parser.values(couchdbOption);
    for (const QString &database : databases)
        options.databases.append(QUrl(database).adjusted(QUrl::StripTrailingSlash));
    options.language = parser.value(languageOption);
    options.theme = parser.value(themeOption);
    options.screenshotDirectory = parser.value(screenshotOption);
    options.screenshotVariant = parser.value(variantOption);
    options.windowSize = toSize(parser.value(sizeOption));
    return options;
}

bool isHttp(const QUrl &url)
{
    return !url.host().isEmpty()
           && (url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https"));
}

// Null if there is none.
QString findServerError(const QCommandLineParser &parser, const BrowserOptions &options)
{
    for (const ServerOption &server : options.servers) {
        if (!isHttp(server.url))
            return QStringLiteral("'%1' is no URL of a server.").arg(displayed(server.url));
    }
    for (const QUrl &database : options.databases) {
        if (!isHttp(database))
            return QStringLiteral("'%1' is no URL of a database.").arg(displayed(database));
    }
    for (const QLatin1String option : {tokenOption, userOption, passwordOption}) {
        if (parser.values(option).size() > options.servers.size())
            return QStringLiteral("There is no --server for this --%1.").arg(option);
    }
    return QString();
}

// Null if there is none.
QString findError(const QCommandLineParser &parser, const BrowserOptions &options)
{
    if (!parser.positionalArguments().isEmpty())
        return QStringLiteral("Unexpected argument '%1'.").arg(parser.positionalArguments().constFirst());
    if (parser.isSet(sizeOption) && options.windowSize.isEmpty())
        return QStringLiteral("'%1' is no usable size.").arg(parser.value(sizeOption));
    if (parser.isSet(languageOption) && !isKnownLanguage(options.language))
        return QStringLiteral("Unknown language '%1'.").arg(options.language);
    static const QStringList themes{QString(), QStringLiteral("light"), QStringLiteral("dark"),
                                    QStringLiteral("system")};
    if (!themes.contains(options.theme))
        return QStringLiteral("Unknown theme '%1'.").arg(options.theme);
    if (parser.isSet(screenshotOption) && options.screenshotDirectory.isEmpty())
        return QStringLiteral("--screenshot needs a directory.");
    return findServerError(parser, options);
}

} // namespace

BrowserOptions BrowserOptions::parse(const QStringList &arguments)
{
    QCommandLineParser parser;
    addOptions(parser);
    const bool understood = parser.parse(arguments);
    BrowserOptions options = read(parser);
    options.error = understood ? findError(parser, options) : parser.errorText();
    return options;
}

BrowserOptions BrowserOptions::glance(const QStringList &arguments)
{
    QCommandLineParser parser;
    addOptions(parser);
    parser.parse(arguments); // whether that worked is for parse() to say
    return read(parser);
}

QString BrowserOptions::helpText()
{
    QCommandLineParser parser;
    addOptions(parser);
    return parser.helpText();
}

} // namespace browser
