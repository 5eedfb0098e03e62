#pragma once

#include "mediarequest.h"
#include "pmxkovbhipctaskresponse.h"

#include <string>
#include <vector>

/// What was found on a page, for the extension to show, and to tell another host of again.
class pmxKovBhIpcPageMediaResponse : public pmxKovBhIpcTaskResponse {
public:
    /// Texts of a page beyond this are not told of, since browsers take no message over 1 MB, and
    /// JSON may need six bytes for one.
    static constexpr size_t maxTextBytes = size_t{144} * 1024;

    explicit pmxKovBhIpcPageMediaResponse(const std::string &pageUrl);

    /// Media are added best first; parts are playlists that belong to one of them. False when there
    /// is no room.
    bool add(const MediaRequest &media, bool isPart);

    bool Serialize(pmxSerializationIoStream *stream, unsigned int flags) override;

private:
    struct Entry {
        MediaRequest media;
        bool isPart;
    };
    static bool serialize(pmxSerializationIoStream *node, Entry &entry);

    std::string m_pageUrl;
    std::vector<Entry> m_entries;
    size_t m_textBytes;
};
