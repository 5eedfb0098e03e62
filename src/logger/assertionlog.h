#pragma once

#include <QString>

/**
 * A failed internal check does not end the program: it is logged with level 1,
 * "ASSERTION FAILED: <expression>, <source>,<line>", and execution continues. Any thread.
 */
void logAssertionFailed(const QString &expression, const QString &source, int line);

/**
 * Logs the expression when ok is false; the source is the caller's file, written as
 * "../../src/<folders>/<name>" without its suffix, and the caller's line. Returns ok.
 */
bool checkOrLog(bool ok, const char *expression, const char *fileName = __builtin_FILE(),
                int line = __builtin_LINE());
