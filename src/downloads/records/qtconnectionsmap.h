#pragma once

#include "qthostandport.h"

#include <QMap>
#include <QVariant>

/// The number of a download's connections to each peer.
using QtConnectionsMap = QMap<QtHostAndPort, int>;

/// A list of hashes, one per peer.
QVariant toVariant(const QtConnectionsMap &connections);
/// For a peer that is listed more than once, the last entry counts.
QtConnectionsMap toConnectionsMap(const QVariant &variant);
