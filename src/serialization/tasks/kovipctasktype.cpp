#include "kovipctasktype.h"

#include "pmxnamedvalues.h"

#include <algorithm>

namespace {

const pmxNamedValues<kov_ipc_task_type> &typeNames()
{
    static const pmxNamedValues<kov_ipc_task_type> table({
        {kov_ipc_task_handshake, "handshake"},
        {kov_ipc_task_ui_strings, "ui_strings"},
        {kov_ipc_task_create_downloads, "create_downloads"},
        {kov_ipc_task_shutdown, "shutdown"},
        {kov_ipc_task_query_settings, "query_settings"},
        {kov_ipc_task_browser_proxy, "browser_proxy"},
        {kov_ipc_task_window, "window"},
        {kov_ipc_task_video_sniffer, "video_sniffer"},
        {kov_ipc_task_network_request_notification, "network_request_notification"},
        {kov_ipc_task_browser_download_state_report, "browser_download_state_report"},
        {kov_ipc_task_post_settings, "post_settings"},
        {kov_ipc_task_kov_json_task, "kov_json_task"},
        {kov_ipc_task_key_state, "key_state"},
    });
    return table;
}

} // namespace

std::string kovIpcTaskTypeName(kov_ipc_task_type type)
{
    const std::string *name = typeNames().name(type);
    return name ? *name : std::string();
}

kov_ipc_task_type kovIpcTaskTypeFromText(std::string_view text)
{
    if (const kov_ipc_task_type *const type = typeNames().value(text))
        return *type;
    // White space as streams define it.
    constexpr std::string_view blanks = " \t\n\v\f\r";
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
    const kov_ipc_task_type *const type =
        typeNames().value(text.substr(0, text.find_first_of(blanks)));
    return type ? *type : kov_ipc_task_unknown;
}

std::ostream &operator<<(std::ostream &stream, kov_ipc_task_type type)
{
    return typeNames().write(stream, type);
}

std::istream &operator>>(std::istream &stream, kov_ipc_task_type &type)
{
    return typeNames().read(stream, type);
}
