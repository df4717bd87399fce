// Any bytes as a message between the resident and the windows' process. What parses is written
// again with the same meaning.

#include "support/Require.h"
#include "windowRequests/WindowRequest.h"

#include <algorithm>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using tidewell::fuzz::require;
  const auto text = tidewell::fuzz::textOf(data, size).substr(0, tidewell::longestWindowMessage);
  if (const auto request = tidewell::parseWindowRequest(text)) {
    require(std::ranges::all_of(request->token, [](char c) { return c > ' ' && c <= '~'; }));
    require(!request->point || request->text.empty());
    const std::string message = tidewell::messageOf(*request);
    require(message.size() <= tidewell::longestWindowMessage);
    require(tidewell::parseWindowRequest(message) == request);
  }
  if (const auto report = tidewell::parseWindowReport(text)) {
    require(tidewell::parseWindowReport(tidewell::messageOf(*report)) == report);
  }
  // Text to copy arrives unchanged, up to the longest message.
  const tidewell::WindowRequest copy{
      tidewell::WindowRequest::Kind::copy, std::string(text), {}, std::string(text)};
  const auto arrived = tidewell::parseWindowRequest(tidewell::messageOf(copy));
  require(arrived && text.starts_with(arrived->text));
  return 0;
}
