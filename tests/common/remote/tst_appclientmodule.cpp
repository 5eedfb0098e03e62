#include "abstractjsonrequestsmanager.h"
#include "appclientmodule.h"
#include "appclientsettingsinitializer.h"
#include "appdataaccesshelper.h"
#include "appremotefrontendclientmodule.h"
#include "appservername.h"
#include "appsettings.h"
#include "qtappabstractsettingsmanager.h"
#include "qtappconfigbase.h"
#include "qtobjectfactory.h"

#include <QDir>
#include <QFile>
#include <QLocalServer>
#include <QLocalSocket>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

namespace {

class TemporaryConfig : public QtAppConfigBase {
public:
    explicit TemporaryConfig(const QString &path) : m_path(path) { }
    QDir dataDir() const override { return QDir(m_path); }

private:
    const QString m_path;
};

const QString interceptDownloads = u"WbInterceptDownloads"_qs;
const QString localeName = u"LocaleName"_qs;
const QString user = u"user"_qs;

} // namespace

class TestAppClientModule : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();

    void opens_no_database_by_itself();
    void hands_out_its_services_while_up();
    void knows_whether_the_application_is_there();
    void settings_come_from_the_local_store_when_asked_for();
    void settings_come_from_the_application_when_it_answers();
    void changes_are_stored_only_while_disconnected();
    void a_text_followed_by_the_end_arrives();

private:
    void bringUp();
    void takeDown();
    /// Serves under the application's name; the module is brought up and connected.
    std::unique_ptr<QLocalSocket> connectedPeer();
    bool databaseExists() const { return QDir(m_folder->path()).exists(u"data/db.sqlite"_qs); }
    /// What another process would read from the store.
    QString storedValue(const QString &name) const;

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<QtQObjectsTracker> m_tracker;
    std::unique_ptr<QLocalServer> m_server;
    QSharedPointer<AppClientModule> m_module;
};

void TestAppClientModule::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    qputenv("TMPDIR", QFile::encodeName(m_folder->path()));
    m_tracker = std::make_unique<QtQObjectsTracker>();
    m_module = qtCreateObject<AppClientModule>(
        QSharedPointer<TemporaryConfig>::create(m_folder->filePath(u"data"_qs)), nullptr);
}

void TestAppClientModule::cleanup()
{
    takeDown();
    m_module.reset();
    QCOMPARE(m_tracker->aliveObjects(), QStringList());
    m_server.reset();
}

void TestAppClientModule::bringUp()
{
    m_module->initialize(true);
    QVERIFY(!m_module->isInitializeRunning(true));
    QVERIFY(!m_module->initFailed(true));
}

void TestAppClientModule::takeDown()
{
    m_module->initialize(false);
    QTRY_VERIFY(!m_module->isInitializeRunning(false));
}

std::unique_ptr<QLocalSocket> TestAppClientModule::connectedPeer()
{
    m_server = std::make_unique<QLocalServer>();
    if (!m_server->listen(appServerName()))
        return nullptr;
    bringUp();
    if (!QTest::qWaitFor([this] { return m_server->hasPendingConnections(); }))
        return nullptr;
    std::unique_ptr<QLocalSocket> peer(m_server->nextPendingConnection());
    peer->setParent(nullptr);
    return peer;
}

QString TestAppClientModule::storedValue(const QString &name) const
{
    AppDataAccessHelper otherProcess(QDir(m_folder->filePath(u"data"_qs)), nullptr);
    return otherProcess.settings()->allValues().value(name);
}

void TestAppClientModule::opens_no_database_by_itself()
{
    bringUp();
    QCoreApplication::processEvents();
    takeDown();
    QVERIFY(!databaseExists());
}

void TestAppClientModule::hands_out_its_services_while_up()
{
    const auto isNull = [this] {
        return QList<bool>{m_module->dataAccessHelper().isNull(),
                           m_module->settingsManager().isNull(),
                           m_module->remoteFrontendClientModule().isNull(),
                           m_module->settingsInitializer().isNull(),
                           m_module->incomingDownloadsProcessor().isNull(),
                           m_module->jsonRequestsManager().isNull()};
    };
    for (int i = 0; i < 2; ++i) {
        QCOMPARE(isNull(), QList<bool>(6, true));
        QVERIFY(!m_module->isConnected());
        bringUp();
        QCOMPARE(isNull(), QList<bool>(6, false));
        // Ids begin anew with the link.
        QCOMPARE(m_module->jsonRequestsManager()->nextId(), 1);
        takeDown();
    }
}

void TestAppClientModule::knows_whether_the_application_is_there()
{
    const QString path = QCoreApplication::applicationDirPath() + u"/kov"_qs;
    QVERIFY(!QFile::exists(path));
    QVERIFY(m_module->appDoesNotExist());
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(!m_module->appDoesNotExist());
    QVERIFY(file.remove());
}

void TestAppClientModule::settings_come_from_the_local_store_when_asked_for()
{
    {
        AppDataAccessHelper store(QDir(m_folder->filePath(u"data"_qs)), nullptr);
        store.settings()->setValues({{localeName, u"de_DE"_qs}}, user);
    }
    bringUp();
    const auto initializer = m_module->settingsInitializer();
    const auto settings = m_module->settingsManager();
    const QSignalSpy initialized(initializer.data(),
                                 &AppClientSettingsInitializer::settingsInitialized);
    const QSignalSpy changed(settings.data(), &QtAppAbstractSettingsManager::allValuesChanged);

    QVERIFY(!initializer->isSettingsInitialized());
    QCOMPARE(settings->value(interceptDownloads), QString());
    initializer->initializeSettings();
    QVERIFY(initializer->isSettingsInitialized());
    QCOMPARE(settings->value(localeName), u"de_DE"_qs);
    QCOMPARE(settings->value(interceptDownloads), u"1"_qs);
    QCOMPARE(changed.at(0), QList<QVariant>{u"AppClientSettingsInitializer"_qs});

    initializer->initializeSettings();
    initializer->onVhIpcSettingsReadyStateChanged(true);
    initializer->onVhIpcSettingsReadyStateChanged(false);
    QVERIFY(initializer->isSettingsInitialized());
    QCOMPARE(initialized.count(), 1);
    QCOMPARE(changed.count(), 1);
}

void TestAppClientModule::settings_come_from_the_application_when_it_answers()
{
    const auto peer = connectedPeer();
    QVERIFY(peer);
    const auto initializer = m_module->settingsInitializer();
    const QSignalSpy initialized(initializer.data(),
                                 &AppClientSettingsInitializer::settingsInitialized);

    // {"name": "settings", "reason": "queryAll"}; the order of the two is the hash's.
    QTRY_COMPARE(peer->bytesAvailable(), 4 + 4 + (4 + 8 + 9 + 16) + (4 + 12 + 9 + 16));

    QByteArray body;
    QDataStream stream(&body, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_5_12);
    stream << QVariantHash{{u"name"_qs, u"settings"_qs},
                           {u"reason"_qs, u"all"_qs},
                           {u"values"_qs, QVariantHash{{localeName, u"uk"_qs}}},
                           {u"defaultValues"_qs, QVariantHash{{interceptDownloads, u"0"_qs}}}};
    QDataStream peerStream(peer.get());
    peerStream << body; // as a frame: its length and itself
    QTRY_COMPARE(initialized.count(), 1);
    QCOMPARE(m_module->settingsManager()->value(localeName), u"uk"_qs);
    QCOMPARE(m_module->settingsManager()->value(interceptDownloads), u"0"_qs);
    initializer->initializeSettings();
    QCOMPARE(initialized.count(), 1);
    QVERIFY(!databaseExists());
}

void TestAppClientModule::changes_are_stored_only_while_disconnected()
{
    auto peer = connectedPeer();
    QVERIFY(peer);
    const auto settings = m_module->settingsManager();
    QVERIFY(m_module->isConnected());
    settings->setValues({{localeName, u"fr"_qs}}, user);
    settings->resetToDefaults(user);
    QVERIFY(!databaseExists());

    m_server->close();
    peer.reset();
    QTRY_VERIFY(!m_module->isConnected());
    settings->setValues({{localeName, u"ja"_qs}, {interceptDownloads, u"0"_qs}}, user);
    QCOMPARE(storedValue(localeName), u"ja"_qs);
    QCOMPARE(storedValue(interceptDownloads), u"0"_qs);
    settings->resetToDefaults(user);
    QCOMPARE(storedValue(localeName), QString());
}

void TestAppClientModule::a_text_followed_by_the_end_arrives()
{
    const auto peer = connectedPeer();
    QVERIFY(peer);
    const QString text(qsizetype{4} * 1024 * 1024, u'x');
    m_module->jsonRequestsManager()->send(7, text, true);
    m_module->initialize(false);
    QVERIFY(m_module->isInitializeRunning(false));
    qint64 received = 0;
    QTRY_VERIFY((received += peer->readAll().size()) > 2 * text.size());
    QTRY_VERIFY(!m_module->isInitializeRunning(false));
}

QTEST_GUILESS_MAIN(TestAppClientModule)
#include "tst_appclientmodule.moc"
