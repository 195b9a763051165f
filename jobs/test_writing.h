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

// Where a test program started and where it writes. The reference readings are of X.
struct TestPlaces {
  double x0, y0, reference;       // the stage before the program
  double xs, ys, startReference;  // after the approach to the laser's place
};
// The program becomes a long operation and remembers where the stage is.
TestPlaces startTestProgram();
// ... then goes to the laser's place and lowers Z by startDzUm plus the laser's Z shift.
void approachTestPlace(TestPlaces& places, int startDzUm);
// Laser off, Z and XY back to the start, the stop forgotten, the operation over.
void endTestProgram(const TestPlaces& places);

void LongStrokeTest();
void PRTest();
void BlackTapeTest();

// The menu commands; each does nothing while an operation runs.
void onLongStrokeTestCommand();  // 32833
void onPRTestCommand();          // 32829, live view paused first
void onBlackTapeTestCommand();   // 4000, live view paused first
