#pragma once

#include <QString>

#include <cstring>

/// The meaning of an errno(3), for the log. Always in English, unlike qt_error_string() and
/// strerror(3), which use the user's language.
inline QString systemErrorText(int error)
{
    const char *const text = ::strerrordesc_np(error);
    return text ? QString::fromLatin1(text) : QStringLiteral("error %1").arg(error);
}
