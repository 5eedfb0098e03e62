#include "qtsingleshottimer.h"

QtSingleShotTimer::QtSingleShotTimer(QObject *parent) : QObject(parent) { }
