#pragma once

#include <QString>

/// The answer to a JSON request: a JSON object that says that it is an echo, with the text of the
/// request in it as a string, so that nothing of it is lost whether it is JSON or not.
QString kovJsonEcho(const QString &request);
