// The display of a layout written field by field: the whole layout scaled to fit the
// writing area, its cells to write in blue, the field grid in grey and the field being
// written outlined in red. Composed into the simulation picture and painted as every
// layer redraw paints it.
#pragma once

#include "pattern/field_plan.h"

// writing: the index in plan.fields of the field being written, or -1 for none.
void showLayoutFields(const LayoutRaster& layout, const FieldPlan& plan, int writing);
