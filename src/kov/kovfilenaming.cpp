#include "kovfilenaming.h"

#include "kovdownloadfolder.h"
#include "kovpartialfile.h"

#include <QFileInfo>

#include <utility>

namespace {

constexpr int retryMs = 100;

} // namespace

KovFileNaming::KovFileNaming(KovPartialFile &file, KovDownloadFolder &folder, QString name,
                             QtClock &clock, QObject *parent)
    : QObject(parent), m_file(file), m_folder(folder), m_name(std::move(name)),
      m_timer(clock.createTimer())
{
    connect(m_timer.get(), &QtSingleShotTimer::timeout, this, &KovFileNaming::start);
}

KovFileNaming::~KovFileNaming() = default;

void KovFileNaming::start()
{
    const QString finalPath = m_folder.finalPath(m_name);
    // In this order, or a browser could name its own file between the two.
    const QString freePath = m_folder.freePath(m_name);
    const bool isHeld = freePath != finalPath && m_file.path() != finalPath
        && m_folder.isHeldByBrowser(m_name, QFileInfo(m_file.path()).size());
    if (!isHeld || m_waitedMs >= browserRemovalTimeoutMs) {
        giveName(freePath);
        return;
    }
    m_waitedMs += retryMs;
    m_timer->start(retryMs);
}

void KovFileNaming::giveName(const QString &freePath)
{
    // Without a suffix it already has a name; only the unnumbered one is better.
    const bool isBetter = !m_folder.namesAtOnce() || freePath == m_folder.finalPath(m_name);
    const QString path = isBetter ? freePath : m_file.path();
    Q_EMIT naming(path);
    if (m_file.moveTo(path))
        Q_EMIT named({});
    else if (m_file.errorNumber() == 0)
        start(); // the name was taken just now
    else
        Q_EMIT named(
            QStringLiteral("cannot rename \"%1\": %2").arg(m_file.path(), m_file.errorString()));
}
