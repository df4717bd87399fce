#pragma once

#include <string>

#include <fuzzer/FuzzedDataProvider.h>
#include <systemd/sd-bus.h>

namespace tidewell::fuzz {

/// A type signature, common or uncommon.
[[nodiscard]] std::string anySignature(FuzzedDataProvider& input);

/// Appends values of these types chosen by the input. Negative on failure.
int appendAny(sd_bus_message& message, std::string_view signature, FuzzedDataProvider& input);

} // namespace tidewell::fuzz
