// The serial-port seam: the few port calls the link makes. Windows: serial_port_win32.cpp
// (CreateFileA on "\\.\COM%d", DCB, COMMTIMEOUTS). Tests and telvane-sim.exe:
// sim/virtual_serial_seam.cpp, the virtual controller board. serial_port_absent.cpp:
// no port exists.
#pragma once

#include <cstdint>

using SerialHandle = std::intptr_t;
constexpr SerialHandle kInvalidSerialHandle = -1;

SerialHandle serialOpen(int comPort);  // kInvalidSerialHandle when it cannot be opened
void serialClose(SerialHandle handle);
uint32_t serialLastError();
