#pragma once

#include "kovstreamchoice.h"
#include "kovtransfer.h"

#include <QByteArray>
#include <QProcess>
#include <QUrl>

class KovHttpExchange;
class KovStreamRelay;

/**
 * Saves a stream that a playlist describes as one file in the best quality, as it is, with the
 * programs of FFmpeg (https://ffmpeg.org).
 *
 * What was interrupted cannot go on: the next attempt begins anew. A stream of which a part cannot
 * be had is no file.
 */
class KovStreamTransfer : public KovTransfer {
    Q_OBJECT
public:
    KovStreamTransfer(KovJob job, KovDownloadRequest request, Environment environment,
                      QObject *parent = nullptr, QtClock &clock = QtClock::system());
    ~KovStreamTransfer() override;

    void start() override;
    void tick() override;
    bool isResumable() const override { return false; }
    qint64 receivedBytes() const override;
    double doneShare() const override;
    qsizetype connections() const override;

protected:
    void abort() override;
    void storeProgress() override;

private:
    void onPlaylist();
    void listen(const QUrl &playlist);
    void probe();
    void onProbed();
    void fetch();
    void onProgress();
    void onFetched();
    void run(const QString &program, const QStringList &arguments,
             void (KovStreamTransfer::*then)());
    /// Why the program has failed.
    KovFailure programFailure(QByteArray errors) const;
    /// What both programs are told of what they read.
    QStringList readOptions() const;

    std::unique_ptr<KovHttpExchange> m_exchange;
    QByteArray m_text;
    std::unique_ptr<KovStreamRelay> m_relay;
    QByteArray m_address;
    QProcess m_program;
    void (KovStreamTransfer::*m_then)() = nullptr;
    KovStreamChoice m_choice;
    double m_savedSeconds = 0;
    bool m_takesAnyName = false;
    bool m_isWhole = false;
};
