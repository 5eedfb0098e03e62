#pragma once

#include <QString>

/**
 * Held by the one process that serves. The system releases it when the process ends, however it
 * ends, so it is never stale.
 */
class KovInstanceLock {
public:
    /// A file, which is created with its folder and never removed.
    explicit KovInstanceLock(QString path);
    ~KovInstanceLock();
    Q_DISABLE_COPY_MOVE(KovInstanceLock)

    enum class Result { Locked, HeldByAnother, Failed };
    /// Does not block.
    Result tryLock();
    /// Why it failed.
    QString errorString() const { return m_error; }

private:
    const QString m_path;
    QString m_error;
    int m_descriptor = -1;
};
