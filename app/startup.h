#pragma once

#include "base/app_context.h"

namespace mact {

/// What the program does before it shows anything: creates the data folder and the material-type table where
/// the table is missing, and makes the remembered company current. A Failure stops the program.
Done StartUp(AppContext& app);
} // namespace mact
