#pragma once

#include <QFile>
#include <QString>

#include <sched.h>
#include <sys/mount.h>

/// A small file system in memory over a folder while this object lives. Only this process sees it,
/// and only root can make it.
class TmpfsMount {
public:
    TmpfsMount(const QString &folder, const QString &size)
        : m_folder(QFile::encodeName(folder)),
          m_mounted(ownMounts()
                    && ::mount("tmpfs", m_folder.constData(), "tmpfs", 0,
                               QByteArray("size=" + size.toLatin1()).constData())
                        == 0)
    {
    }
    ~TmpfsMount()
    {
        if (m_mounted)
            ::umount2(m_folder.constData(), MNT_DETACH);
    }
    Q_DISABLE_COPY_MOVE(TmpfsMount)

    bool isMounted() const { return m_mounted; }
    bool makeReadOnly() const
    {
        return ::mount(nullptr, m_folder.constData(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr)
            == 0;
    }
    /// Leaves no free block.
    void fillUp() const
    {
        QFile filler(fillerName());
        if (filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
            while (filler.write(QByteArray(4096, 'f')) > 0) { }
    }
    void makeRoom() const { QFile::remove(fillerName()); }

private:
    static bool ownMounts()
    {
        static const bool own = ::unshare(CLONE_NEWNS) == 0
            && ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
        return own;
    }
    QString fillerName() const { return QFile::decodeName(m_folder) + QStringLiteral("/filler"); }

    const QByteArray m_folder;
    const bool m_mounted;
};
