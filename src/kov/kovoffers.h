#pragma once

#include "kovhttpresponse.h"
#include "kovjob.h"
#include "qtclock.h"
#include "qtsingleshottimer.h"

#include <QObject>
#include <QPointer>
#include <QString>

#include <functional>
#include <map>
#include <memory>

class KovTransfer;

/// Offered downloads, which the browser may still have; each becomes a job when its file arrives.
class KovOffers : public QObject {
    Q_OBJECT
public:
    /// For the first byte of the file; the host that offers it waits for 60 s.
    static constexpr int answerTimeoutMs = 20'000;

    /// Takes an empty text when it was accepted, else the reason.
    using Answer = std::function<void(const QString &error)>;
    /// Makes a job of a transfer that receives the file, and stores it; returns the error, if any.
    using Take = std::function<QString(KovTransfer *transfer)>;
    /// Makes a job of a request that failed after its offerer has gone: the browser may not have
    /// the download any more.
    using Keep = std::function<void(const KovDownloadRequest &request)>;

    KovOffers(Take take, Keep keep, QtClock &clock, QObject *parent = nullptr);
    ~KovOffers() override;

    /// Starts the transfer and answers once. The offerer may be destroyed before that.
    void begin(KovTransfer *transfer, QObject *offerer, Answer answer);
    bool isEmpty() const { return m_offers.empty(); }
    /// Cancels them all.
    void stop();

Q_SIGNALS:
    /// The number of offers has changed.
    void changed();

private:
    struct Offer {
        QPointer<QObject> offerer;
        Answer answer;
        std::unique_ptr<QtSingleShotTimer> timer;
        /// Why it was cancelled.
        QString error;
    };

    void giveUp(KovTransfer *transfer, const QString &error);
    void onAccepted(KovTransfer *transfer);
    void onEnded(KovTransfer *transfer, const KovFailure &failure);

    const Take m_take;
    const Keep m_keep;
    QtClock &m_clock;
    std::map<KovTransfer *, Offer> m_offers;
    bool m_stopping = false;
};
