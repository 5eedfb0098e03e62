#include "kovdownloadfolder.h"

#include "kovfilename.h"

#include <QDir>
#include <QFileInfo>

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

std::unique_ptr<KovDownloadFile> KovDownloadFolder::createFile(const QString &name, QString &error)
{
    if (!QDir().mkpath(m_path)) {
        error = QStringLiteral("cannot make the folder \"%1\"").arg(m_path);
        return nullptr;
    }
    std::unique_ptr<KovDownloadFile> file(new KovDownloadFile(*this, name));
    for (;;) {
        file->m_path = nextFreePath(name);
        file->m_file.setFileName(file->m_path + m_partialEnding);
        // Fails when somebody else makes that file at this very moment.
        if (file->m_file.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered))
            return file;
        if (!exists(file->m_file.fileName())) {
            error = QStringLiteral("cannot make \"%1\": %2")
                        .arg(file->m_file.fileName(), file->m_file.errorString());
            return nullptr;
        }
    }
}

QString KovDownloadFolder::nextFreePath(const QString &name)
{
    int &number = m_lastNumbers[name];
    for (;;) {
        QString path = m_path + u'/' + KovFileName::numbered(name, ++number);
        if (!exists(path) && !exists(path + m_partialEnding))
            return path;
    }
}
