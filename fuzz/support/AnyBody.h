#pragma once

#include <string>

#include <fuzzer/FuzzedDataProvider.h>
#include <systemd/sd-bus.h>

namespace tidewell::fuzz {

/// A type signature, one that occurs on desktops or one that does not.
[[nodiscard]] std::string anySignature(FuzzedDataProvider& input);

/// Appends values of these types that the input chooses; negative when it cannot be.
int appendAny(sd_bus_message& message, std::string_view signature, FuzzedDataProvider& input);

} // namespace tidewell::fuzz
