#pragma once

#include "processes/ProcessUsage.h"

#include <QString>

#include <array>

namespace tidewell {

/// The first character of the name in upper case. Empty for an empty name.
[[nodiscard]] QString initialOf(const QString& name);

/// "PID 123".
[[nodiscard]] QString identifierText(const ProcessUsage& usage);

/// Texts of download rate, upload rate and total.
[[nodiscard]] std::array<QString, 3> figuresOf(const ProcessUsage& usage);

/// The process's share, limited to 0 to 1. NaN becomes 0.
[[nodiscard]] double shareOf(const ProcessUsage& usage);

/// The whole row as one sentence.
[[nodiscard]] QString spokenUsage(const ProcessUsage& usage);

} // namespace tidewell
