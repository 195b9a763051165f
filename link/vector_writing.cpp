// Vector writing: see vector_writing.h.
#include "link/vector_writing.h"

void StartVectorWriting(LinePattern&) {}
