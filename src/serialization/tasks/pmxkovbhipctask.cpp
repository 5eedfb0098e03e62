#include "pmxkovbhipctask.h"

#include "pmxserializationiostream.h"
#include "qtappdefaultlogger.h"

kov_ipc_task_type pmxKovBhIpcTask::get_type() const { return kovIpcTaskTypeFromText(type); }

bool pmxKovBhIpcTask::Serialize(pmxSerializationIoStream *stream, unsigned int)
{
    const bool ok = serializeMembers(stream);
    if (stream->isReading())
        m_readFailed = !ok;
    return ok;
}

bool pmxKovBhIpcTask::serializeMembers(pmxSerializationIoStream *stream)
{
    if (!stream->SerializeValue("id", id, true) || !stream->SerializeValue("type", type, true))
        return false;
    const kov_ipc_task_type taskType = get_type();
    if (taskType == kov_ipc_task_kov_json_task)
        return stream->SerializeValue("json", json, true);
    pmxSerializable *record = subRecord(taskType);
    if (!record)
        return true;
    const auto node = stream->SelectOrCreateNode(kovIpcTaskTypeName(taskType), false);
    if (!node)
        return false;
    if (!node->canHaveMembers())
        logLine(1,
                QStringLiteral("[pmxKovBhIpcTask]: WARNING: the record \"%1\" is no object")
                    .arg(QString::fromStdString(kovIpcTaskTypeName(taskType))));
    return record->Serialize(node.get(), 0);
}

pmxSerializable *pmxKovBhIpcTask::subRecord(kov_ipc_task_type taskType)
{
    switch (taskType) {
    case kov_ipc_task_handshake:
        return &handshake;
    case kov_ipc_task_create_downloads:
        return &create_downloads;
    case kov_ipc_task_browser_proxy:
        return &browser_proxy;
    case kov_ipc_task_window:
        return &window;
    case kov_ipc_task_video_sniffer:
        return &video_sniffer;
    case kov_ipc_task_network_request_notification:
        return &network_request_notification;
    case kov_ipc_task_browser_download_state_report:
        return &browser_download_state_report;
    case kov_ipc_task_post_settings:
        return &post_settings;
    case kov_ipc_task_unknown:
    case kov_ipc_task_ui_strings:
    case kov_ipc_task_shutdown:
    case kov_ipc_task_query_settings:
    case kov_ipc_task_kov_json_task:
    case kov_ipc_task_key_state:
        break;
    }
    return nullptr;
}
