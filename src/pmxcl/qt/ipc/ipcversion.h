#pragma once

/// What both ends of a link agree on: 0 means that no handshake is made, 1 or more that each side
/// sends one when the connection is up and expects one.
using IpcVersion = int;
