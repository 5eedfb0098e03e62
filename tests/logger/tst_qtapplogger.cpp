#include "assertionlog.h"
#include "logcapture.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <csignal>
#include <thread>
#include <utility>
#include <vector>

namespace {

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// RAII: replaces stderr by a pipe.
class CapturedStderr {
public:
    CapturedStderr() : m_real(::dup(STDERR_FILENO))
    {
        if (::pipe2(m_ends, O_CLOEXEC | O_NONBLOCK) != 0)
            qFatal("no pipe");
        ::dup2(m_ends[1], STDERR_FILENO);
    }
    ~CapturedStderr()
    {
        ::dup2(m_real, STDERR_FILENO);
        for (const int descriptor : {m_real, m_ends[0], m_ends[1]})
            ::close(descriptor);
    }
    Q_DISABLE_COPY_MOVE(CapturedStderr)

    void closeReader() { ::close(std::exchange(m_ends[0], -1)); }
    /// The output since the last call.
    QByteArray read() const
    {
        QByteArray bytes(200'000, '\0');
        return bytes.first(std::max(::read(m_ends[0], bytes.data(), 200'000), ssize_t{0}));
    }

private:
    const int m_real;
    int m_ends[2] = {};
};

} // namespace

class TestQtAppLogger : public QObject {
    Q_OBJECT
    QTemporaryDir m_dir;
    QString m_path;

private Q_SLOTS:
    void init() { m_path = m_dir.filePath(QLatin1String(QTest::currentTestFunction())); }

    void textsAndFailedChecks()
    {
        QVERIFY(!logsLevel(1)); // there is no logger
        const LogCapture log;
        QVERIFY(logsLevel(1) && !logsLevel(2));
        QVERIFY(!QtAppLogger({.verbosityLevel = 0, .filePath = {}}).logs(0));
        logLine(1, u"a\n2026 [1] 1 b\r\x1b[2J\x7f\t %1 下载 😀"_qs);
        QVERIFY(checkOrLog(true, "fine"));
        QVERIFY(!checkOrLog(false, "write(%3, \"é\")", "/home/me/src/x/src/common/part.cpp", 7));
        QVERIFY(!checkOrLog(false, "in no sources", "/a.b/noext", 8));
        QVERIFY(!checkOrLog(false, "at the root", "/src/a.cpp", 9));
        QVERIFY(!checkOrLog(false, "in no folder", "a", 10));
        QCOMPARE(log.texts(),
                 QStringList({u"a\\n2026 [1] 1 b\\x0d\\x1b[2J\\x7f\\x09 %1 下载 😀"_qs,
                              u"ASSERTION FAILED: write(%3, \"é\"), ../../src/common/part,7"_qs,
                              u"ASSERTION FAILED: in no sources, /a.b/noext,8"_qs,
                              u"ASSERTION FAILED: at the root, ../../src/a,9"_qs,
                              u"ASSERTION FAILED: in no folder, a,10"_qs}));
    }

    void rotates()
    {
        QtAppLogger logger({.filePath = m_path, .rotateAtBytes = 1000});
        const QString old = m_path + u".1"_qs;
        for (const char *text : {"first", "second"}) {
            logger.log(1, QLatin1String(text));
            for (int i = 0; i < 100 && !contents(old).contains(text); ++i)
                logger.log(1, u"line"_qs);
            QVERIFY(contents(old).contains(text));
            QVERIFY(contents(old).size() <= 1000);
            QVERIFY(contents(old).size() + contents(m_path).size() > 1000);
        }
        logger.log(1, QString(5000, u'x'));
        QVERIFY2(contents(m_path).contains("xxxx"), "a line larger than the limit");
        QVERIFY(QFile::remove(old) && QFile::rename(m_path, old));
        logger.log(1, u"third"_qs);
        QVERIFY2(contents(m_path).contains("third"), "after others moved the file");
        // Never an empty one, and only when a line does not fit.
        const qint64 size = contents(m_path).size();
        QVERIFY(QFile::remove(old) && QFile::remove(m_path));
        for (const int lines : {1, 2}) {
            QtAppLogger({.filePath = m_path, .rotateAtBytes = lines * size}).log(1, u"third"_qs);
            QVERIFY(contents(m_path).size() == lines * size && !QFile::exists(old));
        }
        QtAppLogger({.filePath = m_path, .rotateAtBytes = size - 1}).log(1, u"third"_qs);
        QCOMPARE(contents(old).size(), 2 * size);
        QVERIFY(QFile::remove(old) && QFile::remove(m_path));
        QtAppLogger({.filePath = m_path, .rotateAtBytes = size - 1}).log(1, u"third"_qs);
        QVERIFY(!QFile::exists(old));
    }

    void linesOfManyStayWhole()
    {
        // Full about half-way: rotated exactly once, whichever logger finds it full, and nothing is
        // lost. The loggers share as little as those of several processes.
        constexpr int loggers = 8;
        constexpr int linesOfEach = 300;
        const QString text(200, u'x');
        const auto descriptors = [] { return QDir(u"/proc/self/fd"_qs).count(); };
        const auto before = descriptors();
        std::vector<std::thread> threads;
        threads.reserve(loggers);
        for (int i = 0; i < loggers; ++i)
            threads.emplace_back([this, &text] {
                QtAppLogger logger(
                    {.filePath = m_path, .rotateAtBytes = loggers * linesOfEach * 240 * 3 / 5});
                for (int line = 0; line < linesOfEach; ++line)
                    logger.log(1, text);
            });
        for (std::thread &thread : threads)
            thread.join();
        QCOMPARE(descriptors(), before);
        const QByteArray rotated = contents(m_path + u".1"_qs);
        const QList<QByteArray> all = (rotated + contents(m_path)).trimmed().split('\n');
        QVERIFY(!rotated.isEmpty());
        QCOMPARE(all.size(), loggers * linesOfEach);
        for (const QByteArray &line : all)
            QVERIFY2(line.endsWith(" 1 " + text.toUtf8()) && line.size() < 245, line.constData());
    }

    void stderrThatNobodyReads()
    {
        const CapturedStderr err;
        QtAppLogger logger({});
        for (int i = 0; i < 100; ++i)
            logger.log(1, QString(10'000, u'x'));
        const QByteArray first = err.read();
        logger.log(1, u"heard again"_qs);
        const QByteArray second = err.read();
        // What was dropped whole leaves no trace.
        const QByteArray full(PIPE_BUF, ' ');
        while (::write(STDERR_FILENO, full.constData(), PIPE_BUF) > 0) { }
        logger.log(1, u"dropped"_qs);
        QVERIFY(!err.read().contains("dropped"));
        logger.log(1, u"whole"_qs);
        QVERIFY(!err.read().startsWith('\n'));
        // Nor does it block on a named pipe.
        QCOMPARE(::mkfifo(QFile::encodeName(m_path).constData(), 0600), 0);
        QtAppLogger({.filePath = m_path}).log(1, u"nobody waits"_qs);
        // A pipe that is also stdout is the message channel.
        const int realOut = ::dup(STDOUT_FILENO);
        ::dup2(STDERR_FILENO, STDOUT_FILENO);
        QtAppLogger({}).log(1, u"not here"_qs);
        const QByteArray third = err.read();
        ::dup2(realOut, STDOUT_FILENO);
        ::close(realOut);

        QVERIFY(first.size() >= 10'000 && first.size() < 200'000);
        QVERIFY(second.endsWith(" 1 heard again\n"));
        QVERIFY2(first.endsWith('\n') || second.startsWith('\n'), "the torn line is ended");
        QCOMPARE(third, QByteArray());
    }

    void brokenPipeRaisesNoSignal()
    {
        sigset_t brokenPipe;
        sigset_t pending;
        ::sigemptyset(&brokenPipe);
        ::sigaddset(&brokenPipe, SIGPIPE);
        CapturedStderr err;
        QtAppLogger logger({});
        err.closeReader();
        logger.log(1, u"nobody reads"_qs); // ends the process otherwise
        // A signal that was pending before is not lost.
        ::pthread_sigmask(SIG_BLOCK, &brokenPipe, nullptr);
        ::raise(SIGPIPE);
        logger.log(1, u"nobody reads"_qs);
        ::sigpending(&pending);
        const timespec noWait = {};
        ::sigtimedwait(&brokenPipe, nullptr, &noWait);
        ::pthread_sigmask(SIG_UNBLOCK, &brokenPipe, nullptr);
        QCOMPARE(::sigismember(&pending, SIGPIPE), 1);
    }

    void filesOfOthersAreNotWritten()
    {
        const QString kept = m_dir.filePath(u"kept"_qs);
        const auto make = [](const QString &path, QFile::Permissions permissions) {
            QFile file(path);
            return file.open(QIODevice::WriteOnly) && file.setPermissions(permissions);
        };
        constexpr auto own = QFile::ReadOwner | QFile::WriteOwner;
        QVERIFY(make(kept, own) && QFile::link(kept, m_path + u"link"_qs));
        QVERIFY(make(m_path + u"open"_qs, own | QFile::ReadOther));
        QVERIFY(make(m_path + u"other"_qs, own));
        // Only root can change a file's owner; as another user, take one of root's files.
        const bool isRoot = ::geteuid() == 0;
        const QString foreign = isRoot ? m_path + u"other"_qs : u"/dev/null"_qs;
        if (isRoot)
            QCOMPARE(::chown(QFile::encodeName(foreign).constData(), 1234, 1234), 0);
        for (const QString &path : {m_path + u"link"_qs, m_path + u"open"_qs, foreign}) {
            const CapturedStderr err;
            QtAppLogger({.filePath = path}).log(1, u"heard"_qs);
            const QByteArray log = err.read();
            QVERIFY2(log.contains(QFile::encodeName(path) + "\" is not written to: it "), log);
            QVERIFY2(log.endsWith(" 1 heard\n"), log);
            QCOMPARE(contents(path), QByteArray());
        }
        // Neither is anything else for what cannot be opened.
        const CapturedStderr err;
        QtAppLogger({.filePath = m_dir.path()}).log(1, u"dropped"_qs);
        QCOMPARE(err.read(), QByteArray());
    }
};

QTEST_GUILESS_MAIN(TestQtAppLogger)
#include "tst_qtapplogger.moc"
