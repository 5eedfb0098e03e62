#include <QDBusConnection>
#include <QDir>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

/// Firefox in a Flatpak, on a separate session bus with or without a fake proxy.
class tst_MessagingProxy : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void decidesTheWayOfASandboxedFirefox();
    void cleanupTestCase();

private:
    static QByteArray run(const QStringList &arguments);

    QTemporaryDir m_home;
    QProcess m_bus;
};

void tst_MessagingProxy::initTestCase()
{
    QVERIFY(QDir(m_home.path()).mkpath(QStringLiteral(".var/app/org.mozilla.firefox/.mozilla")));
    qputenv("HOME", m_home.path().toLocal8Bit());
    m_bus.start(QStringLiteral("dbus-daemon"),
                {QStringLiteral("--session"), QStringLiteral("--nofork"),
                 QStringLiteral("--print-address")});
    QVERIFY(m_bus.waitForReadyRead());
    qputenv("DBUS_SESSION_BUS_ADDRESS", m_bus.readAllStandardOutput().trimmed());
}

QByteArray tst_MessagingProxy::run(const QStringList &arguments)
{
    QProcess program;
    program.start(QStringLiteral(KOVALO_HOST_TOOL), arguments);
    program.waitForFinished();
    return program.readAllStandardOutput();
}

void tst_MessagingProxy::decidesTheWayOfASandboxedFirefox()
{
    static const QRegularExpression row(
        QStringLiteral("^Firefox +org\\.mozilla\\.firefox +Flatpak +yes +(.*)$"),
        QRegularExpression::MultilineOption);
    const auto registered = [] {
        return row.match(QString::fromUtf8(run({QStringLiteral("browsers")}))).captured(1);
    };
    // The manifest of a Firefox outside the sandbox, which one inside cannot use without the proxy.
    QVERIFY(run({QStringLiteral("register"), QStringLiteral("org.mozilla.firefox")})
                .contains("/.mozilla/native-messaging-hosts/"));
    QCOMPARE(registered(), QStringLiteral("no"));
    QDBusConnection standIn =
        QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("stand-in"));
    QVERIFY(standIn.registerService(QStringLiteral("org.freedesktop.NativeMessagingProxy")));
    QCOMPARE(registered(), QStringLiteral("yes"));
}

void tst_MessagingProxy::cleanupTestCase()
{
    m_bus.terminate();
    QVERIFY(m_bus.waitForFinished());
}

QTEST_GUILESS_MAIN(tst_MessagingProxy)
#include "tst_messagingproxy.moc"
