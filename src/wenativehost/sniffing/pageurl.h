#pragma once

#include <string_view>

/// The URL without its fragment, which identifies the page or resource.
inline std::string_view withoutFragment(std::string_view url)
{
    return url.substr(0, url.find('#'));
}
