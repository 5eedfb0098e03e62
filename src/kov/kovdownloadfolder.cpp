#include "kovdownloadfolder.h"

#include "kovfilename.h"
#include "kovpartialfile.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <utility>

namespace {

QString suffixWithDot(const QString &suffix)
{
    const QString safe = KovFileName::sanitized(suffix);
    return safe.isEmpty() ? QString() : u'.' + safe;
}

bool exists(const QString &path)
{
    const QFileInfo info(path);
    return info.exists() || info.isSymbolicLink();
}

} // namespace

KovDownloadFolder::KovDownloadFolder(QString path, QString partialSuffix)
    : m_path(std::move(path)), m_partialSuffix(std::move(partialSuffix)),
      m_partialEnding(suffixWithDot(m_partialSuffix))
{
}

std::unique_ptr<KovPartialFile> KovDownloadFolder::createFile(const QString &name, QString &error)
{
    if (!QDir().mkpath(m_path)) {
        error = QStringLiteral("cannot make the folder \"%1\"").arg(m_path);
        return nullptr;
    }
    for (;;) {
        const QString path = nextFreePath(name, m_partialEnding);
        auto file = KovPartialFile::create(path, error);
        // Another process may have created that file just now.
        if (file || !exists(path))
            return file;
    }
}

bool KovDownloadFolder::isHeldByBrowser(const QString &name, qint64 bytes) const
{
    constexpr qint64 recentlySeconds = 60;
    const QFileInfo info(finalPath(name));
    if (!info.isFile() || info.isSymbolicLink())
        return false;
    return info.size() == 0
        || (info.size() == bytes
            && info.lastModified().secsTo(QDateTime::currentDateTime()) < recentlySeconds);
}

QString KovDownloadFolder::nextFreePath(const QString &name, const QString &ending)
{
    QString path = finalPath(name) + ending;
    if (!exists(path)) {
        m_lastNumbers.remove(name + ending);
        return path;
    }
    // Asking again without a file made in between gives the same answer.
    int &number = m_lastNumbers[name + ending];
    number = std::max(number, 2);
    while (exists(path = finalPath(KovFileName::numbered(name, number)) + ending))
        ++number;
    return path;
}
