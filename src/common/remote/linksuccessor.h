#pragma once

#include "vhipcqueuedpart.h"

#include <QList>
#include <QString>

/**
 * A second, detached process of this program, which delivers the messages that still wait for the
 * application when the browser ends the first one. It waits as long as the messages may.
 *
 * They are passed on its standard input, from memory, in the link's encoding, and so appear neither
 * on a command line or in the environment nor on the disk.
 */
namespace LinkSuccessor {

/// On the command line: messages to deliver are on standard input, and no browser.
QString commandLineSwitch();
/// False, with a line in the log, when the process cannot be started.
bool start(const QList<VhIpcQueuedMessage> &messages);
/// In the successor: what start() was given, as far as it can be read.
QList<VhIpcQueuedMessage> receive();

} // namespace LinkSuccessor
