#include "lostdownloads.h"

#include "appdataaccesshelper.h"
#include "qtappdefaultlogger.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

QString nameKey() { return QStringLiteral("name"); }
QString reasonKey() { return QStringLiteral("reason"); }

} // namespace

LostDownloads::LostDownloads(const AppDataAccessHelper &dataAccess)
    : m_filePath(QFileInfo(dataAccess.databaseFilePath()).path()
                 + QStringLiteral("/lostdownloads.jsonl"))
{
}

void LostDownloads::add(const LostDownload &lost) const
{
    QDir().mkpath(QFileInfo(m_filePath).path());
    const QByteArray line =
        QJsonDocument(QJsonObject{{nameKey(), lost.name}, {reasonKey(), lost.reason}})
            .toJson(QJsonDocument::Compact)
        + '\n';
    // Unbuffered, in one write, so that lines of two processes do not mix.
    QFile file(m_filePath);
    const bool isOpen = file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered,
                                  QFile::ReadOwner | QFile::WriteOwner);
    if (!isOpen || file.size() + line.size() > maxBytes || file.write(line) != line.size())
        logLine(1, QStringLiteral("[LostDownloads]: WARNING: a lost download cannot be kept"));
}

QList<LostDownload> LostDownloads::take() const
{
    // Under its new name no other process uses the file.
    const QString taken = m_filePath + QString::number(QCoreApplication::applicationPid());
    QList<LostDownload> lost;
    QFile file(taken);
    if (!QFile::rename(m_filePath, taken) || !file.open(QIODevice::ReadOnly))
        return lost;
    while (!file.atEnd()) {
        const QJsonObject line = QJsonDocument::fromJson(file.readLine(maxBytes)).object();
        lost.append({line[nameKey()].toString(), line[reasonKey()].toString()});
    }
    file.remove();
    return lost;
}
