#include "pmxserializable.h"

pmxSerializable::~pmxSerializable() = default;

bool pmxSerializable::Serialize(pmxSerializationIoStream *, unsigned int) { return false; }
