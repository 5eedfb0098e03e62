#pragma once

#include <QString>

/// A peer on the network.
struct QtHostAndPort {
    QString host;
    quint16 port = 0;

    bool operator==(const QtHostAndPort &) const = default;
    bool operator<(const QtHostAndPort &other) const
    {
        return host != other.host ? host < other.host : port < other.port;
    }
};
