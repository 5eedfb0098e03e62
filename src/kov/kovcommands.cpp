#include "kovcommands.h"

#include "appsettings.h"
#include "dmcoresettings.h"
#include "kovdownloadsqueue.h"
#include "qtappabstractsettingsmanager.h"

#include <utility>

namespace {

constexpr int usageErrorExitCode = 2;

QStringList settingNames()
{
    QStringList names;
    for (int i = 0; i < AppSettings::LastSettingValuePlus1; ++i)
        names += toString(static_cast<AppSettings::Setting>(i));
    for (int i = 0; i < DmCoreSettings::LastSettingValuePlus1; ++i)
        names += toString(static_cast<DmCoreSettings::Setting>(i));
    names.sort();
    return names;
}

KovCommandResult failure(const QString &text) { return {1, text + u'\n'}; }

KovCommandResult unknownSetting(const QString &name)
{
    return failure(QStringLiteral("there is no setting \"%1\"").arg(name));
}

QString stateName(KovDownloadsQueue::Job::State state)
{
    using State = KovDownloadsQueue::Job::State;
    switch (state) {
    case State::Waiting:
        return QStringLiteral("waiting");
    case State::Running:
        return QStringLiteral("running");
    case State::Finished:
        return QStringLiteral("finished");
    case State::Failed:
        return QStringLiteral("failed");
    }
    return {};
}

} // namespace

QString KovCommands::usage()
{
    return QStringLiteral(
        "kov -service          serve until \"kov quit\"; leaves when another one serves\n"
        "kov set NAME VALUE    change a setting\n"
        "kov get NAME          print a setting\n"
        "kov list              print all settings, NAME=VALUE\n"
        "kov jobs              print the downloads, with tabs between: number, state, bytes\n"
        "                      received, bytes in all (-1: unknown), path, URL, error\n"
        "kov quit              end the service\n");
}

KovCommands::KovCommands(QSharedPointer<QtAppAbstractSettingsManager> settings,
                         QSharedPointer<KovDownloadsQueue> queue, QObject *parent)
    : QObject(parent), m_settings(std::move(settings)), m_queue(std::move(queue))
{
}

KovCommands::~KovCommands() = default;

KovCommandResult KovCommands::run(const QStringList &arguments)
{
    const QString command = arguments.value(0);
    const qsizetype count = arguments.size();
    if (command == u"set" && count == 3)
        return set(arguments.at(1), arguments.at(2));
    if (command == u"get" && count == 2)
        return get(arguments.at(1));
    if (command == u"list" && count == 1)
        return list();
    if (command == u"jobs" && count == 1)
        return jobs();
    if (command == u"quit" && count == 1) {
        Q_EMIT quitRequested();
        return {};
    }
    return {usageErrorExitCode, usage()};
}

KovCommandResult KovCommands::set(const QString &name, const QString &value)
{
    if (!settingNames().contains(name))
        return unknownSetting(name);
    m_settings->setValues({{name, value}}, QStringLiteral("KovCommands"));
    return {};
}

KovCommandResult KovCommands::get(const QString &name) const
{
    if (!settingNames().contains(name))
        return unknownSetting(name);
    return {0, m_settings->value(name) + u'\n'};
}

KovCommandResult KovCommands::list() const
{
    QString output;
    const QStringList names = settingNames();
    for (const QString &name : names)
        output += name + u'=' + m_settings->value(name) + u'\n';
    return {0, output};
}

KovCommandResult KovCommands::jobs() const
{
    QString output;
    const QList<KovDownloadsQueue::Job> jobs = m_queue->jobs();
    for (const KovDownloadsQueue::Job &job : jobs) {
        output += QStringList{QString::number(job.id),
                              stateName(job.state),
                              QString::number(job.receivedBytes),
                              QString::number(job.totalBytes),
                              job.path,
                              job.url.toString(QUrl::FullyEncoded),
                              job.error.simplified()}
                      .join(u'\t')
            + u'\n';
    }
    return {0, output};
}
