#pragma once

#include "kovdownloadfile.h"

#include <QHash>
#include <QString>

#include <memory>

/// Where downloads go. Gives each its own name, and outlives the files that it made.
class KovDownloadFolder {
public:
    /// The folder is made when the first file is. An empty suffix makes partial files bear their
    /// final names.
    KovDownloadFolder(QString path, QString partialSuffix);

    QString path() const { return m_path; }
    QString partialSuffix() const { return m_partialSuffix; }

    /// An empty partial file for a safe name (see KovFileName), numbered so that neither it nor the
    /// final file exists. Null on failure, with the reason in "error".
    std::unique_ptr<KovDownloadFile> createFile(const QString &name, QString &error);

private:
    friend class KovDownloadFile;

    /// The path of the next name in the row that no file bears.
    QString nextFreePath(const QString &name);
    /// A number of that name has become free again.
    void restartNumbers(const QString &name) { m_lastNumbers.remove(name); }

    const QString m_path;
    const QString m_partialSuffix;
    /// The same, made safe and with its dot; or empty.
    const QString m_partialEnding;
    /// By name, the last number that was tried: thousands of downloads may have the same name.
    QHash<QString, int> m_lastNumbers;
};
