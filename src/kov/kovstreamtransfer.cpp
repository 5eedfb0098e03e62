#include "kovstreamtransfer.h"

#include "kovdownloadfolder.h"
#include "kovfilename.h"
#include "kovhttpexchange.h"
#include "kovpartialfile.h"
#include "kovplaylist.h"
#include "kovspeedlimit.h"
#include "kovstreamrelay.h"
#include "playlisttext.h"

#include <QFileInfo>
#include <QProcessEnvironment>
#include <QStandardPaths>
#include <QStringList>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <sys/prctl.h>
#include <utility>

namespace {

constexpr double microsecondsPerSecond = 1'000'000;

/// The playlist's name with the extension of the resulting file.
QString streamFileName(const KovDownloadRequest &request, const QString &extension)
{
    static const QStringList endings{u"mp4"_qs, u"m4a"_qs, u"webm"_qs,
                                     u"mkv"_qs, u"mka"_qs, u"ts"_qs};
    const QString suggested = KovFileName::sanitized(request.suggestedName);
    const QString name = suggested.isEmpty() ? KovFileName::fromUrl(request.url) : suggested;
    const QFileInfo info(name);
    const bool isStem =
        !PlaylistText::isFileName(name) && !endings.contains(info.suffix().toLower());
    return KovFileName::sanitized((isStem ? name : info.completeBaseName()) + u'.' + extension);
}

/// Makes newer versions of FFmpeg accept HLS segments with any file extension.
const QString anyNameOption = u"-extension_picky"_qs;

QString missingProgram()
{
    for (const QString &name : {u"ffmpeg"_qs, u"ffprobe"_qs}) {
        if (QStandardPaths::findExecutable(name).isEmpty())
            return name;
    }
    return {};
}

} // namespace

KovStreamTransfer::KovStreamTransfer(KovJob job, KovDownloadRequest request,
                                     Environment environment, QObject *parent, QtClock &clock)
    : KovTransfer(std::move(job), std::move(request), std::move(environment), parent, clock)
{
    m_request.postData.clear();
    QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
    variables.insert(u"LC_ALL"_qs, u"C"_qs);
    variables.insert(u"no_proxy"_qs, u"*"_qs);
    m_program.setProcessEnvironment(variables);
    connect(&m_program, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            end(permanentFailure(m_program.program() + u": "_qs + m_program.errorString()));
    });
    connect(&m_program, &QProcess::finished, this, [this] {
        if (!m_ending)
            (this->*m_then)();
    });
    connect(&m_program, &QProcess::readyReadStandardOutput, this, [this] {
        if (m_file)
            onProgress();
    });
}

KovStreamTransfer::~KovStreamTransfer() = default;

void KovStreamTransfer::start()
{
    m_speed.start(m_clock.monotonicMs(), 0);
    if (isNamed()) {
        finishNamed();
        return;
    }
    if (const QString missing = missingProgram(); !missing.isEmpty()) {
        end(permanentFailure(QStringLiteral("a stream is saved by the program \"%1\", which is not "
                                            "there: install the package \"ffmpeg\" and try again")
                                 .arg(missing)));
        return;
    }
    m_exchange = std::make_unique<KovHttpExchange>(m_request, m_environment.network);
    connect(m_exchange.get(), &KovHttpExchange::readyRead, this, [this] {
        m_text += m_exchange->readAll();
        if (m_text.size() > KovPlaylist::maxBytes)
            end(permanentFailure(QStringLiteral("this is no playlist of a stream")));
    });
    connect(m_exchange.get(), &KovHttpExchange::finished, this, &KovStreamTransfer::onPlaylist);
    m_exchange->start();
}

void KovStreamTransfer::onPlaylist()
{
    m_text += m_exchange->readAll();
    const bool isEncoded = !m_exchange->response().contentEncoding.isEmpty();
    if (const KovFailure failure = m_exchange->failure())
        end(failure);
    else if (!isEncoded && !KovPlaylist::isPlaylist(m_text))
        end(permanentFailure(QStringLiteral("this is no playlist of a stream")));
    else
        listen(m_exchange->response().url);
}

void KovStreamTransfer::listen(const QUrl &playlist)
{
    m_relay = std::make_unique<KovStreamRelay>(KovStreamOrigin{m_request, m_environment.network,
                                                               m_exchange->cookies(),
                                                               m_environment.speedLimit},
                                               m_clock);
    if (!m_relay->isListening()) {
        end(transientFailure(m_relay->errorString()));
        return;
    }
    m_address = m_relay->addressOf(playlist);
    m_takesAnyName = PlaylistText::isHls(m_text);
    probe();
}

QStringList KovStreamTransfer::readOptions() const
{
    // The programs may only connect to the relay.
    QStringList options{u"-loglevel"_qs, u"error"_qs, u"-protocol_whitelist"_qs,
                        u"http,tcp,crypto,data"_qs};
    if (m_takesAnyName)
        options += {anyNameOption, u"0"_qs};
    return options + QStringList{u"-i"_qs, QString::fromLatin1(m_address)};
}

void KovStreamTransfer::probe()
{
    run(u"ffprobe"_qs,
        readOptions()
            + QStringList{u"-print_format"_qs, u"json"_qs, u"-show_programs"_qs,
                          u"-show_streams"_qs, u"-show_format"_qs},
        &KovStreamTransfer::onProbed);
}

void KovStreamTransfer::run(const QString &program, const QStringList &arguments,
                            void (KovStreamTransfer::*then)())
{
    m_then = then;
    m_program.setChildProcessModifier([file = m_file ? m_file->descriptor() : -1] {
        // It must not outlive this process, even if killed, as it writes to the same file.
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (file >= 0)
            ::fcntl(file, F_SETFD, 0);
    });
    m_program.setStandardInputFile(QProcess::nullDevice());
    m_program.start(program, arguments);
}

void KovStreamTransfer::onProbed()
{
    const auto choice = KovStreamChoice::best(m_program.readAllStandardOutput());
    if (m_program.exitCode() != 0 || !choice) {
        const QByteArray errors = m_program.readAllStandardError();
        if (m_takesAnyName && errors.contains(anyNameOption.mid(1).toLatin1())) {
            m_takesAnyName = false;
            probe();
        } else {
            end(programFailure(errors));
        }
        return;
    }
    m_choice = *choice;
    m_relay->tolerateFailures();
    // The relay may have failed for requests whose results were not needed.
    connect(m_relay.get(), &KovStreamRelay::failed, this, [this] { end(m_relay->failure()); });
    fetch();
}

void KovStreamTransfer::fetch()
{
    if (const KovFailure failure = openFile(streamFileName(m_request, m_choice.extension))) {
        end(failure);
        return;
    }
    accept();
    QStringList arguments{u"-nostdin"_qs, u"-nostats"_qs, u"-stats_period"_qs, u"0.2"_qs, u"-y"_qs};
    arguments += readOptions();
    for (const int stream : std::as_const(m_choice.streams))
        arguments += {u"-map"_qs, u"0:"_qs + QString::number(stream)};
    arguments += {u"-c"_qs,
                  u"copy"_qs,
                  u"-progress"_qs,
                  u"pipe:1"_qs,
                  u"-f"_qs,
                  m_choice.format,
                  u"file:/dev/fd/"_qs + QString::number(m_file->descriptor())};
    run(u"ffmpeg"_qs, arguments, &KovStreamTransfer::onFetched);
}

void KovStreamTransfer::onProgress()
{
    const QByteArrayList lines = m_program.readAllStandardOutput().split('\n');
    for (const QByteArray &line : lines) {
        const QByteArray key = QByteArrayLiteral("out_time_us=");
        if (line.startsWith(key))
            m_savedSeconds = line.mid(key.size()).toDouble() / microsecondsPerSecond;
    }
}

void KovStreamTransfer::onFetched()
{
    if (m_program.exitStatus() != QProcess::NormalExit || m_program.exitCode() != 0
        || m_file->size() <= 0) {
        end(programFailure(m_program.readAllStandardError()));
        return;
    }
    m_isWhole = true;
    m_job.totalBytes = m_file->size();
    complete();
}

KovFailure KovStreamTransfer::programFailure(QByteArray errors) const
{
    if (m_relay->failure())
        return m_relay->failure();
    // The relay's addresses mean nothing to users.
    for (const char *scheme : {"http", "https"})
        errors.replace(m_relay->address() + scheme + '/', QByteArray(scheme) + "://");
    const QString text = m_program.program() + u": "_qs
        + QString::fromUtf8(errors.trimmed().split('\n').constLast());
    if (text.contains(systemErrorString(ENOSPC)))
        return {KovFailure::Kind::DiskFull, printable(text)};
    return permanentFailure(text);
}

void KovStreamTransfer::tick() { m_speed.measure(m_clock.monotonicMs(), receivedBytes()); }

qint64 KovStreamTransfer::receivedBytes() const
{
    return m_isWhole ? m_job.totalBytes : m_relay ? m_relay->receivedBytes() : 0;
}

double KovStreamTransfer::doneShare() const
{
    return m_choice.seconds > 0 ? std::min(1.0, m_savedSeconds / m_choice.seconds) : -1;
}

qsizetype KovStreamTransfer::connections() const { return m_relay ? m_relay->connections() : 0; }

void KovStreamTransfer::storeProgress()
{
    // An incomplete file cannot be used or resumed.
    m_job.ranges = KovRanges(m_isWhole ? m_job.totalBytes : -1);
    if (m_isWhole)
        m_job.ranges.advance(0, m_job.totalBytes);
}

void KovStreamTransfer::abort()
{
    if (m_exchange)
        m_exchange->abort();
    m_program.kill();
    // Reentrancy: it may be emitting a signal.
    if (m_relay)
        m_relay.release()->deleteLater();
}
