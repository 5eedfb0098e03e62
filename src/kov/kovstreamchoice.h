#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>

/// Chooses what to save of a stream with several qualities: the best video and the best audio for
/// it, in a container that supports both codecs.
struct KovStreamChoice {
    /// The indexes of the input's streams, as ffmpeg numbers them.
    QList<int> streams;
    /// The name of ffmpeg's muxer.
    QString format;
    /// Of the file, without a dot.
    QString extension;
    /// -1 for a live stream.
    double seconds = -1;

    /// From the output of "ffprobe -print_format json -show_programs -show_streams -show_format";
    /// nothing when there is neither video nor audio.
    static std::optional<KovStreamChoice> best(const QByteArray &json);
};
