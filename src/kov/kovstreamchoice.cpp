#include "kovstreamchoice.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>
#include <QStringList>

#include <algorithm>
#include <tuple>

namespace {

using Rank = std::tuple<qint64, qint64>;

int indexOf(const QJsonObject &stream) { return stream.value(u"index").toInt(-1); }
QString codecOf(const QJsonObject &stream) { return stream.value(u"codec_name").toString(); }

qint64 bitrateOf(const QJsonObject &stream)
{
    // As the playlist says, or else the stream itself.
    const QJsonValue variant = stream.value(u"tags").toObject().value(u"variant_bitrate");
    return (variant.isString() ? variant : stream.value(u"bit_rate")).toString().toLongLong();
}

Rank rankOf(const QJsonObject &stream)
{
    const qint64 pixels =
        static_cast<qint64>(stream.value(u"width").toInt()) * stream.value(u"height").toInt();
    return {pixels > 0 ? pixels : stream.value(u"channels").toInt(), bitrateOf(stream)};
}

/// The best stream of a kind; an empty object when there is none.
QJsonObject bestOf(const QJsonArray &streams, QStringView kind, const QSet<int> &among)
{
    QJsonObject best;
    for (const auto &value : streams) {
        const QJsonObject stream = value.toObject();
        const bool isPicture =
            stream.value(u"disposition").toObject().value(u"attached_pic").toInt() == 1;
        if (stream.value(u"codec_type").toString() != kind || isPicture
            || !among.contains(indexOf(stream)))
            continue;
        if (best.isEmpty() || rankOf(stream) > rankOf(best))
            best = stream;
    }
    return best;
}

QSet<int> indexesOf(const QJsonArray &streams)
{
    QSet<int> indexes;
    for (const auto &value : streams)
        indexes.insert(indexOf(value.toObject()));
    return indexes;
}

bool areAllIn(const QStringList &codecs, const QStringList &known)
{
    return std::all_of(codecs.cbegin(), codecs.cend(),
                       [&known](const QString &codec) { return known.contains(codec); });
}

} // namespace

std::optional<KovStreamChoice> KovStreamChoice::best(const QByteArray &json)
{
    const QJsonObject probed = QJsonDocument::fromJson(json).object();
    const QJsonArray streams = probed.value(u"streams").toArray();
    const QSet<int> all = indexesOf(streams);
    const QJsonObject video = bestOf(streams, u"video", all);
    // Each HLS variant is a program with its own audio.
    QSet<int> companions;
    const QJsonArray programs = probed.value(u"programs").toArray();
    for (const auto &value : programs) {
        const QSet<int> members = indexesOf(value.toObject().value(u"streams").toArray());
        if (!video.isEmpty() && members.contains(indexOf(video)))
            companions += members;
    }
    const QJsonObject audio = bestOf(streams, u"audio", companions.isEmpty() ? all : companions);

    KovStreamChoice choice;
    QStringList codecs;
    for (const QJsonObject &stream : {video, audio}) {
        if (stream.isEmpty())
            continue;
        choice.streams += indexOf(stream);
        codecs += codecOf(stream);
    }
    if (codecs.isEmpty())
        return std::nullopt;
    if (areAllIn(codecs,
                 {u"h264"_qs, u"hevc"_qs, u"av1"_qs, u"mpeg4"_qs, u"aac"_qs, u"mp3"_qs, u"ac3"_qs,
                  u"eac3"_qs, u"alac"_qs})) {
        choice.format = QStringLiteral("mp4");
        choice.extension = video.isEmpty() ? QStringLiteral("m4a") : choice.format;
    } else if (areAllIn(codecs, {u"vp8"_qs, u"vp9"_qs, u"av1"_qs, u"opus"_qs, u"vorbis"_qs})) {
        choice.format = QStringLiteral("webm");
        choice.extension = choice.format;
    } else { // accepts all codecs
        choice.format = QStringLiteral("matroska");
        choice.extension = video.isEmpty() ? QStringLiteral("mka") : QStringLiteral("mkv");
    }
    bool isKnown = false;
    const double seconds =
        probed.value(u"format").toObject().value(u"duration").toString().toDouble(&isKnown);
    choice.seconds = isKnown && seconds > 0 ? seconds : -1;
    return choice;
}
