#pragma once

#include "tamselpackagemanager_export.h"

#include <QAbstractListModel>
#include <QScopedPointer>

namespace ts::pm {

class KeywordSuggestionModelPrivate;

/**
 * The words of the catalogue that contain what has been typed, without regard to case, each once, ordered by
 * UTF-16 code units.
 *
 * The words are found on the global thread pool, once for each pass of the event loop in which something
 * changed. Each update is one model reset. Only another search takes the place of one that is under way: one
 * that was begun before the text is emptied, or the provider taken away, still shows its words when it ends.
 *
 * Roles: 0 "suggestion", the word as it is; 1 "displayString", the word as HTML with every occurrence of the
 * typed text in bold.
 *
 * Ownership: the provider is not owned.
 * Threads: repository thread only.
 * Signals: countChanged() after a reset that changed the number of rows.
 * Errors: a provider without the interface is logged in "tamsel.packages" and gives no words, though
 * packageProvider goes on naming it.
 */
class TAMSELPACKAGEMANAGER_EXPORT KeywordSuggestionModel : public QAbstractListModel
{
    Q_OBJECT
    /** The type that the keywords have to lead to. Empty, as at first, it takes all keywords. */
    Q_PROPERTY(QString packageType READ packageType WRITE setPackageType NOTIFY packageTypeChanged)
    /** An object that implements IPackageProvider. Null at first. */
    Q_PROPERTY(
        QObject *packageProvider READ packageProvider WRITE setPackageProvider NOTIFY packageProviderChanged)
    /** The typed text. Empty, as at first, it gives no words. */
    Q_PROPERTY(QString searchString READ searchString WRITE setSearchString NOTIFY searchStringChanged)
    /** Number of rows. */
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    explicit KeywordSuggestionModel(QObject *parent = nullptr);
    ~KeywordSuggestionModel() override;

    QString packageType() const;
    void setPackageType(const QString &type);

    QObject *packageProvider() const;
    void setPackageProvider(QObject *provider);

    QString searchString() const;
    void setSearchString(const QString &text);

    int count() const;

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QHash<int, QByteArray> roleNames() const override;

    /** The word in row \a index; a null string if there is no such row. */
    Q_INVOKABLE QString suggestionAt(int index) const;

Q_SIGNALS:
    void packageTypeChanged();
    void packageProviderChanged();
    void searchStringChanged();
    void countChanged();

private Q_SLOTS:
    void updateList();
    void finishUpdate();

private:
    QScopedPointer<KeywordSuggestionModelPrivate> d;
};

} // namespace ts::pm
