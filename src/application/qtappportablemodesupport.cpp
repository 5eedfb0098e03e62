#include "qtappportablemodesupport.h"

#include "systemdefaultdownloadlocation.h"

#include <QCoreApplication>
#include <QStorageInfo>

#include <optional>

namespace {

/// The path with its prefix "from" replaced by "to"; nothing if it is neither "from" nor below it.
std::optional<QString> withPrefixReplaced(const QString &path, const QString &from,
                                          const QString &to)
{
    if (!path.startsWith(from))
        return std::nullopt;
    if (path.size() != from.size() && path.at(from.size()) != u'/')
        return std::nullopt;
    return to + path.mid(from.size());
}

} // namespace

QtAppPortableModeSupport::QtAppPortableModeSupport(bool portable) : m_portable(portable)
{
    m_locations.reserve(2);
    addLocation(systemDefaultDownloadLocation(), QStringLiteral("sysdownloadloc"));
    const QString applicationDir = QCoreApplication::applicationDirPath();
    if (applicationDir.isEmpty())
        return;
    addLocation(applicationDir, QStringLiteral("appdir"));
    if (const QStorageInfo storage(applicationDir); storage.isValid())
        addLocation(storage.rootPath(), QStringLiteral("appdiskroot"));
}

QString QtAppPortableModeSupport::encodePath(const QString &path) const
{
    if (!m_portable)
        return path;
    for (const auto &[directory, tag] : m_locations) {
        if (const auto encoded = withPrefixReplaced(path, directory, tag))
            return *encoded;
    }
    return path;
}

QString QtAppPortableModeSupport::decodePath(const QString &path) const
{
    for (const auto &[directory, tag] : m_locations) {
        if (const auto decoded = withPrefixReplaced(path, tag, directory))
            return *decoded;
    }
    return path;
}

void QtAppPortableModeSupport::addLocation(QString directory, const QString &tag)
{
    if (directory.endsWith(u'/'))
        directory.chop(1);
    if (!directory.isEmpty())
        m_locations.emplace_back(directory, tag);
}
