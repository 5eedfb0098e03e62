#pragma once

/// The record in its encoding on the link: a hash, a list or a single value.
template <typename Record> auto encoded(const Record &record)
{
    if constexpr (requires { record.toVariantHash(); })
        return record.toVariantHash();
    else if constexpr (requires { toVariantHash(record); })
        return toVariantHash(record);
    else if constexpr (requires { toVariantList(record); })
        return toVariantList(record);
    else
        return toVariant(record);
}
