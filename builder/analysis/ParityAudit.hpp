#pragma once

// What the generated runtime does natively and what stays partial: one fixed table.

#include <ostream>

namespace tindrel {

void printParityAudit(std::ostream& out);

}  // namespace tindrel
