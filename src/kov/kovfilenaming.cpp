#include "kovfilenaming.h"

#include "kovdownloadfolder.h"
#include "kovpartialfile.h"

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
    const bool isHeld =
        m_folder.isHeldByBrowser(m_name) && m_file.path() != m_folder.finalPath(m_name);
    if (!isHeld || m_waitedMs >= browserLetsGoWithinMs) {
        giveName();
        return;
    }
    m_waitedMs += retryMs;
    m_timer->start(retryMs);
}

void KovFileNaming::giveName()
{
    do {
        const QString freePath = m_folder.freePath(m_name);
        // Without a suffix it already has a name; only the unnumbered one is better.
        const bool isBetter = !m_folder.namesAtOnce() || freePath == m_folder.finalPath(m_name);
        const QString path = isBetter ? freePath : m_file.path();
        Q_EMIT naming(path);
        if (m_file.moveTo(path)) {
            Q_EMIT named({});
            return;
        }
        // The name may have been taken just now.
    } while (m_file.errorNumber() == 0);
    Q_EMIT named(
        QStringLiteral("cannot rename \"%1\": %2").arg(m_file.path(), m_file.errorString()));
}
