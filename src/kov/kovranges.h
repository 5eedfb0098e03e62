#pragma once

#include <QList>
#include <QString>

/// A range of a file, from "from" up to but not including "to", of which the first "done" bytes are
/// there.
struct KovRange {
    qint64 from = 0;
    /// -1 while the size of the file is unknown; then there is one range only.
    qint64 to = -1;
    qint64 done = 0;

    qint64 next() const { return from + done; }
    bool isComplete() const { return to >= 0 && next() >= to; }
    bool operator==(const KovRange &) const = default;
};

/// The progress of a file: ranges that together cover it, in no order. A range keeps its index; a
/// new one gets the next index.
class KovRanges {
public:
    KovRanges() = default;
    /// One range for a file of that size, which may be -1 for unknown.
    explicit KovRanges(qint64 totalBytes) : m_ranges{{0, totalBytes, 0}} { }
    static KovRanges fromText(const QString &text);
    /// For storing: "from-to:done", separated by blanks.
    QString toText() const;

    qsizetype count() const { return m_ranges.size(); }
    const KovRange &at(qsizetype index) const { return m_ranges.at(index); }
    /// Adds so many bytes to a range.
    void advance(qsizetype index, qint64 bytes) { m_ranges[index].done += bytes; }
    /// Ends a range of unknown size at its current end; returns the size of the file.
    qint64 endHere();
    /// Splits the range with the most missing bytes in the middle of them, unless the halves would
    /// be smaller than that. Returns whether it did.
    bool splitLargest(qint64 smallestHalf);

    qint64 receivedBytes() const;
    /// The minimum size of a file with all finished bytes.
    qint64 endOfReceived() const;

    bool operator==(const KovRanges &) const = default;

private:
    QList<KovRange> m_ranges;
};
