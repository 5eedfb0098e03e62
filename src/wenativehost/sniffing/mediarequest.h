#pragma once

#include "networkrequest.h"

#include <optional>

/// A request whose answer is media, and what its headers say of the whole resource.
struct MediaRequest {
    NetworkRequest request;
    MediaKind kind = MediaKind::NoMediaKind;
    /// In bytes; nothing if no answer told.
    std::optional<quint64> size;
    /// The file name that the server suggests; empty if none.
    std::string suggestedName;
};
