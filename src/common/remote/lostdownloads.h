#pragma once

#include <QList>
#include <QString>

class AppDataAccessHelper;

/// A download that never reached the application, with the data that is reported to the user.
struct LostDownload {
    /// The name of the file, or of the server if the URL has no file name.
    QString name;
    /// A text for the user.
    QString reason;
};

/**
 * Downloads that could not be handed over after the browser had ended (see LinkSuccessor). They are
 * kept in a file beside the settings, with mode 0600, until the next handshake of an extension.
 * URLs and cookies are not stored. Several processes may use the file at the same time.
 */
class LostDownloads {
public:
    explicit LostDownloads(const AppDataAccessHelper &dataAccess);

    /// Skipped, and logged, if it cannot be written, or if the file would exceed maxBytes.
    void add(const LostDownload &lost) const;
    /// Returns all of them, oldest first, and removes the file.
    QList<LostDownload> take() const;

private:
    static constexpr qint64 maxBytes = qint64{64} * 1024;

    QString m_filePath;
};
