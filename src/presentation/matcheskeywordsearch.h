#pragma once

#include "presentation/packagematcher.h"

#include <QScopedPointer>
#include <QString>

namespace ts::pm {

class MatchesKeywordSearchPrivate;

/**
 * Takes the packages that carry a keyword with a typed text in it, without regard to case. The text is used
 * as typed: not split into words, not trimmed.
 *
 * Ownership, threads and errors: as PackageMatcher.
 */
class TAMSELPACKAGEMANAGER_EXPORT MatchesKeywordSearch : public PackageMatcher
{
    Q_OBJECT
    /** Empty, as at first, it restricts nothing. */
    Q_PROPERTY(QString searchString READ searchString WRITE setSearchString NOTIFY searchStringChanged)
    /** PartialMatch at first. */
    Q_PROPERTY(ts::pm::MatchesKeywordSearch::MatchMode matchMode READ matchMode WRITE setMatchMode NOTIFY
                   matchModeChanged)

public:
    /** QML can set any number: one without a name counts as PartialMatch. */
    enum MatchMode : int {
        PartialMatch = 0, ///< a string of the keyword contains the text
        FullMatch = 1,    ///< a string of the keyword equals the text
    };
    Q_ENUM(MatchMode)

    explicit MatchesKeywordSearch(QObject *parent = nullptr);
    ~MatchesKeywordSearch() override;

    QString searchString() const;
    void setSearchString(const QString &text);

    MatchMode matchMode() const;
    void setMatchMode(MatchMode mode);

    std::function<bool(PackageNode *)> matchFunction() const override;

Q_SIGNALS:
    void searchStringChanged();
    void matchModeChanged();

private:
    QScopedPointer<MatchesKeywordSearchPrivate> d;
};

} // namespace ts::pm
