// The writing-condition record: one text file per writing run in the run folder,
// "writing_condition(N).txt", holding the settings and every writing parameter the run
// used. The parameters themselves live in StationParameters (station.h).
#pragma once

// Number of the next record file; starts at 0 in each run of the program.
extern int writingConditionCounter;

// Ensures the run folder and writes the next record; a file that cannot be created is
// skipped silently, the counter advances all the same.
void writeWritingCondition();
