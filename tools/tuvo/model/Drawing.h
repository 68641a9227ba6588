// A picture of a model's outline as SVG, seen from above in an isometric view.
#pragma once

#include "tools/tuvo/model/Outline.h"

#include <string>

namespace tool {

// The rules of style that the picture and its legend need: "g0" to "g7" are the fills of the groups, "g0-0" to "g7-9"
// their shades from dark to light.
std::string DrawingStyles();

// The directions of x, y and z in the picture, as an <svg> element of its own.
std::string DrawAxes();

// An <svg> element; empty when nothing of the outline can be seen. Faces stand behind those that hide them. Its size does
// not depend on units: it is scaled to fit.
std::string DrawOutline(const Outline& outline);

}  // namespace tool
