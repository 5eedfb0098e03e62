#pragma once

#include <algorithm>
#include <iterator>
#include <string_view>

/// The errors of answers, which the extension compares. docs/protocol.md says when each is
/// answered. All other errors are texts for the user.
namespace pmxTaskErrors {

inline constexpr char appNotInstalled[] = "app_not_installed";
inline constexpr char busy[] = "busy";
inline constexpr char failure[] = "failure";
inline constexpr char ignoredDueSettings[] = "ignoredDueSettings";
inline constexpr char invalidArguments[] = "invalid arguments";
inline constexpr char invalidParameter[] = "invalid_parameter";
inline constexpr char noMediaFound[] = "no_media_found";
inline constexpr char notEnoughMemory[] = "not enough memory";
inline constexpr char unknownTaskType[] = "unknown_task_type";

/// False for a text for the user, which is in the user's language and may name files.
inline bool contains(std::string_view error)
{
    constexpr std::string_view all[] = {
        appNotInstalled,  busy,         failure,         ignoredDueSettings, invalidArguments,
        invalidParameter, noMediaFound, notEnoughMemory, unknownTaskType};
    return std::find(std::begin(all), std::end(all), error) != std::end(all);
}

} // namespace pmxTaskErrors
