#pragma once

#include "appclientmodule.h"
#include "appclientsettingsinitializer.h"
#include "applink.h"
#include "appremotefrontendclientmodule.h"
#include "appremotefrontendclientvhipcprocessor.h"
#include "appsettings.h"
#include "consolemessagessender.h"
#include "frames.h"
#include "qtappabstractsettingsmanager.h"
#include "qtappdelayedshutdownmanager.h"
#include "remoteincomingdownloadsprocessor.h"
#include "temporaryconfig.h"
#include "vhipcsettings.h"
#include "webextensionsettingsmanager.h"
#include "wenativehosttasksprocessor.h"

#include <QList>
#include <QLocalServer>
#include <QLocalSocket>
#include <QSharedPointer>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

/**
 * The dispatcher with its dependencies; answers are written to a file. Its data and the
 * application's socket are in a temporary folder, so that only the test's fake application is
 * reachable. Quotes in messages and answers are written as "'".
 */
class IsolatedHost {
public:
    explicit IsolatedHost(bool settingsAreKnown = true)
    {
        qputenv("TMPDIR", QFile::encodeName(m_dir.path()));
        client = QSharedPointer<AppClientModule>::create(
            QSharedPointer<TemporaryConfig>::create(m_dir.path()), nullptr);
        client->initialize(true);
        if (settingsAreKnown)
            makeSettingsKnown();
        const auto downloads =
            client->incomingDownloadsProcessor().objectCast<RemoteIncomingDownloadsProcessor>();
        QObject::connect(downloads.data(), &RemoteIncomingDownloadsProcessor::sendJobToServer,
                         &m_holder, [this](const auto &job) { jobs.append(job); });
        // The shutdown must not end the event loops of the tests.
        shutdownManager->registerObject(&m_holder, true);
        makeDispatcher();
    }
    ~IsolatedHost()
    {
        dispatcher.reset();
        client->initialize(false);
        qputenv("TMPDIR", m_formerTmpDir);
    }
    Q_DISABLE_COPY_MOVE(IsolatedHost)

    void makeDispatcher()
    {
        dispatcher.reset();
        extensionSettings = QSharedPointer<WebExtensionSettingsManager>::create(client);
        dispatcher = std::make_unique<WeNativeHostTasksProcessor>(
            shutdownManager, QWeakPointer<ConsoleMessagesReceiver>(), sender, extensionSettings,
            client);
    }
    /// Handles a message, and returns what has been sent since the last call.
    QString send(const QString &message)
    {
        dispatcher->onConsoleGotMessage(QString(message).replace(u'\'', u'"'));
        return sent();
    }
    /// The messages sent since the last call, separated by "|".
    QString sent()
    {
        QByteArray bytes = m_output.written().mid(m_seen);
        m_seen += bytes.size();
        QStringList messages;
        while (!bytes.isEmpty()) {
            const auto length = qFromLittleEndian<quint32>(bytes.constData());
            messages.append(QString::fromUtf8(bytes.mid(4, length)).replace(u'"', u'\''));
            bytes.remove(0, 4 + qsizetype{length});
        }
        return messages.join(u'|');
    }
    /// From now on the application accepts connections, but sends nothing.
    bool connectToApplication()
    {
        return m_server.listen(appServerName())
            && QTest::qWaitFor([this] { return client->isConnected(); });
    }
    /// The reverse of connectToApplication().
    bool disconnectFromApplication()
    {
        m_server.close();
        const std::unique_ptr<QLocalSocket> peer(m_server.nextPendingConnection());
        if (peer)
            peer->abort();
        return QTest::qWaitFor([this] { return !client->isConnected(); });
    }
    /// The application sends all its settings.
    void takeAll(const QVariantHash &values, const QVariantHash &defaults)
    {
        client->remoteFrontendClientModule()->vhIpcProcessor()->settingsPart()->processVh(
            {{u"name"_qs, u"settings"_qs},
             {u"reason"_qs, u"all"_qs},
             {u"values"_qs, values},
             {u"defaultValues"_qs, defaults}});
    }
    QString databasePath() const { return m_dir.filePath(u"db.sqlite"_qs); }
    /// Marks the application's settings as known; they are empty until something is written.
    void makeSettingsKnown()
    {
        client->settingsInitializer()->onVhIpcSettingsReadyStateChanged(true);
    }
    QtAppAbstractSettingsManager &settings() { return *client->settingsManager(); }
    void set(AppSettings::Setting setting, const char *value)
    {
        settings().setValue(toString(setting), QString::fromUtf8(value));
    }

private:
    const QByteArray m_formerTmpDir = qgetenv("TMPDIR");
    const QTemporaryDir m_dir;
    QLocalServer m_server;
    QObject m_holder;
    const StreamFile m_output;
    qsizetype m_seen = 0;

public:
    QSharedPointer<AppClientModule> client;
    QSharedPointer<QtAppDelayedShutdownManager> shutdownManager =
        QSharedPointer<QtAppDelayedShutdownManager>::create();
    QSharedPointer<ConsoleMessagesSender> sender =
        QSharedPointer<ConsoleMessagesSender>::create(nullptr, m_output.stream());
    QSharedPointer<WebExtensionSettingsManager> extensionSettings;
    std::unique_ptr<WeNativeHostTasksProcessor> dispatcher;
    /// The jobs that the application received.
    QList<AbstractNewDownloadsRequestJob> jobs;
};

/// A plain answer, as it is sent.
inline QString answer(const QString &id, const QString &type, const QString &error,
                      const QString &result = {})
{
    return u"{'error':'%1','id':'%2','result':'%3','type':'%4'}"_qs.arg(error, id, result, type);
}
