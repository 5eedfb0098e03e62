#include "pmxserializationoutputstreambinding.h"

pmxSerializationOutputStreamBinding::~pmxSerializationOutputStreamBinding() = default;
