#include "fileextensions.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

QJsonObject readFileTypes()
{
    QFile file(QStringLiteral(":/downloads/filetypes.json"));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("the program was built without its table of file types");
    return QJsonDocument::fromJson(file.readAll()).object();
}

} // namespace

QSet<QByteArray> fileExtensions(const QString &kind)
{
    static const QJsonObject fileTypes = readFileTypes();
    QSet<QByteArray> extensions;
    const QJsonArray array = fileTypes[kind].toArray();
    for (const auto &each : array)
        extensions.insert(each.toString().toLatin1());
    return extensions;
}

QByteArray lowerCaseExtension(const QString &fileName)
{
    return QStringView(fileName).sliced(fileName.lastIndexOf(u'.') + 1).toUtf8().toLower();
}
