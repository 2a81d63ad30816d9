#pragma once

#include <QAbstractItemModel>
#include <QObject>
#include <QPointer>

#include <qqml.h>

namespace ts::pm {

/**
 * Lays a ListView or GridView out while its model changes, instead of once at the end.
 *
 * A view collects the changes of its model until it is laid out, and each change costs it a look at all those
 * collected before. When a filter takes thousands of scattered rows away at once, that is what the window
 * stands still for. Attached to the view, as "PromptLayout.enabled: true", this keeps the collection short.
 * What the view shows in the end is the same.
 *
 * Ownership: belongs to the view.
 * Threads: the view's thread.
 * Errors: an object that has no "model" and no forceLayout() is left alone.
 */
class PromptLayout : public QObject
{
    Q_OBJECT
    /** False at first. */
    Q_PROPERTY(bool enabled READ isEnabled WRITE setEnabled NOTIFY enabledChanged)

public:
    explicit PromptLayout(QObject *view);

    static PromptLayout *qmlAttachedProperties(QObject *view) { return new PromptLayout(view); }

    bool isEnabled() const { return enabled; }
    void setEnabled(bool on);

Q_SIGNALS:
    void enabledChanged();

private Q_SLOTS:
    void watchModel();
    void countChange();

private:
    QObject *const view; // the parent
    QPointer<QAbstractItemModel> model;
    int changes = 0;
    bool enabled = false;
};

} // namespace ts::pm

QML_DECLARE_TYPEINFO(ts::pm::PromptLayout, QML_HAS_ATTACHED_PROPERTIES)
