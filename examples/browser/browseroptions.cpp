#include "browseroptions.h"

#include "latin1.h"

#include <QCommandLineParser>
#include <QLocale>
#include <QRegularExpression>

namespace browser {

namespace {

constexpr int smallestSide = 320; // pixels

constexpr QLatin1String directoryOption = latin1("directory");
constexpr QLatin1String helpOption = latin1("help");
constexpr QLatin1String languageOption = latin1("language");
constexpr QLatin1String listOption = latin1("list");
constexpr QLatin1String screenshotOption = latin1("screenshot");
constexpr QLatin1String sizeOption = latin1("size");
constexpr QLatin1String themeOption = latin1("theme");
constexpr QLatin1String variantOption = latin1("screenshot-variant");
constexpr QLatin1String versionOption = latin1("version");

void addOptions(QCommandLineParser &parser)
{
    parser.setApplicationDescription(QStringLiteral("Browses catalogues of content packages."));
    parser.addOption({{QStringLiteral("h"), helpOption}, QStringLiteral("Print this help and exit.")});
    parser.addOption({{QStringLiteral("v"), versionOption}, QStringLiteral("Print the version and exit.")});
    parser.addOption({directoryOption,
                      QStringLiteral("Show the catalogue in PATH. May be given several times; without it the "
                                     "sample catalogue is shown."),
                      QStringLiteral("PATH")});
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

BrowserOptions read(const QCommandLineParser &parser)
{
    BrowserOptions options;
    options.action = chosenAction(parser);
    options.directories = parser.values(directoryOption);
    options.language = parser.value(languageOption);
    options.theme = parser.value(themeOption);
    options.screenshotDirectory = parser.value(screenshotOption);
    options.screenshotVariant = parser.value(variantOption);
    options.windowSize = toSize(parser.value(sizeOption));
    return options;
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
    return QString();
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
