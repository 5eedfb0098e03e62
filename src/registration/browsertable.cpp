#include "browsertable.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

QStringList texts(const QJsonValue &value)
{
    QStringList list;
    const QJsonArray array = value.toArray();
    for (const auto &each : array)
        list += each.toString();
    return list;
}

BrowserFamily readFamily(const QString &name, const QJsonObject &record)
{
    return {.name = name,
            .idsKey = record[u"idsKey"].toString(),
            .ids = texts(record[u"ids"]),
            .manifestFolder = record[u"manifestFolder"].toString()};
}

Browser readBrowser(const QJsonObject &record, const QJsonObject &families)
{
    const QString family = record[u"family"].toString();
    const QJsonObject snap = record[u"snap"].toObject();
    return {.id = record[u"id"].toString(),
            .name = record[u"name"].toString(),
            .family = readFamily(family, families[family].toObject()),
            .profiles = texts(record[u"profiles"]),
            .everybody = texts(record[u"everybody"]),
            .policies = texts(record[u"policies"]),
            .extension = record[u"extension"].toString(),
            .flatpaks = texts(record[u"flatpaks"]),
            .flatpakAsksProxy = record[u"flatpakAsksProxy"].toBool(),
            .snap = snap[u"name"].toString(),
            .snapStartsHosts = snap[u"startsHosts"].toBool()};
}

} // namespace

const BrowserTable &BrowserTable::instance()
{
    static const BrowserTable table;
    return table;
}

BrowserTable::BrowserTable()
{
    QFile file(QStringLiteral(":/registration/browsers.json"));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("the program was built without its table of browsers");
    const QJsonObject table = QJsonDocument::fromJson(file.readAll()).object();
    const QJsonObject host = table[u"host"].toObject();
    m_hostName = host[u"name"].toString();
    m_hostDescription = host[u"description"].toString();
    const QJsonArray browsers = table[u"browsers"].toArray();
    for (const auto &each : browsers)
        m_browsers.append(readBrowser(each.toObject(), table[u"families"].toObject()));
}
