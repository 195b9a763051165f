#include "app/layers.h"

int maskShown = 0;
int markShown = 0;
int linesShown = 0;
