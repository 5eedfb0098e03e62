#pragma once

/// Codes of errors of the category "GenericError" (see genericError()).
namespace GenericErrorCode {
enum Code {
    NoError = 0,
    /// The operation failed; the description says why.
    Failure = 1,
    /// The peer uses another protocol.
    ProtocolMismatch = 2,
};
}
