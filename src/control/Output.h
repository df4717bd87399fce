#pragma once

#include <cstddef>
#include <string_view>

namespace tidewell {

/// The result of writing to standard output.
enum class Written { whole, readerGone, failed };

/// Writes a text to standard output at once, without a buffer. `errno` says why it failed.
[[nodiscard]] Written writeOutput(std::string_view text);

/// Writes "tidewellctl: TEXT" as a line to standard error.
void complain(std::string_view text);

/// The width of the terminal behind a file descriptor in columns; 0 if it is none.
[[nodiscard]] std::size_t terminalColumns(int descriptor);

/// Shows a short text at the terminal behind standard error in place of the last one. Does nothing
/// if standard error is no terminal.
void showProgress(std::string_view text);

} // namespace tidewell
