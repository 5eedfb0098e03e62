#pragma once

#include "abstractdownloadenums.h"

#include <QString>

/// Guesses the type of a file.
class AbstractFileTypeDetector {
public:
    /// By the extension, ignoring case; a name without a dot is taken as an extension. One that is
    /// used for both video and audio, such as "ogg", counts as video.
    AbstractFileType typeFromFileName(const QString &fileName) const;
};
