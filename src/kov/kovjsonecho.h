#pragma once

#include <QString>

/// The answer to a JSON request: a JSON object that contains the text of the request as a string,
/// so that it is preserved whether or not it is valid JSON.
QString kovJsonEcho(const QString &request);
