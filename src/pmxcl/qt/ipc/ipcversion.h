#pragma once

/// The version of the link's protocol. 0: no handshake; 1 or more: each side sends one when the
/// connection is up, and expects one.
using IpcVersion = int;
