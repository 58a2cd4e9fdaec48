#pragma once

#include "base/app_context.h"

namespace mact {

/// What the program does before it shows anything: finishes a restore that was cut off (data_swap.h), creates
/// the material-type table, and the data folder for it, if the table is missing, and makes the remembered
/// company current. A Failure must stop the program.
Done StartUp(AppContext& app);
} // namespace mact
