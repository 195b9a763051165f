// A serial port whose board says what the fuzzer gives: fuzz/replay_serial_port.cpp puts
// it behind the serial-port seam in place of the virtual board. Each read takes the next
// frame of the script: a length byte, then that many bytes (a frame longer than the read
// leaves the rest pending for the next read, as a port's buffer does). Length 0xFF makes
// the read fail. Once the script is used up every read brings nothing. A read that
// brings nothing costs its whole read time-out on the virtual clock, a byte 1 ms.
#pragma once

#include <cstddef>
#include <cstdint>

// A closed port in front of the script, which must outlive the reads.
void replaySerialStart(const uint8_t* script, size_t size);
// The next write fails (the link then goes to its failed state).
void replaySerialFailNextWrite();
// Takes the script's next byte, false when it is used up: the reads take their frames
// this way, and the target its operations between them.
bool replaySerialTake(uint8_t& byte);
