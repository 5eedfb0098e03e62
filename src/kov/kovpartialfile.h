#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>

#include <functional>
#include <memory>

class QObject;

/**
 * The file of a download that is under way. It stays on the disk when the object goes.
 *
 * A failed operation returns false and leaves its reason. Belongs to one thread, which no operation
 * but a write to a busy disk holds up.
 */
class KovPartialFile {
public:
    /// Makes a file that nobody else has made; null on failure.
    static std::unique_ptr<KovPartialFile> create(const QString &path, QString &error);
    /// Opens one that is there: a regular file of this user, no link. Null on failure.
    static std::unique_ptr<KovPartialFile> open(const QString &path, QString &error);
    ~KovPartialFile();
    Q_DISABLE_COPY_MOVE(KovPartialFile)

    /// Writes all of it, in as many steps as the system makes of it.
    bool write(qint64 offset, const char *bytes, qint64 size);
    bool truncate(qint64 size);
    /// Has what was written until now put on the disk by another thread. "synced" is called on the
    /// thread of the context, with 0 or the error number, unless the context is gone.
    void sync(QObject *context, std::function<void(int)> synced) const;
    bool setModificationTime(const QDateTime &time);
    /// Moves it to where nothing is; false without an error number when there is something.
    bool moveTo(const QString &path);
    bool remove();

    qint64 size() const;
    /// For a program that is to write the file; closed in it unless it is told otherwise.
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
    int m_errorNumber = 0;
};

/// What the system calls an error, "No space left on device" for one.
QString systemErrorString(int errorNumber);
/// Whether it means that there is no room on the disk: no space, or none within the user's quota.
bool isDiskFull(int errorNumber);
