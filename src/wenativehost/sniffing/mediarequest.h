#pragma once

#include "networkrequest.h"

#include <optional>

/// A request whose response is media, with the properties of the whole resource from its headers.
struct MediaRequest {
    NetworkRequest request;
    MediaKind kind = MediaKind::NoMediaKind;
    /// In bytes; nothing if unknown.
    std::optional<quint64> size;
    /// The file name that the server suggests; empty if none.
    std::string suggestedName;
};
