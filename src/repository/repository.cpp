#include "repository/repository.h"

namespace ts::pm {

class RepositoryPrivate
{
public:
    Repository *const q;
};

Repository::Repository(QObject *parent)
    : QObject(parent)
    , d(new RepositoryPrivate{this})
{
}

Repository::~Repository() = default;

} // namespace ts::pm
