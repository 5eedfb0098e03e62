#include "qtabstractserverlauncher.h"

QtAbstractServerLauncher::QtAbstractServerLauncher(QObject *parent) : QObject(parent) { }
