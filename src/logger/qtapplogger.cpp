#include "qtapplogger.h"

#include <QByteArray>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMutex>
#include <QMutexLocker>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>

/// Where the lines go; guarded by one lock, so that lines of different threads stay whole.
class QtAppLogger::Sink {
public:
    explicit Sink(const Options &options) : m_options(options) { }
    ~Sink() { closeFile(); }
    Q_DISABLE_COPY_MOVE(Sink)

    void write(const QByteArray &line)
    {
        const QMutexLocker locker(&m_mutex);
        if (m_options.filePath.isEmpty()) {
            writeAll(STDERR_FILENO, line);
            return;
        }
        if (m_fd < 0)
            openFile();
        rotateIfFull(line.size());
        if (m_fd >= 0)
            writeAll(m_fd, line);
    }

private:
    void openFile()
    {
        QDir().mkpath(QFileInfo(m_options.filePath).absolutePath());
        m_fd = ::open(QFile::encodeName(m_options.filePath).constData(),
                      O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC | O_NOCTTY | O_NONBLOCK, 0600);
    }

    void closeFile()
    {
        if (m_fd >= 0)
            ::close(m_fd);
        m_fd = -1;
    }

    // Several hosts share one log file. Whoever finds it full renames it; the others notice that
    // the name now belongs to another file and follow.
    void rotateIfFull(qint64 lineSize)
    {
        if (m_fd < 0)
            return;
        const QByteArray name = QFile::encodeName(m_options.filePath);
        struct stat opened = {};
        struct stat named = {};
        if (::fstat(m_fd, &opened) != 0 || !S_ISREG(opened.st_mode))
            return;
        const bool replaced = ::stat(name.constData(), &named) != 0 || named.st_ino != opened.st_ino
            || named.st_dev != opened.st_dev;
        if (!replaced && opened.st_size + lineSize <= m_options.rotateAtBytes)
            return;
        if (!replaced && opened.st_size > 0)
            (void)std::rename(name.constData(), (name + ".1").constData());
        closeFile();
        openFile();
    }

    static void writeAll(int fd, const QByteArray &line)
    {
        qsizetype written = 0;
        while (written < line.size()) {
            const ssize_t count =
                ::write(fd, line.constData() + written, static_cast<size_t>(line.size() - written));
            if (count < 0 && errno == EINTR)
                continue;
            if (count <= 0)
                return;
            written += count;
        }
    }

    const Options m_options;
    QMutex m_mutex;
    int m_fd = -1;
};

QtAppLogger::Options QtAppLogger::optionsFromEnvironment()
{
    Options options;
    bool ok = false;
    if (const int level = qEnvironmentVariableIntValue("KOVALO_LOG_LEVEL", &ok); ok)
        options.verbosityLevel = level;
    options.filePath = qEnvironmentVariable("KOVALO_LOG_FILE");
    return options;
}

QtAppLogger::QtAppLogger(Options options)
    : m_options(std::move(options)), m_sink(std::make_unique<Sink>(m_options))
{
}

QtAppLogger::~QtAppLogger() = default;

void QtAppLogger::log(int level, const QString &text)
{
    if (level > m_options.verbosityLevel)
        return;
    const QString line = QStringLiteral("%1 [%2] %3 %4\n")
                             .arg(QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs),
                                  QString::number(::getpid()), QString::number(level), text);
    m_sink->write(line.toUtf8());
}

int QtAppLogger::verbosityLevel() const { return m_options.verbosityLevel; }
