#include "abstractfiletypedetector.h"

#include "fileextensions.h"

#include <array>
#include <utility>

namespace {

/// In order of precedence: an extension that is in several lists is of the first one's type.
const std::array<std::pair<AbstractFileType, QSet<QByteArray>>, 4> &extensionsOfTypes()
{
    static const std::array<std::pair<AbstractFileType, QSet<QByteArray>>, 4> types{{
        {AbstractFileType::Video, fileExtensions(QStringLiteral("video"))},
        {AbstractFileType::Music, fileExtensions(QStringLiteral("audio"))},
        {AbstractFileType::Document, fileExtensions(QStringLiteral("document"))},
        {AbstractFileType::Image, fileExtensions(QStringLiteral("image"))},
    }};
    return types;
}

} // namespace

AbstractFileType AbstractFileTypeDetector::typeFromFileName(const QString &fileName) const
{
    const QByteArray extension = lowerCaseExtension(fileName);
    for (const auto &[type, extensions] : extensionsOfTypes()) {
        if (extensions.contains(extension))
            return type;
    }
    return AbstractFileType::Unknown;
}
