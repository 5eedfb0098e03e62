#pragma once

#include <QString>

#include <cstring>

/// What an errno(3) means, for the log: English whatever the user's language, in which
/// qt_error_string() and strerror(3) have it.
inline QString systemErrorText(int error)
{
    const char *const text = ::strerrordesc_np(error);
    return text ? QString::fromLatin1(text) : QStringLiteral("error %1").arg(error);
}
