// Stage motion: waited single-axis and XY moves. Placeholder until the link lands.
#pragma once

// Straight XY move at speed um/s, waited; the position model ends at the target.
int MoveXY(double xUm, double yUm, double speedUmPerS);
