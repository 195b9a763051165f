// printf-style formatting into a std::string of whatever length the values need, for
// the program's file lines whose numbers come unclamped from Config.txt.
#pragma once

#include <string>

std::string formatText(const char* format, ...);
