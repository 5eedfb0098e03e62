#include "abstractjsonrequestsmanager.h"

AbstractJsonRequestsManager::AbstractJsonRequestsManager(QObject *parent) : QObject(parent) { }
