#include "genicam/nodes/formula_watch.h"

namespace GenICam {

formula_watch* present_formula_watch = nullptr;

}  // namespace GenICam
