// The least that a host must do, as a baseline for bench_host: an application object with an event
// loop, a thread that blocks on stdin, one queued call for each message, and an echo of it.

#include <QByteArray>
#include <QCoreApplication>
#include <QThread>

#include <cstdint>
#include <cstdio>
#include <memory>

namespace {

void echo(const QByteArray &message)
{
    const auto length = static_cast<std::uint32_t>(message.size());
    std::fwrite(&length, sizeof length, 1, stdout);
    std::fwrite(message.constData(), 1, length, stdout);
    std::fflush(stdout);
}

void readAll(QObject *mainThreadObject)
{
    std::uint32_t length = 0;
    while (std::fread(&length, sizeof length, 1, stdin) == 1) {
        QByteArray message(length, Qt::Uninitialized);
        if (std::fread(message.data(), 1, length, stdin) != length)
            break;
        QMetaObject::invokeMethod(
            mainThreadObject, [message] { echo(message); }, Qt::QueuedConnection);
    }
    QMetaObject::invokeMethod(mainThreadObject, &QCoreApplication::quit, Qt::QueuedConnection);
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    const std::unique_ptr<QThread> reader(QThread::create(readAll, &application));
    reader->start();
    const int exitCode = QCoreApplication::exec();
    reader->wait();
    return exitCode;
}
