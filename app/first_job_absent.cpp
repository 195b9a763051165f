// telvane.exe starts with every output off and the data folder as the operator left it.
#include "app/startup.h"

void startFirstJob() {}
