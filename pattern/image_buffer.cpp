// Construction of the picture record: its block is taken once and kept for the run.
#include "pattern/image_buffer.h"

#include "camera/heap_blocks.h"

ImageBuffer::ImageBuffer() { pixels = allocateRunBlock<uint8_t>(static_cast<size_t>(byteSize)); }

ImageBuffer::ImageBuffer(int32_t usedWidth, int32_t usedHeight) : ImageBuffer() {
  width = usedWidth;
  height = usedHeight;
}
