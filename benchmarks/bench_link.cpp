// The cost of the link compared with a bare local socket for the same number of bytes: round trips,
// and the throughput of 1 MiB messages. Both alternate in one run; prints medians.

#include "qtabstractsocketvhipc.h"
#include "qtabstractvhipcpart.h"
#include "qtlocalsocket.h"
#include "qtvhbodycodec.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QLocalServer>
#include <QTemporaryDir>
#include <QTextStream>
#include <QUrl>
#include <QUuid>

#include <algorithm>
#include <functional>
#include <utility>
#include <vector>

namespace {

using VhMap = QHash<QString, QVariant>;

constexpr int rounds = 21;
constexpr int roundTripsPerRound = 1000;
constexpr int bigMessagesPerRound = 64;
constexpr qsizetype frameHeaderSize = 4;

QString key(const char *name) { return QString::fromLatin1(name); }

struct Ends {
    QSharedPointer<QLocalSocket> client;
    QSharedPointer<QLocalSocket> server;
};

Ends connectedEnds(QLocalServer &listener)
{
    Ends ends{QSharedPointer<QLocalSocket>::create(), {}};
    ends.client->connectToServer(listener.fullServerName());
    listener.waitForNewConnection(-1);
    ends.server.reset(listener.nextPendingConnection(), &QObject::deleteLater);
    return ends;
}

/// Answers every message, or every n-th one, with the same message.
class AnsweringPart : public QtAbstractVhIpcPart {
public:
    void processVh(const VhMap &map) override
    {
        m_seen += map.size();
        if (++m_count % m_answerEvery == 0)
            Q_EMIT sendVh(m_answer);
    }
    void setAnswer(VhMap answer, int every)
    {
        m_answer = std::move(answer);
        m_answerEvery = every;
        m_count = 0;
    }

private:
    VhMap m_answer;
    int m_answerEvery = 1;
    int m_count = 0;
    qsizetype m_seen = 0;
};

class CallingPart : public QtAbstractVhIpcPart {
public:
    void processVh(const VhMap &) override { m_onAnswer(); }
    void setOnAnswer(std::function<void()> onAnswer) { m_onAnswer = std::move(onAnswer); }

private:
    std::function<void()> m_onAnswer;
};

class Link {
public:
    explicit Link(const Ends &ends)
        : m_client(QSharedPointer<QtLocalSocket>::create(ends.client), m_caller, 0, false),
          m_server(QSharedPointer<QtLocalSocket>::create(ends.server), m_answerer, 0, false)
    {
    }

    /// So many exchanges of "burst" messages for one answer; nanoseconds.
    qint64 exchange(const VhMap &message, const VhMap &answer, int exchanges, int burst)
    {
        QEventLoop loop;
        m_answerer->setAnswer(answer, burst);
        const auto send = [&] {
            for (int i = 0; i < burst; ++i)
                Q_EMIT m_caller->sendVh(message);
        };
        m_caller->setOnAnswer([&] { --exchanges > 0 ? send() : loop.quit(); });
        QElapsedTimer timer;
        timer.start();
        send();
        loop.exec();
        return timer.nsecsElapsed();
    }

private:
    const QSharedPointer<CallingPart> m_caller = QSharedPointer<CallingPart>::create();
    const QSharedPointer<AnsweringPart> m_answerer = QSharedPointer<AnsweringPart>::create();
    QtAbstractSocketVhIpc m_client;
    QtAbstractSocketVhIpc m_server;
};

/// The same exchanges with arbitrary bytes.
qint64 exchangeBare(const Ends &ends, qsizetype messageSize, qsizetype answerSize, int exchanges,
                    int burst)
{
    const QByteArray message(messageSize, 'm');
    const QByteArray answer(answerSize, 'a');
    QEventLoop loop;
    QObject context;
    qint64 atServer = 0;
    qint64 atClient = 0;
    const auto send = [&] {
        for (int i = 0; i < burst; ++i)
            ends.client->write(message);
    };
    QObject::connect(ends.server.data(), &QIODevice::readyRead, &context, [&] {
        atServer += ends.server->readAll().size();
        if (atServer == messageSize * burst) {
            atServer = 0;
            ends.server->write(answer);
        }
    });
    QObject::connect(ends.client.data(), &QIODevice::readyRead, &context, [&] {
        atClient += ends.client->readAll().size();
        if (atClient < answerSize)
            return;
        atClient = 0;
        --exchanges > 0 ? send() : loop.quit();
    });
    QElapsedTimer timer;
    timer.start();
    send();
    loop.exec();
    return timer.nsecsElapsed();
}

/// Encoding and decoding the messages of as many exchanges, with nothing in between; nanoseconds.
qint64 codecAlone(const VhMap &message, const VhMap &answer, int exchanges, int burst)
{
    qsizetype seen = 0;
    const auto convert = [&seen](const VhMap &map) {
        seen += QtVhBodyCodec::fromDataStream(QtVhBodyCodec::toDataStream(map))->size();
    };
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < exchanges; ++i) {
        for (int j = 0; j < burst; ++j)
            convert(message);
        convert(answer);
    }
    return seen > 0 ? timer.nsecsElapsed() : 0;
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.at(values.size() / 2);
}

VhMap smallMessage()
{
    return {{key("name"), key("jsonRequests")},
            {key("reason"), key("request")},
            {key("id"), qint64(1)},
            {key("json"), key("{}")}};
}

VhMap finishedMessage()
{
    return {{key("name"), key("incomingDownloads")},
            {key("reason"), key("finished")},
            {key("id"), qint64(1)},
            {key("added"), true},
            {key("aborted"), false},
            {key("abortReason"), 0},
            {key("error"), QString()},
            {key("isSilent"), false}};
}

/// Has the structure and size of a download from a browser.
VhMap downloadMessage()
{
    const QString address = key("https://downloads.example.com/path/to/a/file-1.2.3.tar.gz");
    const VhMap source = {{key("url"), QUrl(address)},
                          {key("referer"), address},
                          {key("cookies"), QByteArray(300, 'c')},
                          {key("postData"), QByteArray()},
                          {key("webPageUrl"), QUrl(address)},
                          {key("customData"), VhMap()},
                          {key("flags"), 0u}};
    VhMap info = {{key("source"), source},
                  {key("uuid"), QUuid(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11)},
                  {key("creationTime"), QDateTime(QDate(2024, 2, 29), QTime(1, 2), Qt::UTC)},
                  {key("originatorsNamesChain"), QStringList{key("browser")}},
                  {key("userAgent"), QString(110, u'u')}};
    for (int i = 0; i < 12; ++i) {
        info.insert(key("numberField%1").arg(i), qint64(i));
        info.insert(key("textField%1").arg(i), key("some text"));
    }
    const VhMap request = {{key("downloads"), QVariantList{VhMap{{key("info"), info}}}},
                           {key("selectedDownloads"), QByteArray(1, '\1')},
                           {key("flags"), 0},
                           {key("source"), 1},
                           {key("preferredDownloadType"), 0}};
    return {{key("name"), key("incomingDownloads")},
            {key("reason"), key("add")},
            {key("id"), qint64(1)},
            {key("request"), request}};
}

struct Case {
    const char *name;
    VhMap message;
    VhMap answer;
    int exchanges;
    int burst;
};

void run(const Case &c, Link &link, const Ends &bare, QTextStream &out)
{
    const qsizetype messageSize = frameHeaderSize + QtVhBodyCodec::toDataStream(c.message).size();
    const qsizetype answerSize = frameHeaderSize + QtVhBodyCodec::toDataStream(c.answer).size();
    std::vector<double> linkTimes;
    std::vector<double> codecTimes;
    std::vector<double> bareTimes;
    std::vector<double> ratios;
    const double nsecsPerUsec = 1000.0 * c.exchanges * c.burst;
    for (int round = 0; round < rounds; ++round) {
        const auto linkNsecs =
            static_cast<double>(link.exchange(c.message, c.answer, c.exchanges, c.burst));
        const auto codecNsecs =
            static_cast<double>(codecAlone(c.message, c.answer, c.exchanges, c.burst));
        const auto bareNsecs =
            static_cast<double>(exchangeBare(bare, messageSize, answerSize, c.exchanges, c.burst));
        linkTimes.push_back(linkNsecs / nsecsPerUsec);
        codecTimes.push_back(codecNsecs / nsecsPerUsec);
        bareTimes.push_back(bareNsecs / nsecsPerUsec);
        ratios.push_back(linkNsecs / bareNsecs);
    }
    out << qSetFieldWidth(30) << Qt::left << c.name << Qt::right << qSetFieldWidth(13)
        << messageSize << median(linkTimes) << median(codecTimes) << median(bareTimes)
        << median(ratios) << qSetFieldWidth(0) << Qt::endl;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication app(argc, argv);
    const QTemporaryDir dir;
    QLocalServer listener;
    if (!listener.listen(dir.filePath(QStringLiteral("server"))))
        return 1;
    Link link(connectedEnds(listener));
    const Ends bare = connectedEnds(listener);

    const VhMap bigMessage = {{key("name"), key("jsonRequests")},
                              {key("json"), QString(qsizetype(512) * 1024, u'j')}};
    const Case cases[] = {
        {"small message, round trip", smallMessage(), smallMessage(), roundTripsPerRound, 1},
        {"download and its answer", downloadMessage(), finishedMessage(), roundTripsPerRound, 1},
        {"1 MiB messages", bigMessage, smallMessage(), 1, bigMessagesPerRound},
    };
    QTextStream out(stdout);
    out.setRealNumberNotation(QTextStream::FixedNotation);
    out.setRealNumberPrecision(2);
    out << "Microseconds per message, medians; the codec's share is part of the link's time.\n"
        << qSetFieldWidth(30) << Qt::left << "case" << Qt::right << qSetFieldWidth(13) << "bytes"
        << "link"
        << "codec alone"
        << "bare socket"
        << "link / bare" << qSetFieldWidth(0) << Qt::endl;
    for (const Case &c : cases)
        run(c, link, bare, out);
    return 0;
}
