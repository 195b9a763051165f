// Windows-only pieces of the display-drawing seam that the shell and the Windows tests
// reach directly: the display window's back buffer and the GDI+ encoder lookup.
#pragma once

#include <windows.h>

// Index of the first installed GDI+ encoder whose MIME type equals mimeType, its class
// id copied into clsid; -1 when the encoder list cannot be had; 0 also when none matches
// (clsid then unchanged).
int FindEncoder(const wchar_t* mimeType, CLSID& clsid);

// The header of every picture transfer: width x height, 32 bits a pixel, rows bottom-up.
BITMAPINFO headerFor(int width, int height);

// Copies the display window's back buffer (the last picture drawn there) into dc.
void paintDisplayBackBuffer(HDC dc);
