// The fixed blocks that pictures and camera frames live in: taken once before the
// windows exist and kept for the whole run (never freed). A block that cannot be had
// stays null and is reported in the main window's title.
#pragma once

#include <cstddef>
#include <new>

// Called when a run block cannot be allocated: the title "error in HeapAlloc".
void reportHeapAllocFailure();

template <typename T>
T* allocateRunBlock(size_t count) {
  T* block = new (std::nothrow) T[count]();
  if (block == nullptr) reportHeapAllocFailure();
  return block;
}

extern int heapAllocFailed;  // 1 once any run block could not be allocated
