#include "pmxkovbhipctaskprocessor.h"

pmxKovBhIpcTaskProcessor::pmxKovBhIpcTaskProcessor(QObject *parent) : QObject(parent) { }

pmxKovBhIpcTaskProcessor::~pmxKovBhIpcTaskProcessor() = default;
