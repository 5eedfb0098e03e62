#include "pmxkovbhipcbrowserproxytaskprocessor.h"

#include "pmxtaskerrors.h"
#include "pmxtaskresponses.h"

void pmxKovBhIpcBrowserProxyTaskProcessor::process(std::shared_ptr<pmxKovBhIpcTask> task,
                                                   Callback callback)
{
    const auto response = pmxResponseTo(*task);
    response->error = pmxTaskErrors::failure;
    callback(task, response);
}
