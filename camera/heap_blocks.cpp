// Reporting a run block that could not be allocated. The blocks are taken during static
// initialisation, before any window exists, so the report waits in a flag and a text
// that the main window shows in its title when it is created.
#include "camera/heap_blocks.h"

int heapAllocFailed = 0;
const char* heapAllocFailureText = nullptr;

void reportHeapAllocFailure(const char* text) {
  heapAllocFailed = 1;
  heapAllocFailureText = text;
}
