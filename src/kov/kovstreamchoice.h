#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>

/// What to save of a stream that comes in several qualities: the best picture and the best sound
/// that goes with it, in a container that takes both as they are.
struct KovStreamChoice {
    /// As ffmpeg counts the streams of its input.
    QList<int> streams;
    /// The name of ffmpeg's muxer.
    QString format;
    /// Of the file, without a dot.
    QString extension;
    /// -1 while it goes on.
    double seconds = -1;

    /// Of what "ffprobe -print_format json -show_programs -show_streams -show_format" prints;
    /// nothing when there is neither a picture nor a sound.
    static std::optional<KovStreamChoice> best(const QByteArray &json);
};
