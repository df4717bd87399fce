#pragma once

#include "processes/ProcessUsage.h"

#include <QString>

#include <array>

namespace tidewell {

/// The first character of a name, in upper case; nothing for an empty one.
[[nodiscard]] QString initialOf(const QString& name);

/// "PID 123".
[[nodiscard]] QString identifierText(const ProcessUsage& usage);

/// Texts of download rate, upload rate and total.
[[nodiscard]] std::array<QString, 3> figuresOf(const ProcessUsage& usage);

/// The program's share from 0 to 1, also when it is delivered as something else.
[[nodiscard]] double shareOf(const ProcessUsage& usage);

/// All of it as one sentence.
[[nodiscard]] QString spokenUsage(const ProcessUsage& usage);

} // namespace tidewell
