#pragma once

#include <QFile>
#include <QString>

#include <memory>

class KovDownloadFolder;

/**
 * The file of one download. While it is being written it lies beside its final place, under the
 * final name with the suffix for partial files; commit() moves it there in one step. Unless that
 * was done, destroying the object removes the file.
 */
class KovDownloadFile {
public:
    ~KovDownloadFile();
    Q_DISABLE_COPY_MOVE(KovDownloadFile)

    bool write(const QByteArray &bytes);
    /// Never replaces another file: if one has taken the name meanwhile, another name is made.
    bool commit();

    /// Where the file will be, and after commit() is.
    QString path() const { return m_path; }
    QString errorString() const { return m_error; }

private:
    friend class KovDownloadFolder;
    KovDownloadFile(KovDownloadFolder &folder, QString name);

    KovDownloadFolder &m_folder;
    const QString m_name;
    QString m_path;
    QString m_error;
    QFile m_file;
    bool m_committed = false;
};
