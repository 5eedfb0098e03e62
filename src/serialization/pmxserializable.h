#pragma once

class pmxSerializationIoStream;

/**
 * A record that describes itself once, for reading and writing alike.
 *
 * Records are values: copied freely, used by one thread at a time.
 */
class pmxSerializable {
public:
    pmxSerializable() = default;
    virtual ~pmxSerializable() = default;

    /**
     * Reads the record from the stream or writes it, depending on the stream.
     *
     * flags is handed down to nested records. False means that a required member was missing or
     * could not be written; what was read until then stays in the record. Without an override
     * nothing is read or written and the result is false.
     */
    virtual bool Serialize(pmxSerializationIoStream * /*stream*/, unsigned int /*flags*/)
    {
        return false;
    }

    bool isDirty() const { return m_dirty; }
    void setDirty(bool dirty) { m_dirty = dirty; }

protected:
    pmxSerializable(const pmxSerializable &) = default;
    pmxSerializable(pmxSerializable &&) = default;
    pmxSerializable &operator=(const pmxSerializable &) = default;
    pmxSerializable &operator=(pmxSerializable &&) = default;

private:
    bool m_dirty = false;
};
