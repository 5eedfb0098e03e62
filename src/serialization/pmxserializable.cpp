#include "pmxserializable.h"

bool pmxSerializable::Serialize(pmxSerializationIoStream *, unsigned int) { return false; }
