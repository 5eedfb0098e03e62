#include "pmxkovbhipcbrowserproxytaskprocessor.h"

#include "pmxtaskresponses.h"

void pmxKovBhIpcBrowserProxyTaskProcessor::process(std::shared_ptr<pmxKovBhIpcTask> task,
                                                   Callback callback)
{
    const auto response = pmxResponseTo(*task);
    response->error = "failure";
    callback(task, response);
}
