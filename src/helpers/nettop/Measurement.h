#pragma once

#include "helpers/nettop/ProcessTraffic.h"

#include <string>
#include <vector>

namespace tidewell::nettop {

/// What a route measured, or why it could not.
struct Measurement {
  std::vector<ProcessTraffic> rows; // in no order
  std::string error;                // for people; empty where there is none
};

} // namespace tidewell::nettop
