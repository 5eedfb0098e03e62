#pragma once

#include <algorithm>
#include <iterator>
#include <string_view>

/// The errors of answers, which the extension compares. docs/protocol.md says when each is
/// answered. All other errors are texts for the user.
namespace pmxTaskErrors {

constexpr char appNotInstalled[] = "app_not_installed";
constexpr char busy[] = "busy";
constexpr char failure[] = "failure";
constexpr char ignoredDueSettings[] = "ignoredDueSettings";
constexpr char invalidArguments[] = "invalid arguments";
constexpr char invalidParameter[] = "invalid_parameter";
constexpr char noMediaFound[] = "no_media_found";
constexpr char notEnoughMemory[] = "not enough memory";
constexpr char unknownTaskType[] = "unknown_task_type";

/// False for a text for the user, which is in the user's language and may name files.
inline bool contains(std::string_view error)
{
    constexpr std::string_view all[] = {
        appNotInstalled,  busy,         failure,         ignoredDueSettings, invalidArguments,
        invalidParameter, noMediaFound, notEnoughMemory, unknownTaskType};
    return std::find(std::begin(all), std::end(all), error) != std::end(all);
}

} // namespace pmxTaskErrors
