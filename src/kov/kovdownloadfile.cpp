#include "kovdownloadfile.h"

#include "kovdownloadfolder.h"

#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <utility>

namespace {

/// Returns 0 or the error number; EEXIST when there is something at "to" already.
int renameToNewPath(const QString &from, const QString &to)
{
    const QByteArray source = QFile::encodeName(from);
    const QByteArray target = QFile::encodeName(to);
    if (::renameat2(AT_FDCWD, source.constData(), AT_FDCWD, target.constData(), RENAME_NOREPLACE)
        == 0)
        return 0;
    if (errno != EINVAL)
        return errno;
    // A file system that cannot refuse to replace.
    if (QFileInfo::exists(to))
        return EEXIST;
    return std::rename(source.constData(), target.constData()) == 0 ? 0 : errno;
}

} // namespace

KovDownloadFile::KovDownloadFile(KovDownloadFolder &folder, QString name)
    : m_folder(folder), m_name(std::move(name))
{
}

KovDownloadFile::~KovDownloadFile()
{
    if (m_committed || !m_file.isOpen())
        return;
    m_file.remove();
    m_folder.restartNumbers(m_name);
}

bool KovDownloadFile::write(const QByteArray &bytes)
{
    if (m_file.write(bytes) == bytes.size())
        return true;
    m_error = m_file.errorString();
    return false;
}

bool KovDownloadFile::commit()
{
    const QString partialPath = m_file.fileName();
    while (partialPath != m_path) {
        const int error = renameToNewPath(partialPath, m_path);
        if (error == 0)
            break;
        if (error != EEXIST) {
            m_error = QString::fromLocal8Bit(std::strerror(error));
            return false;
        }
        m_path = m_folder.nextFreePath(m_name);
    }
    m_committed = true;
    m_file.close();
    return true;
}
