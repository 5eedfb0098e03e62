#pragma once

#include "vhipcqueuedpart.h"

#include <QList>
#include <QString>

/**
 * A second process of this program, which delivers what still waits for the application when the
 * browser ends the first one. It is in no browser's hands: it waits as long as the messages may.
 *
 * They come on its standard input, from memory, as the link itself encodes them: neither command
 * line nor environment nor disk get to see anything of them.
 */
namespace LinkSuccessor {

/// On the command line: messages to deliver are on standard input, and no browser.
QString commandLineSwitch();
/// False, with a line in the log, when the process cannot be started.
bool start(const QList<VhIpcQueuedMessage> &messages);
/// In the successor: what start() was given, as far as it can be read.
QList<VhIpcQueuedMessage> receive();

} // namespace LinkSuccessor
