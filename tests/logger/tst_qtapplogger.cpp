#include "qtapplogger.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QStringList>
#include <QTemporaryDir>
#include <QTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <memory>
#include <thread>
#include <utility>
#include <vector>

namespace {

/// Puts a pipe in the place of a descriptor of the process while it lives.
class PipeInPlaceOf {
public:
    explicit PipeInPlaceOf(int descriptor) : m_descriptor(descriptor), m_original(::dup(descriptor))
    {
        (void)std::fflush(nullptr);
        if (::pipe2(m_ends, O_CLOEXEC) != 0)
            qFatal("no pipe");
        ::fcntl(m_ends[0], F_SETFL, O_NONBLOCK);
        ::dup2(m_ends[1], descriptor);
    }
    ~PipeInPlaceOf()
    {
        ::dup2(m_original, m_descriptor);
        for (const int end : {m_ends[0], m_ends[1], m_original})
            ::close(end);
    }
    Q_DISABLE_COPY_MOVE(PipeInPlaceOf)

    void closeReader() { ::close(std::exchange(m_ends[0], -1)); }

    QByteArray readAll() const
    {
        QByteArray all;
        char buffer[65536];
        for (ssize_t count = 0; (count = ::read(m_ends[0], buffer, sizeof buffer)) > 0;)
            all.append(buffer, count);
        return all;
    }

private:
    int m_descriptor;
    int m_original;
    int m_ends[2] = {-1, -1};
};

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
private Q_SLOTS:
    void init();
    void optionsFromEnvironment_data();
    void optionsFromEnvironment();
    void levels_data();
    void levels();
    void lineFormat_data();
    void lineFormat();
    void createsPrivateFileInNewFolderAndAppends();
    void rotatesOnceAtTheLimit();
    void followsAFileThatOthersRotated();
    void linesOfThreadsAndProcessesStayWhole();
    void unwritableDestinationIsSilent_data();
    void unwritableDestinationIsSilent();
    void goesToStderr();
    void survivesStderrWithoutReader();
    void dropsWhatNobodyReads();
    void neverWritesToStdout_data();
    void neverWritesToStdout();

private:
    QTemporaryDir m_dir;
    QString m_path;
};

void TestQtAppLogger::init()
{
    m_path = m_dir.filePath(QString::fromUtf8(QTest::currentTestFunction())
                            + QString::fromUtf8(QTest::currentDataTag()) + QStringLiteral("/log"));
}

void TestQtAppLogger::optionsFromEnvironment_data()
{
    QTest::addColumn<QByteArray>("level");
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<int>("expectedLevel");
    QTest::newRow("nothing") << QByteArray() << QByteArray() << 1;
    QTest::newRow("silent") << QByteArray("0") << QByteArray() << 0;
    QTest::newRow("detailed, to a file") << QByteArray("3") << QByteArray("/tmp/ü.log") << 3;
    QTest::newRow("not a number") << QByteArray("much") << QByteArray() << 1;
}

void TestQtAppLogger::optionsFromEnvironment()
{
    QFETCH(const QByteArray, level);
    QFETCH(const QByteArray, file);
    const auto set = [](const char *name, const QByteArray &value) {
        return value.isNull() ? qunsetenv(name) : qputenv(name, value);
    };
    QVERIFY(set("KOVALO_LOG_LEVEL", level) && set("KOVALO_LOG_FILE", file));
    const auto options = QtAppLogger::optionsFromEnvironment();
    QTEST(options.verbosityLevel, "expectedLevel");
    QCOMPARE(options.filePath, QString::fromUtf8(file));
    QCOMPARE(options.rotateAtBytes, 5242880);
    QVERIFY(set("KOVALO_LOG_LEVEL", {}) && set("KOVALO_LOG_FILE", {}));
}

void TestQtAppLogger::levels_data()
{
    QTest::addColumn<int>("verbosity");
    QTest::addColumn<QByteArray>("logged");
    QTest::newRow("negative") << -1 << QByteArray();
    QTest::newRow("none") << 0 << QByteArray();
    QTest::newRow("default") << 1 << QByteArray("01");
    QTest::newRow("detailed") << 2 << QByteArray("012");
}

void TestQtAppLogger::levels()
{
    QFETCH(const int, verbosity);
    QtAppLogger logger({.verbosityLevel = verbosity, .filePath = m_path});
    for (int level = 0; level <= 3; ++level)
        logger.log(level, QString::number(level));
    QByteArray last;
    for (const QByteArray &line : contents(m_path).split('\n'))
        last += line.right(1);
    QTEST(last, "logged");
    QCOMPARE(QFile::exists(m_path), verbosity > 0);
}

void TestQtAppLogger::lineFormat_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("written");
    QTest::newRow("plain") << QStringLiteral("[Class]: ready: 1")
                           << QStringLiteral("[Class]: ready: 1");
    QTest::newRow("other scripts")
        << QStringLiteral("žluťoučký 下载 😀") << QStringLiteral("žluťoučký 下载 😀");
    QTest::newRow("place markers") << QStringLiteral("%1 %2 %99") << QStringLiteral("%1 %2 %99");
    QTest::newRow("forged line") << QStringLiteral("a\n2026 [1] 1 b\r\x1b[2J\x7f\t")
                                 << QStringLiteral("a\\n2026 [1] 1 b\\x0d\\x1b[2J\\x7f\\x09");
    QTest::newRow("empty") << QString() << QString();
}

void TestQtAppLogger::lineFormat()
{
    QFETCH(const QString, text);
    QFETCH(const QString, written);
    QtAppLogger({.filePath = m_path}).log(1, text);
    static const QRegularExpression line(QStringLiteral(
        "^\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\\.\\d{3}Z \\[(\\d+)\\] 1 ([^\n]*)\n$"));
    const auto match = line.match(QString::fromUtf8(contents(m_path)));
    QVERIFY(match.hasMatch());
    QCOMPARE(match.captured(1).toLongLong(), ::getpid());
    QCOMPARE(match.captured(2), written);
}

void TestQtAppLogger::createsPrivateFileInNewFolderAndAppends()
{
    m_path = QFileInfo(m_path).path() + QStringLiteral("/new/folder/log");
    QtAppLogger({.filePath = m_path}).log(1, QStringLiteral("first"));
    struct stat info = {};
    QCOMPARE(::stat(QFile::encodeName(m_path).constData(), &info), 0);
    QCOMPARE(info.st_mode & 07777, mode_t{0600});
    QtAppLogger({.filePath = m_path}).log(1, QStringLiteral("second"));
    const QByteArray text = contents(m_path);
    QCOMPARE(text.count('\n'), 2);
    QVERIFY(text.indexOf("first") < text.indexOf("second"));
}

void TestQtAppLogger::rotatesOnceAtTheLimit()
{
    QtAppLogger logger({.filePath = m_path, .rotateAtBytes = 1000});
    const auto old = m_path + QStringLiteral(".1");
    const auto logUntil = [&](const auto &done) {
        for (int i = 0; i < 100 && !done(); ++i)
            logger.log(1, QStringLiteral("line"));
    };
    logUntil([&] { return QFile::exists(old); });
    const auto oldSize = QFileInfo(old).size();
    const auto lineSize = QFileInfo(m_path).size();
    QVERIFY2(oldSize <= 1000 && oldSize + lineSize > 1000, qPrintable(QString::number(oldSize)));
    QCOMPARE(contents(m_path).count('\n'), 1);

    // The next time, the older file gives way.
    logger.log(1, QStringLiteral("marker"));
    logUntil([&] { return contents(old).contains("marker"); });
    QVERIFY(contents(old).contains("marker"));
    QCOMPARE(QDir(QFileInfo(m_path).path()).entryList(QDir::Files).size(), 2);

    // A line that is larger than the limit goes through.
    logger.log(1, QString(5000, u'x'));
    QVERIFY(contents(m_path).contains("xxxx"));
}

void TestQtAppLogger::followsAFileThatOthersRotated()
{
    QtAppLogger logger({.filePath = m_path});
    logger.log(1, QStringLiteral("first"));
    QVERIFY(QFile::rename(m_path, m_path + QStringLiteral(".1")));
    logger.log(1, QStringLiteral("second"));
    QVERIFY(contents(m_path).contains("second"));
    QVERIFY(QDir(QFileInfo(m_path).path()).removeRecursively());
    logger.log(1, QStringLiteral("third"));
    QVERIFY(contents(m_path).contains("third"));
}

void TestQtAppLogger::linesOfThreadsAndProcessesStayWhole()
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
        QCOMPARE(writer->exitStatus(), QProcess::NormalExit);
        QCOMPARE(writer->exitCode(), 0);
        QCOMPARE(writer->readAllStandardOutput(), QByteArray());
    }
    const QByteArray rotated = contents(m_path + QStringLiteral(".1"));
    const QList<QByteArray> all = (rotated + contents(m_path)).trimmed().split('\n');
    QVERIFY(!rotated.isEmpty());
    QCOMPARE(all.size(), lines);
    for (const QByteArray &line : all)
        QVERIFY2(line.endsWith(" 1 " + writerText().toUtf8()) && line.size() < 245,
                 line.constData());
}

void TestQtAppLogger::unwritableDestinationIsSilent_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("no such folder can be made") << QStringLiteral("/proc/nowhere/log");
    QTest::newRow("a folder") << QStringLiteral("/tmp");
    QTest::newRow("full disk") << QStringLiteral("/dev/full");
    QTest::newRow("a file as folder") << QStringLiteral("/dev/null/log");
    QTest::newRow("pipe without reader") << m_dir.filePath(QStringLiteral("fifo"));
}

void TestQtAppLogger::unwritableDestinationIsSilent()
{
    QFETCH(const QString, path);
    if (path.startsWith(m_dir.path()))
        QCOMPARE(::mkfifo(QFile::encodeName(path).constData(), 0600), 0);
    QByteArray err;
    QByteArray out;
    {
        const PipeInPlaceOf stderrPipe(STDERR_FILENO);
        const PipeInPlaceOf stdoutPipe(STDOUT_FILENO);
        QtAppLogger logger({.filePath = path});
        logger.log(1, QStringLiteral("one"));
        logger.log(1, QStringLiteral("two"));
        err = stderrPipe.readAll();
        out = stdoutPipe.readAll();
    }
    QCOMPARE(err, QByteArray());
    QCOMPARE(out, QByteArray());
}

void TestQtAppLogger::goesToStderr()
{
    QByteArray err;
    QByteArray out;
    {
        const PipeInPlaceOf stderrPipe(STDERR_FILENO);
        const PipeInPlaceOf stdoutPipe(STDOUT_FILENO);
        QtAppLogger({}).log(1, QStringLiteral("to the browser's log"));
        err = stderrPipe.readAll();
        out = stdoutPipe.readAll();
    }
    QVERIFY(err.endsWith(" 1 to the browser's log\n"));
    QCOMPARE(out, QByteArray());
}

void TestQtAppLogger::survivesStderrWithoutReader()
{
    const auto previous = std::signal(SIGPIPE, SIG_DFL);
    {
        PipeInPlaceOf stderrPipe(STDERR_FILENO);
        QtAppLogger logger({});
        stderrPipe.closeReader();
        logger.log(1, QStringLiteral("into the void"));
    }
    // Nothing is left pending for the moment at which the thread looks again.
    sigset_t pending;
    QCOMPARE(::sigpending(&pending), 0);
    QVERIFY(!::sigismember(&pending, SIGPIPE));
    (void)std::signal(SIGPIPE, previous);
}

void TestQtAppLogger::dropsWhatNobodyReads()
{
    QByteArray before;
    QByteArray after;
    {
        const PipeInPlaceOf stderrPipe(STDERR_FILENO);
        QtAppLogger logger({});
        for (int i = 0; i < 100; ++i)
            logger.log(1, QString(10'000, u'x'));
        before = stderrPipe.readAll();
        logger.log(1, QStringLiteral("heard again"));
        after = stderrPipe.readAll();
    }
    QVERIFY(before.size() >= 10'000 && before.size() < 1'000'000);
    QVERIFY(after.endsWith(" 1 heard again\n"));
    QVERIFY2((before + after).contains("\n20"), "the line cut short is ended before the next");
    QCOMPARE((before + after).split('\n').constLast(), QByteArray());
    QVERIFY(before.endsWith('\n') || after.startsWith('\n'));
}

void TestQtAppLogger::neverWritesToStdout_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("stderr is the same pipe") << QString();
    QTest::newRow("named as the file") << QStringLiteral("/dev/stdout");
}

void TestQtAppLogger::neverWritesToStdout()
{
    QFETCH(const QString, path);
    QByteArray out;
    {
        const PipeInPlaceOf stderrPipe(STDERR_FILENO);
        const PipeInPlaceOf stdoutPipe(STDOUT_FILENO);
        ::dup2(STDOUT_FILENO, STDERR_FILENO);
        QtAppLogger({.filePath = path}).log(1, QStringLiteral("not here"));
        out = stdoutPipe.readAll();
    }
    QCOMPARE(out, QByteArray());
}

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
