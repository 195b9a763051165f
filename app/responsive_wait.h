// The responsive wait and the stop protocol shared by every long operation.
// Placeholder until the foundation lands.
#pragma once

extern int writingActive;  // 1 while a writing run or another stoppable program runs

// 1 the time ran out, 0 the operator confirmed a stop, 3 motors stopped by a click.
int waitResponsive(int milliseconds);
