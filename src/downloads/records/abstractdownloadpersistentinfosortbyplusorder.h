#pragma once

#include <Qt>

/// How a list of downloads is sorted.
struct AbstractDownloadPersistentInfoSortByPlusOrder {
    enum class SortBy : qint32 {
        Order = 0,
        Title = 1,
        CreationTime = 2,
        FinishedTime = 3,
        Size = 4,
        Priority = 5,
    };

    SortBy sortBy = SortBy::Order;
    Qt::SortOrder order = Qt::AscendingOrder;

    bool operator==(const AbstractDownloadPersistentInfoSortByPlusOrder &) const = default;
};
