// Placeholder until the foundation lands.
#include "app/responsive_wait.h"

#include "app/system_services.h"

int writingActive = 0;

int waitResponsive(int milliseconds) {
  systemSleepMs(static_cast<uint32_t>(milliseconds));
  return 1;
}
