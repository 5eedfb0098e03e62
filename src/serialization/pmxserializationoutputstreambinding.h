#pragma once

#include <iosfwd>

/// Where the text of an output stream goes.
class pmxSerializationOutputStreamBinding {
public:
    pmxSerializationOutputStreamBinding() = default;
    virtual ~pmxSerializationOutputStreamBinding() = default;
    pmxSerializationOutputStreamBinding(const pmxSerializationOutputStreamBinding &) = delete;
    pmxSerializationOutputStreamBinding &
    operator=(const pmxSerializationOutputStreamBinding &) = delete;

    /// The stream must outlive the binding. Null: the text goes nowhere.
    virtual void BindToStream(std::ostream *stream) = 0;
};
