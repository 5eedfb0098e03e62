#include "kovranges.h"

#include <QStringList>

#include <algorithm>

KovRanges KovRanges::fromText(const QString &text)
{
    KovRanges ranges;
    const QStringList parts = text.split(u' ', Qt::SkipEmptyParts);
    for (const QString &part : parts)
        ranges.m_ranges.append({part.section(u'-', 0, 0).toLongLong(),
                                part.section(u'-', 1).section(u':', 0, 0).toLongLong(),
                                part.section(u':', 1).toLongLong()});
    return ranges;
}

QString KovRanges::toText() const
{
    QStringList parts;
    for (const KovRange &range : m_ranges)
        parts += QStringLiteral("%1-%2:%3")
                     .arg(QString::number(range.from), QString::number(range.to),
                          QString::number(range.done));
    return parts.join(u' ');
}

qint64 KovRanges::endHere()
{
    KovRange &range = m_ranges.first();
    range.to = range.next();
    return range.to;
}

bool KovRanges::splitLargest(qint64 smallestHalf)
{
    const auto missing = [](const KovRange &range) { return range.to - range.next(); };
    const auto largest = std::max_element(
        m_ranges.begin(), m_ranges.end(),
        [&missing](const KovRange &a, const KovRange &b) { return missing(a) < missing(b); });
    if (largest == m_ranges.end() || missing(*largest) < 2 * smallestHalf)
        return false;
    const qint64 middle = largest->next() + missing(*largest) / 2;
    const KovRange second{middle, largest->to, 0};
    largest->to = middle;
    m_ranges.append(second);
    return true;
}

qint64 KovRanges::receivedBytes() const
{
    qint64 sum = 0;
    for (const KovRange &range : m_ranges)
        sum += range.done;
    return sum;
}

qint64 KovRanges::endOfReceived() const
{
    qint64 end = 0;
    for (const KovRange &range : m_ranges)
        end = std::max(end, range.done > 0 ? range.next() : 0);
    return end;
}
