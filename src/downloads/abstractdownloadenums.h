#pragma once

#include "genericerrorcode.h"

#include <QtGlobal>

/**
 * The enumerations that the download records carry over the link, where each travels as its number.
 * Both ends must agree on the numbers: a number once given is never given to another meaning. A
 * number that an end does not know (its peer may be newer) is kept as it came and passed on.
 * Codes of generic errors, the other numbers that both ends share, are in genericerrorcode.h.
 */

/// What the user wants of a source that offers more than one thing.
enum class AbstractDownloadType : qint32 {
    Any = 0,
    Audio = 1,
    Video = 2,
    /// A stream described by a playlist, with all that belongs to it.
    MediaStream = 4,
};

enum class AbstractDownloadCreatedBy : qint32 {
    Unknown = 0,
    User = 1,
    /// Caught in a browser, or chosen there by the user.
    Browser = 2,
    /// Another download led to it.
    ParentDownload = 3,
    /// A program, through an interface without a user.
    Automation = 4,
};

/// Why a new-downloads request was not carried out although nothing failed.
enum class AbstractDownloadAbortReason : qint32 {
    None = 0,
    CancelledByUser = 1,
    /// The downloads are there already, or were merged into existing ones. Towards the browser this
    /// counts as success: the browser must not download them by itself.
    AlreadyExists = 2,
};

enum class AbstractDownloadPriority : qint32 {
    /// Of a file in a download only: leave it out.
    Skip = -1,
    /// Of a file in a download only: as the download.
    Inherited = 0,
    Low = 1,
    Normal = 2,
    High = 3,
};

/// What to do when the file to be written exists.
enum class AbstractDownloadFileExistsAction : qint32 {
    /// What the settings say.
    Default = 0,
    Rename = 1,
    Overwrite = 2,
    Skip = 3,
    Ask = 4,
};

/// Of 64 bits as in the lists that carry it; what a single file or download says is an int.
enum class AbstractFileType : qint64 {
    Unknown = 0,
    Video = 1,
    Music = 2,
    Document = 3,
    Image = 4,
};

/// How a mask changes the flags it is applied to.
enum class BitFlagsUpdateMode : qint32 {
    /// The mask becomes the flags.
    Replace = 0,
    SetBits = 1,
    ClearBits = 2,
};

enum class AbstractDownloadCommand : qint32 {
    None = 0,
    Start = 1,
    Stop = 2,
    /// From the beginning, what was downloaded is thrown away.
    Restart = 3,
    Remove = 4,
    /// With the files on disk.
    RemoveWithFiles = 5,
};

enum class NetworkTrafficDirection : qint32 {
    Download = 0,
    Upload = 1,
};

enum class CompareDownloadsResult : qint32 {
    Different = 0,
    /// The same resource to the same place.
    Same = 1,
    /// The same resource, but other options or another place.
    SameResource = 2,
};

/// What of a download can be set by the user. Each is one bit, so that
/// AbstractDownloadPersistentInfo::supportedOptions can name several.
enum class AbstractDownloadOption : qint64 {
    None = 0x0,
    Referer = 0x1,
    Cookies = 0x2,
    UserAgent = 0x4,
    PostData = 0x8,
    Mirrors = 0x10,
    Destination = 0x20,
    Title = 0x40,
    Priority = 0x80,
    Subtitles = 0x100,
    FilesPriorities = 0x200,
};

/// Which program, or which part of it, made a new-downloads request.
enum class AbstractNewDownloadsRequestSource : qint32 {
    Unknown = 0,
    User = 1,
    Browser = 2,
};

/// Bits of AbstractDownloadSourceInfo::flags.
namespace AbstractDownloadSourceFlag {
enum Flag : quint32 {
    /// The page was not known, and the referring page was taken for it.
    WebPageUrlIsReferer = 0x1,
};
}
