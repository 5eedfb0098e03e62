#pragma once

#include "genericerrorcode.h"

#include <QtGlobal>

/**
 * The enumerations in download records. On the link each is encoded as its number, so both ends
 * must agree on the numbers: a number is never reused for another meaning. An unknown number (the
 * peer may be newer) is kept and passed on. The codes of generic errors, which both ends share,
 * too, are in genericerrorcode.h.
 */

/// What the user wants from a source that offers several things.
enum class AbstractDownloadType : qint32 {
    Any = 0,
    Audio = 1,
    Video = 2,
    /// A stream described by a playlist, with all its parts.
    MediaStream = 4,
};

enum class AbstractDownloadCreatedBy : qint32 {
    Unknown = 0,
    User = 1,
    /// Caught in a browser, or chosen there by the user.
    Browser = 2,
    /// Another download led to it.
    ParentDownload = 3,
    /// A program, through an API.
    Automation = 4,
};

/// Why a new-downloads request was not carried out although nothing failed.
enum class AbstractDownloadAbortReason : qint32 {
    None = 0,
    CancelledByUser = 1,
    /// The downloads exist already, or were merged into existing ones. For the browser this counts
    /// as success: it must not download them itself.
    AlreadyExists = 2,
};

enum class AbstractDownloadPriority : qint32 {
    /// Only for a file in a download: leave it out.
    Skip = -1,
    /// Only for a file in a download: the same as for the download.
    Inherited = 0,
    Low = 1,
    Normal = 2,
    High = 3,
};

/// What to do when the file to be written exists.
enum class AbstractDownloadFileExistsAction : qint32 {
    /// According to the settings.
    Default = 0,
    Rename = 1,
    Overwrite = 2,
    Skip = 3,
    Ask = 4,
};

/// 64 bits wide, as in the lists that contain it; for a single file or download it is an int.
enum class AbstractFileType : qint64 {
    Unknown = 0,
    Video = 1,
    Music = 2,
    Document = 3,
    Image = 4,
};

/// How a mask changes the flags to which it is applied.
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
    /// From the beginning; what was downloaded is discarded.
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

/// The properties of a download that the user can set. Each is one bit, for
/// AbstractDownloadPersistentInfo::supportedOptions.
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
    /// The page was not known; the referrer was used instead.
    WebPageUrlIsReferer = 0x1,
};
}
