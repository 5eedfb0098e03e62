#include "appserverlauncher.h"
#include "logcapture.h"
#include "rows.h"

#include <QProcess>
#include <QSignalSpy>

#include <fcntl.h>
#include <unistd.h>

#include <csignal>

namespace {

QByteArray procFile(const QByteArray &pid, const char *name)
{
    QFile file(u"/proc/%1/%2"_qs.arg(QString::fromLatin1(pid), QLatin1String(name)));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// A field of /proc/PID/stat behind the program's name, see proc(5).
QByteArray statField(const QByteArray &pid, int number)
{
    const QByteArray stat = procFile(pid, "stat");
    return stat.mid(stat.lastIndexOf(')') + 2).split(' ').value(number - 3);
}

/// A mask of signals in /proc/PID/status, such as "SigIgn".
quint64 signalMask(const QByteArray &pid, const QByteArray &name)
{
    const QByteArray status = procFile(pid, "status");
    return status.mid(status.indexOf(name) + name.size() + 2, 16).toULongLong(nullptr, 16);
}

/// The files that a process has open, by descriptor.
QMap<int, QString> openFiles(const QByteArray &pid)
{
    const QDir dir(u"/proc/%1/fd"_qs.arg(QString::fromLatin1(pid)));
    QMap<int, QString> files;
    const auto entries = dir.entryInfoList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System);
    for (const QFileInfo &entry : entries)
        files.insert(entry.fileName().toInt(), entry.symLinkTarget());
    return files;
}

QString pidFilePath()
{
    return QFileInfo(QFile::symLinkTarget(u"/proc/self/exe"_qs)).path() + u"/kov.pid"_qs;
}

/// What the program does when it is started as "kov": it tells its process id and waits.
int serve()
{
    QFile file(pidFilePath() + u".new"_qs);
    if (!file.open(QIODevice::WriteOnly))
        return 1;
    file.write(QByteArray::number(::getpid()));
    file.close();
    file.rename(pidFilePath());
    ::alarm(60);
    ::pause();
    return 0;
}

} // namespace

class TestAppServerLauncher : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void cleanup() { QFile::remove(AppServerLauncher::serverBinaryPath()); }

    void startsServerOnItsOwn()
    {
        const QString path = QCoreApplication::applicationDirPath() + u"/kov"_qs;
        QVERIFY(!AppServerLauncher::serverBinaryExists());
        QVERIFY(QFile::copy(QCoreApplication::applicationFilePath(), path));
        QVERIFY(AppServerLauncher::serverBinaryExists());

        // As in a browser: standard streams that are pipes, and one more that nobody marked.
        int pipe[2];
        QCOMPARE(::pipe(pipe), 0);
        ::signal(SIGPIPE, SIG_IGN);
        const int savedInput = ::fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 10);
        ::dup2(pipe[0], STDIN_FILENO);
        AppServerLauncher launcher(false);
        const QSignalSpy finished(&launcher, &QtAbstractServerLauncher::launchServerFinished);
        launcher.launchServer();
        ::dup2(savedInput, STDIN_FILENO);
        QCOMPARE(finished, (QList<QVariantList>{{QVariant::fromValue(AbstractError())}}));

        QFile pidFile(pidFilePath());
        QTRY_VERIFY(pidFile.exists());
        QVERIFY(pidFile.open(QIODevice::ReadOnly));
        const QByteArray pid = pidFile.readAll();
        const auto end = qScopeGuard([&pid] { ::kill(pid.toInt(), SIGKILL); });
        QCOMPARE(procFile(pid, "cmdline"), path.toUtf8() + '\0' + "-service" + '\0');
        const QString nothing = u"/dev/null"_qs;
        QCOMPARE(openFiles(pid), (QMap<int, QString>{{0, nothing}, {1, nothing}, {2, nothing}}));
        for (const int groupOrSession : {5, 6})
            QVERIFY(statField(pid, groupOrSession) != statField("self", groupOrSession));
        QVERIFY(signalMask("self", "SigIgn") & (1 << (SIGPIPE - 1)));
        QCOMPARE(signalMask(pid, "SigIgn"), 0);
        QCOMPARE(signalMask(pid, "SigBlk"), 0);
    }

    void tellsWhyItCannotStart_data()
    {
        const Rows<QByteArray, bool, QString> row("contents", "executable", "reason");
        row("missing", {}, false, u"execv: No such file or directory"_qs);
        row("no permission", "#!/bin/sh\n", false, u"execv: Permission denied"_qs);
        row("no program", "text", true, u"execv: Exec format error"_qs);
    }

    void tellsWhyItCannotStart()
    {
        QFETCH(const QByteArray, contents);
        QFETCH(const bool, executable);
        QFETCH(const QString, reason);
        QFile file(AppServerLauncher::serverBinaryPath());
        if (!contents.isEmpty()) {
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(contents);
            file.close();
            file.setPermissions(executable ? QFile::ReadOwner | QFile::ExeOwner : QFile::ReadOwner);
        }
        const LogCapture log;
        AppServerLauncher launcher(true);
        const QSignalSpy finished(&launcher, &QtAbstractServerLauncher::launchServerFinished);
        launcher.launchServer();
        const AbstractError error(1, "GenericError", "../../src/common/remote/appserverlauncher,63",
                                  reason.toStdString());
        QCOMPARE(finished, (QList<QVariantList>{{QVariant::fromValue(error)}}));
        QCOMPARE(
            log.texts(),
            (QStringList{u"[AppServerLauncher]: launching server..."_qs,
                         u"[AppServerLauncher]: WARNING: failed to launch server. {ERROR: |CODE|: "
                         "1, |CATEGORY|: GenericError, |SOURCE|: ../../src/common/remote/"
                         "appserverlauncher,63, |DESCRIPTION|: %1}"_qs.arg(reason)}));
    }
};

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
    const QString copy = dir.filePath(u"tests"_qs);
    if (!QFile::copy(QCoreApplication::applicationFilePath(), copy))
        return 1;
    qputenv(insideVariable, "1");
    return QProcess::execute(copy, QCoreApplication::arguments().mid(1));
}

#include "tst_appserverlauncher.moc"
