// The three calibration programs of the test menu, each with its built-in constants: the
// long stroke test (rows of short strokes at rising voltage, with a record file), the PR
// test (long stepped rows at five voltages on photoresist) and the black tape test (one
// short exposure). Each runs as a long operation: writingActive is 1 from before its first
// move, the stop is tested after the approach and after every wait, and the stage goes
// back to where it started. Their reference "Z" is the X axis's reading and their single
// micrometre steps are made on X: that crossing is how the station has always run them.
#pragma once

// Number of the next "long stroke writing condition(N).txt"; starts at 0 in each run of
// the program.
extern int longStrokeRecordNumber;

void LongStrokeTest();
void PRTest();
void BlackTapeTest();

// The menu commands; each does nothing while an operation runs.
void onLongStrokeTestCommand();  // 32833
void onPRTestCommand();          // 32829, live view paused first
void onBlackTapeTestCommand();   // 4000, live view paused first
