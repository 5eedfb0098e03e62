#include "pmxkovbhipckovjsontaskprocessor.h"

#include "abstractjsonrequestsmanager.h"
#include "pmxtaskresponses.h"

#include <string>
#include <utility>

pmxKovBhIpcKovJsonTaskProcessor::pmxKovBhIpcKovJsonTaskProcessor(
    QSharedPointer<AbstractJsonRequestsManager> jsonRequestsManager)
    : m_jsonRequestsManager(std::move(jsonRequestsManager))
{
}

void pmxKovBhIpcKovJsonTaskProcessor::process(std::shared_ptr<pmxKovBhIpcTask> task,
                                              Callback callback)
{
    const QString json = QString::fromStdString(task->json);
    m_jsonRequestsManager->send(std::stoll(task->id), json, true);
    callback(task, pmxResponseTo(*task));
}
