#include "pmxserializationinputstream.h"

pmxSerializationInputStream::~pmxSerializationInputStream() = default;
