#include "qtvhipccompositepart.h"

#include "qtappdefaultlogger.h"
#include "qttoggleswitchobject.h"

#include <QPointer>
#include <QTextStream>

#include <algorithm>

namespace {

QString nameKey() { return QStringLiteral("name"); }

void logTraffic(const QString &what, const QHash<QString, QVariant> &map)
{
    if (logsLevel(2))
        logLine(2,
                QStringLiteral("[QtVhIpcCompositePart]: %1 a message of <%2>")
                    .arg(what, map.value(nameKey()).toString()));
}

} // namespace

QtVhIpcCompositePart::QtVhIpcCompositePart(const QSharedPointer<QtToggleSwitchObject> &firstGate,
                                           const QSharedPointer<QtToggleSwitchObject> &secondGate,
                                           QObject *parent)
    : QtAbstractVhIpcPart(parent), m_firstGate(firstGate), m_secondGate(secondGate)
{
    for (const auto &gate : {m_firstGate, m_secondGate}) {
        if (gate)
            connect(gate.data(), &QtToggleSwitchObject::changed, this,
                    &QtVhIpcCompositePart::onTsoChanged);
    }
}

void QtVhIpcCompositePart::addPart(const QString &name,
                                   const QSharedPointer<QtAbstractVhIpcPart> &part,
                                   bool needsFirstGate, bool needsSecondGate)
{
    if (m_parts.contains(name))
        return;
    m_parts.insert(name, {part, false, needsFirstGate, needsSecondGate});
    connect(part.data(), &QtAbstractVhIpcPart::sendVh, this, &QtVhIpcCompositePart::onPartSendVh);
    part->setAcceptsEncoded([self = QPointer(this)] { return self && self->maySendEncoded(); });
    connect(part.data(), &QtAbstractVhIpcPart::readyStateChanged, this,
            [this, name](bool ready) { onPartReadyStateChanged(name, ready); });
    connect(part.data(), &QtAbstractVhIpcPart::requiringServerChanged, this,
            &QtVhIpcCompositePart::onPartRequiringServerChanged);
    if (!part->isReady()) {
        logPartReady(name, false);
        setReady(false);
    }
    if (part->isRequiringServer())
        setRequiringServer(true);
}

QSharedPointer<QtAbstractVhIpcPart> QtVhIpcCompositePart::part(const QString &name) const
{
    return m_parts.value(name).part;
}

void QtVhIpcCompositePart::processVh(const QHash<QString, QVariant> &map)
{
    if (const auto part = allowedPart(map)) {
        logTraffic(QStringLiteral("received"), map);
        part->processVh(map);
    }
}

void QtVhIpcCompositePart::onConnectChanged(bool connected)
{
    QtAbstractVhIpcPart::onConnectChanged(connected);
    reportConnectedStateToAll();
}

void QtVhIpcCompositePart::onTsoChanged()
{
    if (isConnected())
        reportConnectedStateToAll();
}

void QtVhIpcCompositePart::onPartSendVh(const QHash<QString, QVariant> &map)
{
    if (allowedPart(map)) {
        logTraffic(QStringLiteral("sent"), map);
        Q_EMIT sendVh(map);
    }
}

void QtVhIpcCompositePart::onPartReadyStateChanged(const QString &name, bool ready)
{
    logPartReady(name, ready);
    setReady(ready && std::all_of(m_parts.cbegin(), m_parts.cend(), [](const Part &record) {
                 return record.part->isReady();
             }));
}

void QtVhIpcCompositePart::onPartRequiringServerChanged(bool requiring)
{
    setRequiringServer(requiring
                       || std::any_of(m_parts.cbegin(), m_parts.cend(), [](const Part &record) {
                              return record.part->isRequiringServer();
                          }));
}

bool QtVhIpcCompositePart::isAllowed(const Part &record) const
{
    const auto passes = [](bool needed, const QSharedPointer<QtToggleSwitchObject> &gate) {
        return !needed || !gate || gate->isOn();
    };
    return passes(record.needsFirstGate, m_firstGate)
        && passes(record.needsSecondGate, m_secondGate);
}

QSharedPointer<QtAbstractVhIpcPart>
QtVhIpcCompositePart::allowedPart(const QHash<QString, QVariant> &map) const
{
    const auto record = m_parts.constFind(map.value(nameKey()).toString());
    if (record == m_parts.constEnd() || !isAllowed(*record))
        return {};
    return record->part;
}

void QtVhIpcCompositePart::reportConnectedStateToAll()
{
    // Reentrancy: the notified part may add others.
    const QStringList names = m_parts.keys();
    for (const QString &name : names)
        reportConnectedStateIfRequired(m_parts[name]);
}

void QtVhIpcCompositePart::reportConnectedStateIfRequired(Part &record)
{
    const bool connected = isConnected();
    if (record.reportedConnected == connected || (connected && !isAllowed(record)))
        return;
    record.reportedConnected = connected;
    const auto part = record.part;
    part->onConnectChanged(connected);
}

void QtVhIpcCompositePart::setReady(bool ready)
{
    if (ready != isReady())
        log(QStringLiteral("ready: "), ready);
    QtAbstractVhIpcPart::setReady(ready);
}

void QtVhIpcCompositePart::logPartReady(const QString &name, bool ready) const
{
    log(QStringLiteral("<%1> ready: ").arg(name), ready);
}

void QtVhIpcCompositePart::log(const QString &what, bool ready) const
{
    QString line;
    QTextStream(&line) << "[QtVhIpcCompositePart #" << static_cast<const void *>(this)
                       << "]: " << what << int(ready);
    logLine(1, line);
}
