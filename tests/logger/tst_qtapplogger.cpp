#include "assertionlog.h"
#include "logcapture.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <thread>
#include <vector>

namespace {

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

const QLatin1String writerSwitch("--write");
QString writerText() { return QString(200, u'x'); }
constexpr int writerThreads = 3;
constexpr int writerLines = 200;

int writeLines(const QString &path, qint64 rotateAtBytes)
{
    QtAppLogger logger({.filePath = path, .rotateAtBytes = rotateAtBytes});
    std::vector<std::thread> threads;
    threads.reserve(writerThreads);
    for (int thread = 0; thread < writerThreads; ++thread)
        threads.emplace_back([&logger] {
            for (int i = 0; i < writerLines; ++i)
                logger.log(1, writerText());
        });
    for (std::thread &thread : threads)
        thread.join();
    return 0;
}

} // namespace

class TestQtAppLogger : public QObject {
    Q_OBJECT
    QTemporaryDir m_dir;
    QString m_path;

private Q_SLOTS:
    void init() { m_path = m_dir.filePath(QLatin1String(QTest::currentTestFunction())); }

    void textsAndFailedChecks()
    {
        const LogCapture log;
        logLine(1, u"a\n2026 [1] 1 b\r\x1b[2J\x7f\t %1 下载 😀"_qs);
        QVERIFY(checkOrLog(true, "fine"));
        QVERIFY(!checkOrLog(false, "write(%3, \"é\")", "/home/me/src/x/src/common/part.cpp", 7));
        QVERIFY(!checkOrLog(false, "in no sources", "/a.b/noext", 8));
        QCOMPARE(log.texts(),
                 QStringList({u"a\\n2026 [1] 1 b\\x0d\\x1b[2J\\x7f\\x09 %1 下载 😀"_qs,
                              u"ASSERTION FAILED: write(%3, \"é\"), ../../src/common/part,7"_qs,
                              u"ASSERTION FAILED: in no sources, /a.b/noext,8"_qs}));
    }

    void rotatesAtTheLimit()
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
    }

    void followsAFileThatOthersMoved()
    {
        QtAppLogger logger({.filePath = m_path});
        logger.log(1, u"first"_qs);
        QVERIFY(QFile::rename(m_path, m_path + u".1"_qs));
        logger.log(1, u"second"_qs);
        QVERIFY(contents(m_path).contains("second"));
    }

    void linesOfThreadsAndProcessesStayWhole()
    {
        // Full about half-way: rotated exactly once, whoever finds it full, and nothing is lost.
        constexpr int processes = 4;
        constexpr int lines = processes * writerThreads * writerLines;
        std::vector<std::unique_ptr<QProcess>> writers;
        for (int i = 0; i < processes; ++i) {
            writers.push_back(std::make_unique<QProcess>());
            writers.back()->start(QCoreApplication::applicationFilePath(),
                                  {writerSwitch, m_path, QString::number(lines * 240 * 3 / 5)});
        }
        for (const auto &writer : writers) {
            QVERIFY(writer->waitForFinished());
            QCOMPARE(writer->exitCode(), 0);
        }
        const QByteArray rotated = contents(m_path + u".1"_qs);
        const QList<QByteArray> all = (rotated + contents(m_path)).trimmed().split('\n');
        QVERIFY(!rotated.isEmpty());
        QCOMPARE(all.size(), lines);
        for (const QByteArray &line : all)
            QVERIFY2(line.endsWith(" 1 " + writerText().toUtf8()) && line.size() < 245,
                     line.constData());
    }

    void stderrThatNobodyReads()
    {
        int ends[2];
        QCOMPARE(::pipe2(ends, O_CLOEXEC), 0);
        ::fcntl(ends[0], F_SETFL, O_NONBLOCK);
        const auto readAll = [&ends] {
            QByteArray bytes(200'000, '\0');
            const ssize_t count = ::read(ends[0], bytes.data(), 200'000);
            return bytes.first(std::max(count, ssize_t{0}));
        };
        (void)std::fflush(nullptr);
        const int realOut = ::dup(STDOUT_FILENO);
        const int realErr = ::dup(STDERR_FILENO);
        ::dup2(ends[1], STDERR_FILENO);
        QtAppLogger logger({});
        for (int i = 0; i < 100; ++i)
            logger.log(1, QString(10'000, u'x'));
        const QByteArray first = readAll();
        logger.log(1, u"heard again"_qs);
        const QByteArray second = readAll();
        // Were stdout the same pipe, or named as the file, nothing may be written at all.
        ::dup2(ends[1], STDOUT_FILENO);
        for (const QString &path : {u""_qs, u"/dev/stdout"_qs})
            QtAppLogger({.filePath = path}).log(1, u"not here"_qs);
        const QByteArray third = readAll();
        ::dup2(realOut, STDOUT_FILENO);
        ::dup2(realErr, STDERR_FILENO);
        for (const int descriptor : {realOut, realErr, ends[0], ends[1]})
            ::close(descriptor);

        QVERIFY(first.size() >= 10'000 && first.size() < 200'000);
        QVERIFY(second.endsWith(" 1 heard again\n"));
        QVERIFY2(first.endsWith('\n') || second.startsWith('\n'), "the torn line is ended");
        QCOMPARE(third, QByteArray());
    }

    void pipeWithoutReader()
    {
        QCOMPARE(::mkfifo(QFile::encodeName(m_path).constData(), 0600), 0);
        QtAppLogger({.filePath = m_path}).log(1, u"nobody waits"_qs);
    }
};

/// Run by itself as "tst_qtapplogger --write <file> <limit>", it is one of the writers.
int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == writerSwitch)
        return writeLines(arguments.at(2), arguments.at(3).toLongLong());
    TestQtAppLogger test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_qtapplogger.moc"
