#pragma once

#include <QHash>
#include <QString>

#include <memory>

class KovPartialFile;

/// The download folder: chooses unused names for partial and finished files.
class KovDownloadFolder {
public:
    /// The folder is created with the first file. With an empty suffix partial files have their
    /// final names.
    KovDownloadFolder(QString path, QString partialSuffix);

    QString path() const { return m_path; }
    QString partialSuffix() const { return m_partialSuffix; }

    /// An empty partial file for a safe name (see KovFileName), numbered where there is one
    /// already. Null on failure, with the reason in "error".
    std::unique_ptr<KovPartialFile> createFile(const QString &name, QString &error);
    /// The path for this name, whether or not it is taken.
    QString finalPath(const QString &name) const { return m_path + u'/' + name; }
    /// Whether the name is taken by an empty file, or by a new one of as many bytes: probably a
    /// browser's own download, which the browser may be about to remove.
    bool isHeldByBrowser(const QString &name, qint64 bytes) const;
    /// The first unused path for the name.
    QString freePath(const QString &name) { return nextFreePath(name, {}); }
    /// Partial files have their final names already.
    bool namesAtOnce() const { return m_partialEnding.isEmpty(); }

private:
    /// The next unused path for the name.
    QString nextFreePath(const QString &name, const QString &ending);

    const QString m_path;
    const QString m_partialSuffix;
    /// The suffix, sanitized and with its dot; or empty.
    const QString m_partialEnding;
    /// The last number tried, by file name: thousands of files may have the same name.
    QHash<QString, int> m_lastNumbers;
};
