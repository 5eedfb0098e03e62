#include "pmxkovbhipckeystatetaskprocessor.h"

#include "consolemessagessender.h"
#include "keystatewatcher.h"
#include "pmxkovbhipckeystatetaskresponse.h"
#include "pmxtaskresponses.h"

#include <utility>

namespace {

void describeKey(pmxKovBhIpcKeyStateTaskResponse &response, KeyStateWatcher &watcher)
{
    response.pressed = watcher.isPressed(false);
    response.keyCode = watcher.keyCode();
}

} // namespace

pmxKovBhIpcKeyStateTaskProcessor::pmxKovBhIpcKeyStateTaskProcessor(
    QWeakPointer<ConsoleMessagesSender> sender, QSharedPointer<KeyStateWatcher> watcher,
    QObject *parent)
    : pmxKovBhIpcTaskProcessor(parent), m_sender(std::move(sender)), m_watcher(std::move(watcher))
{
    connect(m_watcher.data(), &KeyStateWatcher::changed, this,
            &pmxKovBhIpcKeyStateTaskProcessor::onKeyChanged, Qt::DirectConnection);
}

void pmxKovBhIpcKeyStateTaskProcessor::process(std::shared_ptr<pmxKovBhIpcTask> task,
                                               Callback callback)
{
    m_subscribed = true;
    const auto response = pmxResponseTo<pmxKovBhIpcKeyStateTaskResponse>(*task);
    describeKey(*response, *m_watcher);
    callback(task, response);
}

void pmxKovBhIpcKeyStateTaskProcessor::onKeyChanged()
{
    const auto sender = m_sender.toStrongRef();
    if (!m_subscribed || !sender)
        return;
    pmxKovBhIpcKeyStateTaskResponse response;
    response.type = kovIpcTaskTypeName(kov_ipc_task_key_state);
    describeKey(response, *m_watcher);
    if (const auto text = pmxResponseText(response))
        sender->sendUtf8(*text);
}
