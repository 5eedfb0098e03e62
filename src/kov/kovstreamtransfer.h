#pragma once

#include "kovstreamchoice.h"
#include "kovtransfer.h"

#include <QByteArray>
#include <QProcess>
#include <QUrl>

class KovHttpExchange;
class KovStreamRelay;

/**
 * Saves the stream of a playlist as one file in the best quality, without transcoding, with the
 * programs of FFmpeg (https://ffmpeg.org).
 *
 * An interrupted transfer cannot be resumed: the next attempt starts over. When a part of the
 * stream cannot be downloaded, the transfer fails.
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
    /// The input options of both programs.
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
