#pragma once

#include "qthostandport.h"

#include <QMap>
#include <QVariant>

/// How many connections a download has to each peer.
using QtConnectionsMap = QMap<QtHostAndPort, int>;

/// A list of hashes, one per peer.
QVariant toVariant(const QtConnectionsMap &connections);
/// A peer that is listed more than once has the number of its last entry.
QtConnectionsMap toConnectionsMap(const QVariant &variant);
