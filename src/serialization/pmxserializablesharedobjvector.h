#pragma once

#include "pmxserializableptrobjvector.h"

#include <memory>

/// A list of records of type R.
template <typename R>
class pmxSerializableSharedObjVector : public pmxSerializablePtrObjVector<std::shared_ptr<R>> {
public:
    using pmxSerializablePtrObjVector<std::shared_ptr<R>>::pmxSerializablePtrObjVector;

protected:
    std::shared_ptr<R> create_obj(pmxSerializationIoStream *) override
    {
        return std::make_shared<R>();
    }
};
