#pragma once

#include <QHash>
#include <QString>

#include <memory>

class KovPartialFile;

/// Where downloads go: gives each partial file, and each finished one, a name of its own.
class KovDownloadFolder {
public:
    /// The folder is made when the first file is. An empty suffix makes partial files bear their
    /// final names.
    KovDownloadFolder(QString path, QString partialSuffix);

    QString path() const { return m_path; }
    QString partialSuffix() const { return m_partialSuffix; }

    /// An empty partial file for a safe name (see KovFileName), numbered where there is one
    /// already. Null on failure, with the reason in "error".
    std::unique_ptr<KovPartialFile> createFile(const QString &name, QString &error);
    /// Where a file of this name would go if nothing were in its way.
    QString finalPath(const QString &name) const { return m_path + u'/' + name; }
    /// Whether the name seems to be held by a browser for a download of its own, which it may be
    /// about to give up: an empty file.
    bool isHeldByBrowser(const QString &name) const;
    /// The first path for the name at which there is nothing just now.
    QString freePath(const QString &name) { return nextFreePath(name, {}); }
    /// Partial files have their final names already.
    bool namesAtOnce() const { return m_partialEnding.isEmpty(); }

private:
    /// The path of the next name in the row at which there is nothing.
    QString nextFreePath(const QString &name, const QString &ending);

    const QString m_path;
    const QString m_partialSuffix;
    /// The same, made safe and with its dot; or empty.
    const QString m_partialEnding;
    /// By name with ending, the last number that was tried: thousands may have the same name.
    QHash<QString, int> m_lastNumbers;
};
