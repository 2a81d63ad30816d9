#include "storage/ifileproxy.h"

namespace ts::pm {

IFileProxy::IFileProxy() = default;

IFileProxy::~IFileProxy() = default;

} // namespace ts::pm
