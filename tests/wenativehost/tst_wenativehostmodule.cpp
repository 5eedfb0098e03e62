#include "isolatedhost.h"
#include "logcapture.h"
#include "rows.h"
#include "wenativehostappmodule.h"
#include "wenativehostmodule.h"

#include <QCoreApplication>
#include <QLoggingCategory>
#include <QSignalSpy>
#include <unistd.h>

#include <array>
#include <cstdio>

/// The module in this process, whose standard input is a pipe. The system's language is French.
class TestWeNativeHostModule : public QObject {
    Q_OBJECT
    std::array<int, 2> m_input = {};
    std::unique_ptr<IsolatedHost> m_host;
    std::unique_ptr<WeNativeHostModule> m_module;

    /// The first of the captions that are sent to the extension.
    QString caption()
    {
        const QString strings = m_host->send(u"{'id':'1','type':'ui_strings'}"_qs);
        return strings.section(u"'dllink':'"_qs, 1).section(u'\'', 0, 0);
    }
    const QString english = u"Download with KOV"_qs;
    const QString french = u"Télécharger avec KOV"_qs;
    const QString german = u"Mit KOV herunterladen"_qs;

private Q_SLOTS:
    void initTestCase()
    {
        const QString folder = QCoreApplication::applicationDirPath() + u"/translations"_qs;
        QFile::remove(folder);
        QVERIFY(QFile::link(QStringLiteral(KOVALO_TRANSLATIONS_PATH), folder));
    }

    void init()
    {
        QCOMPARE(::pipe(m_input.data()), 0);
        QCOMPARE(::dup2(m_input[0], STDIN_FILENO), STDIN_FILENO);
        m_host = std::make_unique<IsolatedHost>(false);
        m_module = std::make_unique<WeNativeHostModule>(m_host->shutdownManager, m_host->client);
        m_module->initialize(true);
        QVERIFY(!m_module->isInitializeRunning(true) && !m_module->initFailed(true));
        QVERIFY(!QLoggingCategory::defaultCategory()->isWarningEnabled());
    }

    void cleanup()
    {
        m_module.reset();
        m_host.reset();
        for (const int end : m_input)
            ::close(end);
    }

    void language_data()
    {
        const Rows<QByteArray, QString> row("name", "expected");
        row("none: the system's", "", french);
        row("another region", "de_AT", german);
        row("source texts", "en_GB", english);
        row("not translated", "eu_ES", english);
        row("no locale at all", "?!", english);
    }

    void language()
    {
        QFETCH(const QByteArray, name);
        QFETCH(const QString, expected);
        const LogCapture log;
        for (int i = 0; i < 2; ++i)
            m_host->set(AppSettings::LocaleName, name.constData());
        m_host->makeSettingsKnown();
        QCOMPARE(caption(), expected);
        QCOMPARE(log.texts().filter(u"loading locale"_qs).size(), name.isEmpty() ? 0 : 1);
        m_host->settings().resetToDefaults(QString());
        QCOMPARE(caption(), french);
        m_module->initialize(false);
        m_host->set(AppSettings::LocaleName, "de");
        QCOMPARE(caption(), english);
        m_module->initialize(true);
        QCOMPARE(caption(), german);
    }

    void settingsThatBecomeKnown()
    {
        m_host->settings().blockSignals(true);
        m_host->set(AppSettings::LocaleName, "de");
        m_host->settings().blockSignals(false);
        QCOMPARE(caption(), french);
        m_host->makeSettingsKnown();
        QCOMPARE(caption(), german);
        m_host->settings().setAllValues({}, QString());
        QCOMPARE(caption(), french);
        // The extension is told of other captions than it has, once.
        const auto told = [this] {
            Q_EMIT m_host->dispatcher->translationsLoaded();
            return m_host->sent().contains(german);
        };
        m_host->set(AppSettings::LocaleName, "de");
        QVERIFY(told());
        QVERIFY(!told());
        QCOMPARE(caption(), german);
    }

    /// From the bring-up to the end of the input; the last test, since it ends the process's input.
    void wholeHost()
    {
        m_module.reset();
        const QTemporaryDir folder;
        const auto shutdown = QSharedPointer<QtAppDelayedShutdownManager>::create();
        const QSignalSpy ready(shutdown.data(), &QtAppDelayedShutdownManager::readyToQuit);
        WeNativeHostAppModule host(QSharedPointer<TemporaryConfig>::create(folder.path()), nullptr,
                                   shutdown);
        host.initialize(true);
        QTRY_VERIFY(!host.isInitializeRunning(true));
        QVERIFY(!host.initFailed(true));
        QVERIFY(shutdown->shutdownReason().isEmpty());
        ::close(m_input[1]);
        QTRY_COMPARE(shutdown->shutdownReason(), u"end of input"_qs);
        QCOMPARE(ready.size(), 0); // it must be taken down first
        host.initialize(false);
        QTRY_COMPARE(ready.size(), 1);
    }
};

int main(int argc, char *argv[])
{
    qputenv("LC_ALL", "fr_FR.UTF-8");
    const QCoreApplication application(argc, argv);
    TestWeNativeHostModule test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_wenativehostmodule.moc"
