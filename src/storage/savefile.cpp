#include "storage/savefile_p.h"

#include <QSaveFile>

namespace ts::pm {

bool commitFlushed(QSaveFile &file)
{
    return file.flush() && file.commit();
}

} // namespace ts::pm
