#include "presentation/keywordsuggestionmodel.h"

#include "index/keywordnode.h"
#include "index/packageindex.h"
#include "pooljobs_p.h"
#include "presentation/inturn_p.h"
#include "presentation/providerhandle_p.h"

#include <QFutureWatcher>
#include <QRegularExpression>
#include <QSet>

#include <algorithm>

namespace ts::pm {

namespace {

constexpr int suggestionRole = 0;
constexpr int displayStringRole = 1;

using StringsWatcher = QFutureWatcher<QStringList>;

// Which keywords lead to the type is the slow question, so it is asked only of those that have something to
// offer.
QStringList findSuggestions(const QSharedPointer<PackageIndex> &index, const QString &type,
                            const QString &search)
{
    QSet<QString> found;
    for (const KeywordNode *keyword : PackageIndex::selectKeywords(index, {})) {
        const QVector<QStringRef> suggestions = keyword->suggestions(QStringRef(&search));
        if (suggestions.isEmpty() || (!type.isEmpty() && !keyword->linksToPackageType(QStringRef(&type))))
            continue;
        for (const QStringRef &suggestion : suggestions)
            found.insert(suggestion.toString());
    }
    QStringList sorted = found.values();
    std::sort(sorted.begin(), sorted.end());
    return sorted;
}

} // namespace

class KeywordSuggestionModelPrivate
{
public:
    explicit KeywordSuggestionModelPrivate(KeywordSuggestionModel *q)
        : q(q)
        , watcher(new StringsWatcher(q))
    {
    }

    void queueUpdate()
    {
        if (updatePending)
            return;
        updatePending = true;
        QMetaObject::invokeMethod(q, "updateList", Qt::QueuedConnection);
    }

    QString highlighted(const QString &suggestion) const
    {
        QString text = suggestion.toHtmlEscaped();
        if (highlight.isValid()) // a text of many thousand characters makes no expression
            text.replace(highlight, QStringLiteral("<b>\\1</b>"));
        return text;
    }

    KeywordSuggestionModel *const q;
    ProviderHandle provider;
    StringsWatcher *const watcher; // of the newest job; child of q
    bool updatePending = false;
    QString packageType;
    QString searchString;
    QRegularExpression highlight;
    QStringList suggestions;
};

KeywordSuggestionModel::KeywordSuggestionModel(QObject *parent)
    : QAbstractListModel(parent)
    , d(new KeywordSuggestionModelPrivate(this))
{
    connect(d->watcher, &StringsWatcher::finished, this, &KeywordSuggestionModel::finishUpdate);
}

KeywordSuggestionModel::~KeywordSuggestionModel() = default;

QString KeywordSuggestionModel::packageType() const
{
    return d->packageType;
}

void KeywordSuggestionModel::setPackageType(const QString &type)
{
    if (d->packageType == type)
        return;
    d->packageType = type;
    inTurn(this, &KeywordSuggestionModel::packageTypeChanged, [this] { d->queueUpdate(); });
}

QObject *KeywordSuggestionModel::packageProvider() const
{
    return d->provider.object();
}

void KeywordSuggestionModel::setPackageProvider(QObject *provider)
{
    if (d->provider.is(provider))
        return;
    if (!d->provider.assign(provider, this, &KeywordSuggestionModel::updateList,
                            ProviderHandle::KeepUnusable))
        return;
    d->queueUpdate();
    Q_EMIT packageProviderChanged();
}

QString KeywordSuggestionModel::searchString() const
{
    return d->searchString;
}

void KeywordSuggestionModel::setSearchString(const QString &text)
{
    if (d->searchString == text)
        return;
    d->searchString = text;
    // It runs over words that have been escaped, so what it looks for has to be.
    const QString pattern = QRegularExpression::escape(text.toHtmlEscaped());
    d->highlight =
        QRegularExpression(QStringLiteral("(%1)").arg(pattern), QRegularExpression::CaseInsensitiveOption);
    inTurn(this, &KeywordSuggestionModel::searchStringChanged, [this] { d->queueUpdate(); });
}

int KeywordSuggestionModel::count() const
{
    return d->suggestions.size();
}

int KeywordSuggestionModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : d->suggestions.size();
}

QVariant KeywordSuggestionModel::data(const QModelIndex &index, int role) const
{
    const int row = index.row();
    if (row < 0 || row >= d->suggestions.size())
        return QVariant();
    switch (role) {
    case suggestionRole:
        return d->suggestions.at(row);
    case displayStringRole:
        return d->highlighted(d->suggestions.at(row));
    default:
        return QVariant();
    }
}

QHash<int, QByteArray> KeywordSuggestionModel::roleNames() const
{
    return {{suggestionRole, QByteArrayLiteral("suggestion")},
            {displayStringRole, QByteArrayLiteral("displayString")}};
}

QString KeywordSuggestionModel::suggestionAt(int index) const
{
    return d->suggestions.value(index);
}

void KeywordSuggestionModel::updateList()
{
    d->updatePending = false;
    const QSharedPointer<PackageIndex> index = d->provider.packageIndex();
    if (index && !d->searchString.isEmpty()) {
        const auto job = [index, type = d->packageType, search = d->searchString] {
            return findSuggestions(index, type, search);
        };
        runOnPool(d->watcher, job);
    } else if (!d->suggestions.isEmpty()) {
        beginResetModel();
        d->suggestions.clear();
        inTurn(this, &KeywordSuggestionModel::endResetModel, &KeywordSuggestionModel::countChanged);
    }
}

void KeywordSuggestionModel::finishUpdate()
{
    const int oldCount = d->suggestions.size();
    beginResetModel();
    d->suggestions = d->watcher->result();
    const auto tellCount = [this, oldCount] {
        if (d->suggestions.size() != oldCount)
            Q_EMIT countChanged();
    };
    inTurn(this, &KeywordSuggestionModel::endResetModel, tellCount);
}

} // namespace ts::pm
