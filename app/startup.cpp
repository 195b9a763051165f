// Placeholder until the foundation lands.
#include "app/startup.h"

void startUpDevices() {}
void shutDownDevices() {}
