#include "pmxtaskresponses.h"

#include "pmxjsonserializeobject.h"

#include <sstream>
#include <string_view>

std::optional<QString> pmxResponseText(pmxKovBhIpcTaskResponse &response)
{
    std::ostringstream json;
    if (!pmxJsonSerializeObject(response, json, 0))
        return std::nullopt;
    const std::string_view text = json.view();
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}
