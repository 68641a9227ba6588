// Numbers of a model by name, to compute with.
#pragma once

#include "tools/tuvo/Expression.h"
#include "tools/tuvo/model/Measure.h"
#include "tools/tuvo/model/Summary.h"

#include <string>
#include <vector>

namespace tool {

// "nodes" and "elements", their counts; "x", "y" and "z", the size of the box around all nodes; "volume" and "mass" of all
// solid elements; "STEEL E", a constant of a material. What is not known has no name.
Variables ModelValues(const Model& model, const SolidMeasures& solids);

// The table of expressions and their values. Throws Failure with what is wrong with an expression.
SummaryTable Evaluate(const std::vector<std::string>& expressions, const Variables& values);

}  // namespace tool
