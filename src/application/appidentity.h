#pragma once

#include <QString>

/// The product's name.
QString appName();

/// Sets the organisation and application name of the application object. All programs of the
/// product use the same ones, and therefore share their data and settings.
void setAppIdentity();
