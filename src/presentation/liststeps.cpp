#include "presentation/liststeps_p.h"

#include "presentation/packagelistmodel_p.h"

namespace ts::pm {

void ResetStep::operator()() const
{
    model->resetRows(list);
}

void RemoveStep::operator()() const
{
    if (first >= 0 && last < model->rows.size())
        model->removeRows(first, last);
}

void InsertStep::operator()() const
{
    if (position <= model->rows.size())
        model->insertRows(position, block);
}

void MoveStep::operator()() const
{
    if (from < model->rows.size() && to < model->rows.size())
        model->moveRow(from, to);
}

} // namespace ts::pm
