#include "currentuserservername.h"
#include "qtabstractserveraddress.h"

#include <QTest>

#include <unistd.h>

class TestServerAddress : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void emptyWhenItNamesNoServer_data();
    void emptyWhenItNamesNoServer();
    void serverNameEndsWithUserId();
};

void TestServerAddress::emptyWhenItNamesNoServer_data()
{
    QTest::addColumn<QtAbstractServerAddress>("address");
    QTest::addColumn<int>("kind");
    QTest::addColumn<bool>("empty");
    const auto row = [](const char *name, const QtAbstractServerAddress &address, int kind,
                        bool empty) { QTest::newRow(name) << address << kind << empty; };
    const QString name = QStringLiteral("name");
    row("local name", QtAbstractServerAddress(name), 0, false);
    row("no local name", QtAbstractServerAddress(QString()), 0, true);
    row("id", QtAbstractServerAddress(qint64(-1)), 1, false);
    row("no id", QtAbstractServerAddress(qint64(0)), 1, true);
    row("host address", QtAbstractServerAddress(QHostAddress(QHostAddress::LocalHost), 0), 2,
        false);
    row("no host address, but a port", QtAbstractServerAddress(QHostAddress(), 80), 2, true);
    row("host name", QtAbstractServerAddress(name, 0, QString()), 3, false);
    row("no host name, but the rest", QtAbstractServerAddress(QString(), 80, name), 3, true);
}

void TestServerAddress::emptyWhenItNamesNoServer()
{
    QFETCH(const QtAbstractServerAddress, address);
    QTEST(address.kind(), "kind");
    QTEST(address.isEmpty(), "empty");
}

void TestServerAddress::serverNameEndsWithUserId()
{
    const QByteArray expected = "kov6fs" + QByteArray::number(::getuid());
    QCOMPARE(currentUserServerName(QStringLiteral("kov6fs")).toUtf8(), expected);
}

QTEST_GUILESS_MAIN(TestServerAddress)
#include "tst_serveraddress.moc"
