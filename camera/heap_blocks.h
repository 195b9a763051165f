// The fixed blocks that pictures, pattern grids and camera frames live in: taken once
// before the windows exist and kept for the whole run (never freed). A block that cannot
// be had stays null and is reported in the main window's title.
#pragma once

#include <cstddef>
#include <new>

// The title texts of a failed run block: a picture or frame block, and a pattern grid.
constexpr const char* kHeapAllocFailureText = "error in HeapAlloc";
constexpr const char* kHeapAllocArrayFailureText = "error in HeapAlloc for array";

// Called when a run block cannot be allocated; the text becomes the main window's title.
void reportHeapAllocFailure(const char* text = kHeapAllocFailureText);

template <typename T>
T* allocateRunBlock(size_t count, const char* failureText = kHeapAllocFailureText) {
  T* block = new (std::nothrow) T[count]();
  if (block == nullptr) reportHeapAllocFailure(failureText);
  return block;
}

extern int heapAllocFailed;               // 1 once any run block could not be allocated
extern const char* heapAllocFailureText;  // the text of the latest failure, or null
