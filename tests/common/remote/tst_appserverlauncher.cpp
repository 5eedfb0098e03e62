#include "appserverlauncher.h"
#include "linksuccessor.h"
#include "logcapture.h"
#include "qtvhbodycodec.h"
#include "rows.h"

#include <QProcess>
#include <QRegularExpression>
#include <QSignalSpy>

#include <fcntl.h>
#include <unistd.h>

#include <csignal>

namespace {

QString reportPath()
{
    return QFileInfo(QFile::symLinkTarget(u"/proc/self/exe"_qs)).path() + u"/report"_qs;
}

/// The program's behaviour when it is started as "kov": it reports its session, its process group,
/// its arguments, and the targets of its open descriptors.
int report(const char *argument)
{
    QStringList lines{QString::number(::getsid(0)), QString::number(::getpgrp()),
                      QString::fromLocal8Bit(argument)};
    for (int descriptor = 0; descriptor < 1000; ++descriptor) {
        char target[200] = {};
        const QByteArray link = "/proc/self/fd/" + QByteArray::number(descriptor);
        if (::readlink(link.constData(), target, sizeof(target) - 1) > 0)
            lines += QString::fromLocal8Bit(target);
    }
    struct sigaction pipeAction = {};
    ::sigaction(SIGPIPE, nullptr, &pipeAction);
    sigset_t blocked = {};
    ::sigprocmask(SIG_BLOCK, nullptr, &blocked);
    lines += pipeAction.sa_handler == SIG_DFL ? u"default signals"_qs : QString();
    lines += ::sigisemptyset(&blocked) != 0 ? u"none blocked"_qs : QString();
    QFile file(reportPath() + u".new"_qs);
    if (!file.open(QIODevice::WriteOnly))
        return 1;
    file.write(lines.join(u'\n').toUtf8());
    file.close();
    return file.rename(reportPath()) ? 0 : 1;
}

/// The program's behaviour as a successor: it reports the messages.
int deliver()
{
    QStringList lines;
    for (const VhIpcQueuedMessage &each : LinkSuccessor::receive())
        lines += QString::number(each.waitedMs) + each.message.value(u"id"_qs).toString();
    QFile file(reportPath() + u".new"_qs);
    return file.open(QIODevice::WriteOnly) && file.write(lines.join(u'\n').toUtf8()) > 0
            && file.rename(reportPath())
        ? 0
        : 1;
}

} // namespace

class TestAppServerLauncher : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void cleanup()
    {
        QFile::remove(AppServerLauncher::serverBinaryPath());
        QFile::remove(reportPath());
    }

    void successorGetsTheMessages()
    {
        QVERIFY(LinkSuccessor::start({{.message = {{u"id"_qs, u" first"_qs}}, .waitedMs = 7},
                                      {.message = {{u"id"_qs, u" second"_qs}}, .waitedMs = 0}}));
        QFile file(reportPath());
        QTRY_VERIFY(file.exists());
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), "7 first\n0 second");
    }

    void successorStopsAtWhatItCannotRead()
    {
        QByteArray given;
        QDataStream(&given, QIODevice::WriteOnly)
            << qint64{7} << QtVhBodyCodec::toDataStream({{u"id"_qs, u" first"_qs}}) << qint64{0}
            << QByteArray("no message");
        QProcess successor;
        successor.start(QCoreApplication::applicationFilePath(),
                        {LinkSuccessor::commandLineSwitch()});
        successor.write(given);
        successor.closeWriteChannel();
        QVERIFY(successor.waitForFinished());
        QFile file(reportPath());
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), "7 first");
    }

    void startsServerOnItsOwn()
    {
        const QString path = QCoreApplication::applicationDirPath() + u"/kov"_qs;
        QVERIFY(!AppServerLauncher::serverBinaryExists());
        QVERIFY(QFile::copy(QCoreApplication::applicationFilePath(), path));
        QVERIFY(AppServerLauncher::serverBinaryExists());

        // As in a browser: standard streams that are pipes, and one more without FD_CLOEXEC.
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

        QFile file(reportPath());
        QTRY_VERIFY(file.exists());
        QVERIFY(file.open(QIODevice::ReadOnly));
        QByteArrayList lines = file.readAll().split('\n');
        QVERIFY(lines.takeFirst().toInt() != ::getsid(0));
        QVERIFY(lines.takeFirst().toInt() != ::getpgrp());
        QCOMPARE(
            lines.join(' '),
            "-service /dev/null /dev/null /memfd:stderr (deleted) default signals none blocked");
    }

    void tellsWhyItDoesNotRun_data()
    {
        const Rows<QByteArray, bool, QString> row("contents", "executable", "reason");
        row("missing", {}, false, u"execv: No such file or directory"_qs);
        row("no permission", "#!/bin/sh\n", false, u"execv: Permission denied"_qs);
        row("no program", "text", true, u"execv: Exec format error"_qs);
        row("ends at once", "#!/bin/sh\necho why >&2; exit 3\n", true, {});
    }

    void tellsWhyItDoesNotRun()
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
        QCOMPARE(AppServerLauncher::serverBinaryCanRun(), executable);
        const LogCapture log;
        AppServerLauncher launcher(true);
        const QSignalSpy finished(&launcher, &QtAbstractServerLauncher::launchServerFinished);
        launcher.launchServer();
        QTRY_COMPARE(log.texts().size(), 2);
        const AbstractError error = reason.isEmpty()
            ? AbstractError()
            : AbstractError(1, "GenericError", "../../src/common/remote/appserverlauncher,63",
                            reason.toStdString());
        QCOMPARE(finished, (QList<QVariantList>{{QVariant::fromValue(error)}}));
        const QRegularExpression expected(
            reason.isEmpty()
                ? u"launched server ended after \\d+ ms with status 3. It wrote: why$"_qs
                : u"WARNING: failed to launch server. \\{ERROR: .CODE.: 1, .*: %1\\}$"_qs.arg(
                    reason));
        QVERIFY2(expected.match(log.texts().constLast()).hasMatch(),
                 qPrintable(log.texts().constLast()));
    }
};

// The server must be beside the program, so the tests run a copy in a folder of its own.
int main(int argc, char *argv[])
{
    if (argc == 2 && qstrcmp(argv[1], "-service") == 0)
        return report(argv[1]);
    if (argc == 2 && LinkSuccessor::commandLineSwitch() == QLatin1String(argv[1]))
        return deliver();
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
