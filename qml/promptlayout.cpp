#include "promptlayout.h"

#include <QMetaMethod>
#include <QMetaProperty>
#include <QVariant>

namespace ts::pm {

namespace {

// Few enough that collecting them costs next to nothing, many enough that laying out does not count either.
constexpr int changesBetweenLayouts = 256;

} // namespace

PromptLayout::PromptLayout(QObject *view)
    : QObject(view)
    , view(view)
{
    const QMetaObject *type = view->metaObject();
    const QMetaMethod modelChanged = type->property(type->indexOfProperty("model")).notifySignal();
    if (!modelChanged.isValid())
        return;
    const QMetaMethod watch = staticMetaObject.method(staticMetaObject.indexOfSlot("watchModel()"));
    connect(view, modelChanged, this, watch);
    watchModel();
}

void PromptLayout::setEnabled(bool on)
{
    if (enabled == on)
        return;
    enabled = on;
    Q_EMIT enabledChanged();
}

// The view is asked only while its model is new: it goes on naming one that has been destroyed.
void PromptLayout::watchModel()
{
    if (model)
        model->disconnect(this);
    model = qobject_cast<QAbstractItemModel *>(view->property("model").value<QObject *>());
    if (!model)
        return;
    connect(model, &QAbstractItemModel::rowsRemoved, this, &PromptLayout::countChange);
    connect(model, &QAbstractItemModel::rowsInserted, this, &PromptLayout::countChange);
    connect(model, &QAbstractItemModel::rowsMoved, this, &PromptLayout::countChange);
}

// Counts on through updates: where the layouts fall does not matter.
void PromptLayout::countChange()
{
    if (enabled && ++changes % changesBetweenLayouts == 0)
        QMetaObject::invokeMethod(view, "forceLayout", Qt::DirectConnection);
}

} // namespace ts::pm
