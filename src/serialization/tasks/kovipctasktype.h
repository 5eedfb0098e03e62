#pragma once

#include <istream>
#include <ostream>
#include <string>
#include <string_view>

/// What a message from the extension asks for.
enum kov_ipc_task_type {
    kov_ipc_task_unknown = 0,
    kov_ipc_task_handshake = 1,
    kov_ipc_task_ui_strings = 2,
    kov_ipc_task_create_downloads = 3,
    kov_ipc_task_shutdown = 4,
    kov_ipc_task_query_settings = 5,
    kov_ipc_task_browser_proxy = 6,
    kov_ipc_task_window = 7,
    kov_ipc_task_video_sniffer = 8,
    kov_ipc_task_network_request_notification = 9,
    kov_ipc_task_browser_download_state_report = 10,
    kov_ipc_task_post_settings = 11,
    kov_ipc_task_kov_json_task = 12,
    kov_ipc_task_key_state = 13,
};

/// The type's name in JSON, such as "key_state"; empty for a value without a name.
std::string kovIpcTaskTypeName(kov_ipc_task_type type);

/// The type that the first word of the text names; unknown when it names none.
kov_ipc_task_type kovIpcTaskTypeFromText(std::string_view text);

/// By name. Reading takes one word; an unknown name sets the fail state and reads nothing.
std::ostream &operator<<(std::ostream &stream, kov_ipc_task_type type);
std::istream &operator>>(std::istream &stream, kov_ipc_task_type &type);
