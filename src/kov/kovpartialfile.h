#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>

#include <functional>
#include <memory>

class QObject;

/**
 * The file of a running download. It stays on the disk when the object is destroyed.
 *
 * A failed operation returns false and sets the error. Belongs to one thread; only writes to a busy
 * disk block.
 */
class KovPartialFile {
public:
    /// Creates a new file (O_EXCL); null on failure.
    static std::unique_ptr<KovPartialFile> create(const QString &path, QString &error);
    /// Opens an existing regular file of this user, not a link. Null on failure.
    static std::unique_ptr<KovPartialFile> open(const QString &path, QString &error);
    ~KovPartialFile();
    Q_DISABLE_COPY_MOVE(KovPartialFile)

    /// Writes all of it, despite partial writes.
    bool write(qint64 offset, const char *bytes, qint64 size);
    bool truncate(qint64 size);
    /// Syncs the data written so far, on another thread, and first the directory entry of a new
    /// file. "synced" is called on the thread of the context, with 0 or the error number, unless
    /// the context is destroyed.
    void sync(QObject *context, std::function<void(int)> synced);
    bool setModificationTime(const QDateTime &time);
    /// Moves it without replacing anything; false without an error number when the path is taken.
    bool moveTo(const QString &path);
    bool remove();

    qint64 size() const;
    /// For a program that writes the file. Close-on-exec: the child process must clear that flag.
    int descriptor() const { return m_descriptor; }

    QString path() const { return m_path; }
    /// Of the last failure; see errno(3).
    int errorNumber() const { return m_errorNumber; }
    QString errorString() const;

private:
    KovPartialFile(QString path, int descriptor);
    static std::unique_ptr<KovPartialFile> open(const QString &path, int flags, QString &error);
    bool check(bool ok);

    QString m_path;
    const int m_descriptor;
    /// The path of a new file, until its directory is synced.
    QString m_unsyncedEntry;
    int m_errorNumber = 0;
};

/// The system's text for an error, such as "No space left on device".
QString systemErrorString(int errorNumber);
/// Whether the disk is full, or the user's quota exhausted.
bool isDiskFull(int errorNumber);
