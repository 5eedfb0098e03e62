// The least that must be between a browser and an application, as a baseline for bench_application:
// one thread that blocks on stdin, one queued call for each message, as many bytes to a local
// socket as on the link, and for each answer from there a frame to stdout.
//
// Arguments: the socket's name; the sizes in bytes of a message to it, of an answer from it, and of
// the body of the frame for that; the sizes of a notification from it, and of the body of its
// frame.

#include <QByteArray>
#include <QCoreApplication>
#include <QLocalSocket>
#include <QThread>

#include <cstdint>
#include <cstdio>
#include <memory>

namespace {

class Relay : public QObject {
public:
    explicit Relay(const QStringList &arguments)
        : m_message(arguments.value(2).toInt(), 'm'), m_answerSize(arguments.value(3).toInt()),
          m_answer(arguments.value(4).toInt(), 'a'), m_changeSize(arguments.value(5).toInt()),
          m_push(arguments.value(6).toInt(), 'p')
    {
        connect(&m_socket, &QIODevice::readyRead, this, &Relay::onReadyRead);
        m_socket.connectToServer(arguments.value(1));
    }

    void onTask(const QByteArray &task)
    {
        m_unanswered += task.isEmpty() ? 0 : 1;
        m_socket.write(m_message);
    }

private:
    void onReadyRead()
    {
        const bool isAnswer = m_unanswered > 0;
        const qsizetype size = isAnswer ? m_answerSize : m_changeSize;
        if (m_socket.bytesAvailable() < size)
            return;
        m_socket.read(size);
        m_unanswered -= isAnswer ? 1 : 0;
        const QByteArray &frame = isAnswer ? m_answer : m_push;
        const auto length = static_cast<std::uint32_t>(frame.size());
        std::fwrite(&length, sizeof length, 1, stdout);
        std::fwrite(frame.constData(), 1, length, stdout);
        std::fflush(stdout);
    }

    const QByteArray m_message;
    const qsizetype m_answerSize;
    const QByteArray m_answer;
    const qsizetype m_changeSize;
    const QByteArray m_push;
    QLocalSocket m_socket;
    int m_unanswered = 0;
};

void readAll(Relay *relay)
{
    std::uint32_t length = 0;
    while (std::fread(&length, sizeof length, 1, stdin) == 1) {
        QByteArray task(length, Qt::Uninitialized);
        if (std::fread(task.data(), 1, length, stdin) != length)
            break;
        QMetaObject::invokeMethod(
            relay, [relay, task] { relay->onTask(task); }, Qt::QueuedConnection);
    }
    QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    Relay relay(QCoreApplication::arguments());
    const std::unique_ptr<QThread> reader(QThread::create([&relay] { readAll(&relay); }));
    reader->start();
    const int exitCode = QCoreApplication::exec();
    reader->wait();
    return exitCode;
}
