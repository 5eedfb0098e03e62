#pragma once

#include <QList>
#include <QString>

class AppDataAccessHelper;

/// A download that never reached the application, as far as the user needs it told.
struct LostDownload {
    /// Of the file, or of the server when the address names none.
    QString name;
    /// A text for the user.
    QString reason;
};

/**
 * Downloads that could not be handed over when no browser was there to be told (see LinkSuccessor).
 * They wait in a file beside the settings, readable by the user alone, for the next extension that
 * greets a host. Addresses and cookies are not kept. Several processes may use it at once.
 */
class LostDownloads {
public:
    explicit LostDownloads(const AppDataAccessHelper &dataAccess);

    /// Passed over, with a line in the log, when it cannot be written, and beyond maxBytes.
    void add(const LostDownload &lost) const;
    /// What was added, the oldest first. The file is gone then.
    QList<LostDownload> take() const;

private:
    static constexpr qint64 maxBytes = qint64{64} * 1024;

    QString m_filePath;
};
