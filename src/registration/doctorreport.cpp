#include "doctorreport.h"

#include "applink.h"
#include "appversion.h"
#include "console.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QSysInfo>

#include <pwd.h>
#include <unistd.h>

#include <algorithm>

namespace {

QString word(Finding::State state)
{
    switch (state) {
    case Finding::State::Ok:
        return QStringLiteral("ok");
    case Finding::State::Broken:
        return QStringLiteral("broken");
    case Finding::State::NotChecked:
        return QStringLiteral("not checked");
    }
    return {};
}

Console::Colour colour(Finding::State state)
{
    switch (state) {
    case Finding::State::Ok:
        return Console::Colour::Green;
    case Finding::State::Broken:
        return Console::Colour::Red;
    case Finding::State::NotChecked:
        return Console::Colour::Yellow;
    }
    return Console::Colour::Yellow;
}

/// Removes the user's name and folders from texts.
class Anonymizer {
public:
    Anonymizer()
    {
        // Longest folders first; names last, as they may be parts of folders.
        replace(qEnvironmentVariable("KOVALO_LOG_FILE"), QStringLiteral("$KOVALO_LOG_FILE"));
        replace(qEnvironmentVariable("XDG_CONFIG_HOME"), QStringLiteral("$XDG_CONFIG_HOME"));
        replace(qEnvironmentVariable("XDG_DATA_HOME"), QStringLiteral("$XDG_DATA_HOME"));
        replace(qEnvironmentVariable("XDG_RUNTIME_DIR"), QStringLiteral("$XDG_RUNTIME_DIR"));
        replace(qEnvironmentVariable("TMPDIR"), QStringLiteral("$TMPDIR"));
        replace(QDir::homePath(), QStringLiteral("~"));
        replace(QFileInfo(QDir::homePath()).canonicalFilePath(), QStringLiteral("~"));
        replace(QStandardPaths::writableLocation(QStandardPaths::DownloadLocation),
                QStringLiteral("$XDG_DOWNLOAD_DIR"));
        std::stable_sort(m_replacements.begin(), m_replacements.end(),
                         [](const auto &one, const auto &other) {
                             return one.first.size() > other.first.size();
                         });
        replace(appServerName(), appServerBaseName + QStringLiteral("USER"));
        if (const passwd *const user = ::getpwuid(::getuid()))
            replace(QString::fromLocal8Bit(user->pw_name), QStringLiteral("USER"));
        replace(QSysInfo::machineHostName(), QStringLiteral("MACHINE"));
    }

    QString operator()(QString text) const
    {
        for (const auto &[secret, name] : m_replacements)
            text.replace(wholeWord(secret), name);
        // A manifest may name another user's folder.
        static const QRegularExpression homeOfAnother(
            QStringLiteral("(?<![\\w.-])/home/[^/\\s]+/"));
        return text.replace(homeOfAnother, QStringLiteral("/home/USER/"));
    }

private:
    void replace(const QString &secret, const QString &name)
    {
        if (secret.size() > 1)
            m_replacements.append({secret, name});
    }

    static QRegularExpression wholeWord(const QString &secret)
    {
        return QRegularExpression(
            QStringLiteral("(?<![\\w.-])%1(?![\\w-])").arg(QRegularExpression::escape(secret)));
    }

    QList<std::pair<QString, QString>> m_replacements;
};

} // namespace

QString DoctorReport::text() const
{
    constexpr int stateWidth = 13;
    constexpr int linkWidth = 24;
    QString text;
    for (const Chain &chain : m_doctor.chains()) {
        text += chain.title + u'\n';
        for (const Finding &each : chain.findings) {
            text += QStringLiteral("  ")
                + Console::coloured(word(each.state).leftJustified(stateWidth), colour(each.state))
                + each.link.leftJustified(linkWidth) + each.text;
            if (!each.cure.isEmpty())
                text += QStringLiteral(" -- to mend it: ") + each.cure;
            text += u'\n';
        }
        text += u'\n';
    }
    return text
        + (m_doctor.wouldDownloadArrive() ? QStringLiteral("A download would arrive.")
                                          : QStringLiteral("A download would not arrive."));
}

QString DoctorReport::json() const
{
    const Anonymizer anonymous;
    QJsonArray chains;
    for (const Chain &chain : m_doctor.chains()) {
        QJsonArray links;
        for (const Finding &each : chain.findings)
            links.append(QJsonObject{{QStringLiteral("link"), each.link},
                                     {QStringLiteral("state"), word(each.state)},
                                     {QStringLiteral("text"), anonymous(each.text)},
                                     {QStringLiteral("cure"), anonymous(each.cure)}});
        chains.append(QJsonObject{{QStringLiteral("subject"), chain.subject},
                                  {QStringLiteral("browser"), chain.browser},
                                  {QStringLiteral("title"), anonymous(chain.title)},
                                  {QStringLiteral("links"), links}});
    }
    const QJsonObject report{
        {QStringLiteral("version"), appVersion()},
        {QStringLiteral("downloadWouldArrive"), m_doctor.wouldDownloadArrive()},
        {QStringLiteral("chains"), chains}};
    return QString::fromUtf8(QJsonDocument(report).toJson()).trimmed();
}
