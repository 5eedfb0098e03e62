#pragma once

#include "abstractfileinfo.h"

#include <QString>

/// The fields of a file, for the codecs of AbstractFileInfo and its subclasses.
inline constexpr auto abstractFileInfoFields = [](auto &fields) {
    fields.value(u"originType"_qs, &AbstractFileInfo::originType);
    fields.record(u"details"_qs, &AbstractFileInfo::details, AbstractFileDetails::fromVariantHash);
    fields.value(u"path"_qs, &AbstractFileInfo::path);
    fields.value(u"size"_qs, &AbstractFileInfo::size);
    fields.millisecondsIfValid(u"lastModified"_qs, &AbstractFileInfo::lastModified);
};
