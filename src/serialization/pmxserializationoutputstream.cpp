#include "pmxserializationoutputstream.h"

pmxSerializationOutputStream::~pmxSerializationOutputStream() = default;
