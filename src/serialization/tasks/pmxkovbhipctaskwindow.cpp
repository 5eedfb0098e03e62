#include "pmxkovbhipctaskwindow.h"

bool pmxKovBhIpcTaskWindow::Serialize(pmxSerializationIoStream *stream, unsigned int flags)
{
    return task.Serialize(stream, flags);
}
