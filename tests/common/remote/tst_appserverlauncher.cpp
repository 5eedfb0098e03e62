#include "appserverlauncher.h"
#include "logcapture.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <fcntl.h>
#include <unistd.h>

#include <csignal>

namespace {

QString pidFileName() { return QStringLiteral("kov.pid"); }

QByteArray procFile(const QByteArray &pid, const char *name)
{
    QFile file(QStringLiteral("/proc/%1/%2").arg(QString::fromLatin1(pid), QLatin1String(name)));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// The fields of /proc/PID/stat from the third on, see proc(5).
QByteArrayList statFields(const QByteArray &pid)
{
    const QByteArray stat = procFile(pid, "stat");
    return stat.mid(stat.lastIndexOf(')') + 2).split(' ');
}
constexpr qsizetype groupField = 2;
constexpr qsizetype sessionField = 3;

/// A mask of signals in /proc/PID/status, such as "SigIgn".
quint64 signalMask(const QByteArray &pid, const QByteArray &name)
{
    const QByteArray status = procFile(pid, "status");
    const qsizetype at = status.indexOf(name + ":\t") + name.size() + 2;
    return status.mid(at, 16).toULongLong(nullptr, 16);
}

/// The files that a process has open, by descriptor.
QMap<int, QString> openFiles(const QByteArray &pid)
{
    const QDir dir(QStringLiteral("/proc/%1/fd").arg(QString::fromLatin1(pid)));
    QMap<int, QString> files;
    const QFileInfoList entries =
        dir.entryInfoList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System);
    for (const QFileInfo &entry : entries)
        files.insert(entry.fileName().toInt(), entry.symLinkTarget());
    return files;
}

/// What the program does when it is started as "kov": it tells its process id and waits.
int serve()
{
    const QString folder =
        QFileInfo(QFile::symLinkTarget(QStringLiteral("/proc/self/exe"))).path() + u'/';
    {
        QFile file(folder + QStringLiteral("pid.new"));
        if (!file.open(QIODevice::WriteOnly))
            return 1;
        file.write(QByteArray::number(::getpid()));
    }
    QFile::rename(folder + QStringLiteral("pid.new"), folder + pidFileName());
    ::alarm(60);
    ::pause();
    return 0;
}

} // namespace

class TestAppServerLauncher : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void cleanup() { QFile::remove(AppServerLauncher::serverBinaryPath()); }

    void startsServerOnItsOwn();
    void tellsWhyItCannotStart_data();
    void tellsWhyItCannotStart();
};

void TestAppServerLauncher::startsServerOnItsOwn()
{
    const QString folder = QCoreApplication::applicationDirPath();
    QCOMPARE(AppServerLauncher::serverBinaryPath(), folder + QStringLiteral("/kov"));
    QVERIFY(!AppServerLauncher::serverBinaryExists());
    QVERIFY(QFile::copy(QCoreApplication::applicationFilePath(),
                        AppServerLauncher::serverBinaryPath()));
    QVERIFY(AppServerLauncher::serverBinaryExists());

    // As in a browser: standard streams that are pipes, and one more that nobody marked.
    int pipe[2];
    QCOMPARE(::pipe(pipe), 0);
    ::signal(SIGPIPE, SIG_IGN);
    const int savedInput = ::fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 10);
    ::dup2(pipe[0], STDIN_FILENO);

    const LogCapture log;
    AppServerLauncher launcher(false);
    QSignalSpy finished(&launcher, &QtAbstractServerLauncher::launchServerFinished);
    launcher.launchServer();
    ::dup2(savedInput, STDIN_FILENO);
    QCOMPARE(finished.size(), 1);
    QCOMPARE(finished.at(0).at(0).value<AbstractError>(), AbstractError());
    QCOMPARE(log.texts(), QStringList{QStringLiteral("[AppServerLauncher]: launching server...")});

    QFile pidFile(folder + u'/' + pidFileName());
    QTRY_VERIFY(pidFile.exists());
    QVERIFY(pidFile.open(QIODevice::ReadOnly));
    const QByteArray pid = pidFile.readAll();
    const auto end = qScopeGuard([&pid] { ::kill(pid.toInt(), SIGKILL); });

    QCOMPARE(procFile(pid, "cmdline"),
             AppServerLauncher::serverBinaryPath().toUtf8() + '\0' + "-service" + '\0');
    const QString nothing = QStringLiteral("/dev/null");
    QCOMPARE(openFiles(pid), (QMap<int, QString>{{0, nothing}, {1, nothing}, {2, nothing}}));
    const QByteArrayList own = statFields("self");
    QVERIFY(statFields(pid).at(sessionField) != own.at(sessionField));
    QVERIFY(statFields(pid).at(groupField) != own.at(groupField));
    QVERIFY(signalMask("self", "SigIgn") & (1 << (SIGPIPE - 1)));
    QCOMPARE(signalMask(pid, "SigIgn"), 0);
    QCOMPARE(signalMask(pid, "SigBlk"), 0);
}

void TestAppServerLauncher::tellsWhyItCannotStart_data()
{
    QTest::addColumn<QByteArray>("contents");
    QTest::addColumn<bool>("executable");
    QTest::addColumn<QString>("reason");
    QTest::newRow("missing") << QByteArray() << false
                             << QStringLiteral("execv: No such file or directory");
    QTest::newRow("no permission")
        << QByteArray("#!/bin/sh\n") << false << QStringLiteral("execv: Permission denied");
    QTest::newRow("no program") << QByteArray("text") << true
                                << QStringLiteral("execv: Exec format error");
}

void TestAppServerLauncher::tellsWhyItCannotStart()
{
    QFETCH(const QByteArray, contents);
    QFETCH(const bool, executable);
    QFETCH(const QString, reason);
    if (!contents.isEmpty()) {
        QFile file(AppServerLauncher::serverBinaryPath());
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(contents);
        auto permissions = QFile::ReadOwner | QFile::WriteOwner;
        file.setPermissions(executable ? permissions | QFile::ExeOwner : permissions);
    }
    const LogCapture log;
    AppServerLauncher launcher(true);
    QSignalSpy finished(&launcher, &QtAbstractServerLauncher::launchServerFinished);
    launcher.launchServer();
    QCOMPARE(finished.size(), 1);
    QCOMPARE(finished.at(0).at(0).value<AbstractError>(),
             AbstractError(1, "GenericError", "../../src/common/remote/appserverlauncher,63",
                           reason.toStdString()));
    QCOMPARE(log.texts().size(), 2);
    QCOMPARE(log.texts().constLast(),
             QStringLiteral("[AppServerLauncher]: WARNING: failed to launch server. "
                            "{ERROR: |CODE|: 1, |CATEGORY|: GenericError, |SOURCE|: "
                            "../../src/common/remote/appserverlauncher,63, |DESCRIPTION|: ")
                 + reason + u'}');
}

// The server lies beside the program, so the tests run from a copy that has a folder of its own.
int main(int argc, char *argv[])
{
    if (argc == 2 && qstrcmp(argv[1], "-service") == 0)
        return serve();
    const QCoreApplication app(argc, argv);
    constexpr const char *insideVariable = "KOVALO_TEST_INSIDE_COPY";
    if (qEnvironmentVariableIsSet(insideVariable)) {
        TestAppServerLauncher test;
        return QTest::qExec(&test, argc, argv);
    }
    const QTemporaryDir dir;
    const QString copy = dir.filePath(QStringLiteral("tests"));
    if (!QFile::copy(QCoreApplication::applicationFilePath(), copy))
        return 1;
    qputenv(insideVariable, "1");
    return QProcess::execute(copy, QCoreApplication::arguments().mid(1));
}

#include "tst_appserverlauncher.moc"
