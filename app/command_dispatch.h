// The main window's operator actions as the portable core sees them: WM_COMMAND ids,
// keys, the jog pad's mouse messages and the live-view timer. The Win32 window procedure
// only cracks messages and calls these; every command's behaviour lives behind them.
#pragma once

// Control and menu command ids of the main window (resources/resource.h holds the same
// numbers for the resource compiler).
void dispatchCommand(int id);

void onMainWindowCreated();  // after the controls exist: their first states
void onMainWindowDestroyed();
void onMainKeyDown(int virtualKey);
void onMainLeftButtonDown(int x, int y);  // main-window client pixels
void onMainLeftButtonUp();
void onMainTimer(int timerId);
