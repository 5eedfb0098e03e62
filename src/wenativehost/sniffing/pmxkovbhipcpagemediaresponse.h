#pragma once

#include "mediarequest.h"
#include "pmxkovbhipctaskresponse.h"

#include <string>
#include <vector>

/// The media of a page, for the extension to show, and to report to the next host.
class pmxKovBhIpcPageMediaResponse : public pmxKovBhIpcTaskResponse {
public:
    /// The limit for the texts of a page, in bytes: browsers accept messages up to 1 MB, and JSON
    /// may need six bytes for one.
    static constexpr size_t maxTextBytes = size_t{144} * 1024;

    explicit pmxKovBhIpcPageMediaResponse(const std::string &pageUrl);

    /// Add the media best first; parts are playlists that belong to one of them. False if it does
    /// not fit.
    bool add(const MediaRequest &media, bool isPart);

    bool Serialize(pmxSerializationIoStream *stream, unsigned int flags) override;

private:
    struct Entry {
        MediaRequest media;
        bool isPart = false;
    };
    static bool serialize(pmxSerializationIoStream *node, Entry &entry);

    std::string m_pageUrl;
    std::vector<Entry> m_entries;
    size_t m_textBytes;
};
