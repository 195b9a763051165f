// Raster writing: the target pattern written cluster by cluster in serpentine strokes,
// fine in the centre and coarse outside. Called by the "Start Writing" run.
#pragma once

void StartRasterWriting();
