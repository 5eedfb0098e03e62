#include "kovoffers.h"

#include "kovtransfer.h"

#include <QFile>

#include <utility>

KovOffers::KovOffers(Take take, Keep keep, QtClock &clock, QObject *parent)
    : QObject(parent), m_take(std::move(take)), m_keep(std::move(keep)), m_clock(clock)
{
}

KovOffers::~KovOffers() = default;

void KovOffers::begin(KovTransfer *transfer, QObject *offerer, Answer answer)
{
    auto timer = m_clock.createTimer();
    connect(timer.get(), &QtSingleShotTimer::timeout, this,
            [this, transfer] { giveUp(transfer, QStringLiteral("the server does not answer")); });
    timer->start(answerTimeoutMs);
    m_offers[transfer] = {offerer, std::move(answer), std::move(timer), {}};
    connect(transfer, &KovTransfer::accepted, this, [this, transfer] { onAccepted(transfer); });
    connect(transfer, &KovTransfer::ended, this,
            [this, transfer](const KovFailure &failure) { onEnded(transfer, failure); });
    Q_EMIT changed();
    transfer->start();
}

void KovOffers::giveUp(KovTransfer *transfer, const QString &error)
{
    m_offers[transfer].error = error;
    transfer->stop();
}

void KovOffers::stop()
{
    m_stopping = true;
    for (const auto &[transfer, offer] : m_offers) {
        if (!offer.offerer)
            m_keep(transfer->request());
        giveUp(transfer, QStringLiteral("the service ends"));
    }
}

void KovOffers::onAccepted(KovTransfer *transfer)
{
    if (!m_offers[transfer].error.isEmpty())
        return; // too late
    if (const QString error = m_take(transfer); !error.isEmpty()) {
        giveUp(transfer, error);
        return;
    }
    transfer->disconnect(this);
    const auto offer = m_offers.extract(transfer);
    if (offer.mapped().offerer)
        offer.mapped().answer({});
    Q_EMIT changed();
}

void KovOffers::onEnded(KovTransfer *transfer, const KovFailure &failure)
{
    const auto offer = m_offers.extract(transfer);
    if (!transfer->job().partialPath.isEmpty())
        QFile::remove(transfer->job().partialPath);
    transfer->deleteLater();
    const QString &error = offer.mapped().error;
    if (offer.mapped().offerer)
        offer.mapped().answer(error.isEmpty() ? failure.text : error);
    else if (!m_stopping)
        m_keep(transfer->request());
    Q_EMIT changed();
}
