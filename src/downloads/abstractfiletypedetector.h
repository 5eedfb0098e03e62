#pragma once

#include "abstractdownloadenums.h"

#include <QString>

/// Guesses what kind of file it is.
class AbstractFileTypeDetector {
public:
    /// By the extension, in any case; a name without a dot is taken for one. An extension of both
    /// videos and music, such as "ogg", is that of a video.
    AbstractFileType typeFromFileName(const QString &fileName) const;
};
