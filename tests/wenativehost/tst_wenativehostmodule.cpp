#include "appsettings.h"
#include "isolatedclientmodule.h"
#include "logcapture.h"
#include "qtappdelayedshutdownmanager.h"
#include "wenativehostmodule.h"

#include <QCoreApplication>
#include <QFile>
#include <QSignalSpy>
#include <QTest>

#include <unistd.h>

#include <array>
#include <cstdio>
#include <memory>

/// The module within this process, whose standard input is a pipe. The system speaks French.
class TestWeNativeHostModule : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void language_data();
    void language();
    void settingsThatBecomeKnown();
    void loadedAgainOnlyWhenItChanges();
    void withoutTranslations();
    void endOfInput();
    void takenDownTwice();

private:
    QtAppAbstractSettingsManager &settings() { return m_client->settings(); }
    void setLocale(const QString &name)
    {
        settings().setValue(toString(AppSettings::LocaleName), name);
    }
    static QString caption() { return QCoreApplication::translate("QObject", "Download with %1"); }

    std::array<int, 2> m_input = {};
    std::unique_ptr<IsolatedClientModule> m_client;
    QSharedPointer<QtAppDelayedShutdownManager> m_shutdownManager;
    std::unique_ptr<WeNativeHostModule> m_module;
};

namespace {

QString english() { return QStringLiteral("Download with %1"); }
QString french() { return QStringLiteral(u"T\u00e9l\u00e9charger avec %1"); }
QString german() { return QStringLiteral("Mit %1 herunterladen"); }

QString translationsFolder()
{
    return QCoreApplication::applicationDirPath() + QStringLiteral("/translations");
}

} // namespace

void TestWeNativeHostModule::initTestCase()
{
    QFile::remove(translationsFolder());
    QVERIFY(QFile::link(QStringLiteral(KOVALO_TRANSLATIONS_PATH), translationsFolder()));
}

void TestWeNativeHostModule::init()
{
    QCOMPARE(::pipe(m_input.data()), 0);
    QCOMPARE(::dup2(m_input[0], STDIN_FILENO), STDIN_FILENO);
    std::clearerr(stdin);

    m_client = std::make_unique<IsolatedClientModule>();
    m_client->bringUp();
    m_shutdownManager = QSharedPointer<QtAppDelayedShutdownManager>::create();
    // Nothing is to end the event loops of these tests.
    m_shutdownManager->registerObject(this, true);
    m_module = std::make_unique<WeNativeHostModule>(m_shutdownManager, m_client->module());
    m_module->initialize(true);
}

void TestWeNativeHostModule::cleanup()
{
    if (m_module)
        m_module->initialize(false);
    m_module.reset();
    m_shutdownManager.reset();
    m_client.reset();
    for (const int end : m_input)
        ::close(end);
}

void TestWeNativeHostModule::language_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("expected");

    QTest::newRow("none: the system's") << QString() << french();
    QTest::newRow("another") << QStringLiteral("de_DE") << german();
    QTest::newRow("another region") << QStringLiteral("de_AT") << german();
    QTest::newRow("source texts") << QStringLiteral("en_GB") << english();
    QTest::newRow("not translated") << QStringLiteral("eu_ES") << english();
    QTest::newRow("no locale at all") << QStringLiteral("?!") << english();
}

void TestWeNativeHostModule::language()
{
    QFETCH(const QString, name);
    QFETCH(const QString, expected);

    QCOMPARE(caption(), french());
    setLocale(name);
    QCOMPARE(caption(), expected);
    settings().resetToDefaults(QString());
    QCOMPARE(caption(), french());
    settings().setAllValues({{toString(AppSettings::LocaleName), name}}, QString());
    QCOMPARE(caption(), expected);
}

void TestWeNativeHostModule::settingsThatBecomeKnown()
{
    settings().blockSignals(true);
    setLocale(QStringLiteral("de"));
    settings().blockSignals(false);
    QCOMPARE(caption(), french());
    m_client->initializeSettings();
    QCOMPARE(caption(), german());
}

void TestWeNativeHostModule::loadedAgainOnlyWhenItChanges()
{
    const LogCapture log;
    const auto loads = [&log] {
        return log.texts()
            .filter(QStringLiteral("[AppLocalizationManager]: loading locale"))
            .size();
    };
    m_client->initializeSettings();
    settings().setValue(toString(AppSettings::WbInterceptDownloads), QStringLiteral("0"));
    settings().resetToDefaults(QString());
    setLocale(QStringLiteral("fr_FR"));
    setLocale(QStringLiteral("fr_CA"));
    QCOMPARE(loads(), 0);
    setLocale(QStringLiteral("de"));
    QCOMPARE(loads(), 1);
    setLocale(QStringLiteral("de_DE"));
    settings().setValue(toString(AppSettings::WbInterceptDownloads), QStringLiteral("0"));
    QCOMPARE(loads(), 1);
    setLocale(QString());
    QCOMPARE(loads(), 2);
    QCOMPARE(caption(), french());
}

void TestWeNativeHostModule::withoutTranslations()
{
    m_module.reset();
    QVERIFY(QFile::rename(translationsFolder(), translationsFolder() + QStringLiteral(".away")));
    const LogCapture log;
    m_module = std::make_unique<WeNativeHostModule>(m_shutdownManager, m_client->module());
    m_module->initialize(true);
    const QString before = caption();
    const QStringList texts = log.texts();
    setLocale(QStringLiteral("de"));
    const QString after = caption();
    QVERIFY(QFile::rename(translationsFolder() + QStringLiteral(".away"), translationsFolder()));
    QCOMPARE(before, english());
    QCOMPARE(texts, QStringList());
    QCOMPARE(after, english());
}

void TestWeNativeHostModule::endOfInput()
{
    QSignalSpy requested(m_shutdownManager.data(), &QtAppDelayedShutdownManager::shutdownRequested);
    ::close(m_input[1]);
    QVERIFY(requested.size() == 1 || requested.wait());
    m_input[1] = -1;
}

void TestWeNativeHostModule::takenDownTwice()
{
    m_module->initialize(false);
    QCOMPARE(caption(), english());
    setLocale(QStringLiteral("de"));
    QCOMPARE(caption(), english());
    m_module->initialize(false);
    QVERIFY(!m_module->initFailed(false));
    setLocale(QString());
    m_module->initialize(true);
    QCOMPARE(caption(), french());
}

int main(int argc, char *argv[])
{
    qputenv("LC_ALL", "fr_FR.UTF-8");
    const QCoreApplication application(argc, argv);
    TestWeNativeHostModule test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_wenativehostmodule.moc"
