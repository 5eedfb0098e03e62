#include "kovtransfer.h"

#include "kovdownloadfolder.h"
#include "kovfilenaming.h"
#include "kovpartialfile.h"

#include <QFileInfo>

#include <utility>

KovFailure writeFailure(const KovPartialFile &file, int errorNumber)
{
    const QString text =
        QStringLiteral("cannot write \"%1\": %2").arg(file.path(), systemErrorString(errorNumber));
    return isDiskFull(errorNumber) ? KovFailure{KovFailure::Kind::DiskFull, printable(text)}
                                   : permanentFailure(text);
}

KovTransfer::KovTransfer(KovJob job, KovDownloadRequest request, Environment environment,
                         QObject *parent, QtClock &clock)
    : QObject(parent), m_job(std::move(job)), m_request(std::move(request)),
      m_environment(std::move(environment)), m_clock(clock), m_speed(m_environment.maxConnections)
{
}

KovTransfer::~KovTransfer() = default;

bool KovTransfer::isNamed() const
{
    return m_job.totalBytes > 0 && m_job.receivedBytes() == m_job.totalBytes
        && !QFileInfo::exists(m_job.partialPath)
        && QFileInfo(m_job.path).size() == m_job.totalBytes;
}

void KovTransfer::finishNamed()
{
    m_job.partialPath.clear();
    m_finished = true;
    end({});
}

KovFailure KovTransfer::openFile(const QString &name)
{
    QString error;
    if (!m_file && !m_job.partialPath.isEmpty())
        m_file = KovPartialFile::open(m_job.partialPath, error);
    if (m_file)
        return m_file->truncate(0) ? KovFailure() : writeFailure(*m_file, m_file->errorNumber());
    m_file = m_environment.folder->createFile(name, error);
    if (!m_file)
        return permanentFailure(error);
    m_job.partialPath = m_file->path();
    m_job.path = m_environment.folder->finalPath(name);
    Q_EMIT progressStored();
    return {};
}

void KovTransfer::accept()
{
    if (!std::exchange(m_accepted, true))
        Q_EMIT accepted();
}

void KovTransfer::complete()
{
    m_ending = true;
    m_file->sync(this, [this](int error) {
        if (error != 0) {
            Q_EMIT ended(writeFailure(*m_file, error));
            return;
        }
        storeProgress();
        accept();
        giveFinalName();
    });
}

void KovTransfer::giveFinalName()
{
    const QDateTime time = toHttpDate(m_job.validators.lastModified);
    if (m_environment.takesModificationTime && time.isValid())
        m_file->setModificationTime(time);
    m_naming = std::make_unique<KovFileNaming>(*m_file, *m_environment.folder,
                                               QFileInfo(m_job.path).fileName(), m_clock);
    connect(m_naming.get(), &KovFileNaming::naming, this, [this](const QString &path) {
        m_job.path = path;
        Q_EMIT naming();
    });
    connect(m_naming.get(), &KovFileNaming::named, this, [this](const QString &error) {
        m_finished = error.isEmpty();
        if (m_finished)
            m_job.partialPath.clear();
        Q_EMIT ended(m_finished ? KovFailure() : permanentFailure(error));
    });
    m_naming->start();
}

void KovTransfer::end(const KovFailure &failure)
{
    if (std::exchange(m_ending, true))
        return;
    abort();
    if (!m_file) {
        QMetaObject::invokeMethod(
            this, [this, failure] { Q_EMIT ended(failure); }, Qt::QueuedConnection);
        return;
    }
    m_file->sync(this, [this, failure](int error) {
        if (error == 0)
            storeProgress();
        Q_EMIT ended(failure);
    });
}
