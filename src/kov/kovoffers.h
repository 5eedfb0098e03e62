#pragma once

#include "kovanswer.h"
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

/// Downloads that somebody else may have as well, and that are ours only when the file comes.
class KovOffers : public QObject {
    Q_OBJECT
public:
    /// A server that has not begun to send the file by then is too slow to wait for: who offers
    /// waits for 60 s.
    static constexpr int answeredWithinMs = 20'000;

    /// Empty when it has been taken, else why not.
    using Answer = std::function<void(const QString &error)>;
    /// Makes a job of a transfer that brings the file, and puts it on the disk; returns why it
    /// cannot.
    using Take = std::function<QString(KovTransfer *transfer)>;
    /// Makes a job of a request that came to nothing, when nobody listens for the answer any more:
    /// nobody else may have the download.
    using Keep = std::function<void(const KovDownloadRequest &request)>;

    KovOffers(Take take, Keep keep, QtClock &clock, QObject *parent = nullptr);
    ~KovOffers() override;

    /// Starts the transfer and answers once. The offerer may go before that.
    void begin(KovTransfer *transfer, QObject *offerer, Answer answer);
    bool isEmpty() const { return m_offers.empty(); }
    /// Gives them all up.
    void stop();

Q_SIGNALS:
    /// There is one more, or one less.
    void changed();

private:
    struct Offer {
        QPointer<QObject> offerer;
        Answer answer;
        std::unique_ptr<QtSingleShotTimer> timer;
        /// Why it was given up here.
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
