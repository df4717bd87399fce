#include "AnyBody.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace tidewell::fuzz {

namespace {

constexpr std::string_view basicTypes = "ybnqiuxtdsogh";

/// The first complete type of a signature.
std::string_view firstType(std::string_view signature) {
  std::size_t size = std::min(signature.find_first_not_of('a'), signature.size() - 1) + 1;
  if (const char type = signature[size - 1]; type == '(' || type == '{') {
    for (int depth = 1; depth > 0 && size < signature.size(); ++size) {
      depth += signature[size] == '(' || signature[size] == '{' ? 1 : 0;
      depth -= signature[size] == ')' || signature[size] == '}' ? 1 : 0;
    }
  }
  return signature.substr(0, size);
}

/// A typical text, or any bytes without a zero.
std::string anyText(FuzzedDataProvider& input) {
  if (input.ConsumeBool()) {
    return input.PickValueInArray<const char*>(
        {"", "clicked", "hovered", "label", "enabled", "visible", "type", "sound", "body", ":1.7",
         ":1.1", "org.kde.StatusNotifierWatcher", "org.freedesktop.Notifications",
         "com.halden.Tidewell", "com.canonical.dbusmenu", "MenubarText", "Samples", "/MenuBar"});
  }
  std::string text = input.ConsumeRandomLengthString(24);
  std::erase(text, '\0');
  return text;
}

int appendBasic(sd_bus_message& message, char type, FuzzedDataProvider& input) {
  if (std::strchr("sog", type) != nullptr) {
    const std::string text = type == 'o' ? "/" : type == 'g' ? "u" : anyText(input);
    return sd_bus_message_append_basic(&message, type, text.c_str());
  }
  if (type == 'h') {
    const int output = 1;
    return sd_bus_message_append_basic(&message, type, &output);
  }
  // Wide enough for each type; rows and identifiers are small numbers.
  const std::uint64_t number = input.ConsumeBool()
                                   ? input.ConsumeIntegralInRange<std::uint64_t>(0, 16)
                                   : input.ConsumeIntegral<std::uint64_t>();
  const std::uint64_t value = type == 'b' ? number & 1U : number;
  return sd_bus_message_append_basic(&message, type, &value);
}

int appendContainer(sd_bus_message& message, std::string_view type, FuzzedDataProvider& input) {
  const char kind = type[0] == '(' ? 'r' : type[0] == '{' ? 'e' : type[0];
  const std::string contents = kind == 'v'   ? anySignature(input)
                               : kind == 'a' ? std::string(type.substr(1))
                                             : std::string(type.substr(1, type.size() - 2));
  int result = sd_bus_message_open_container(&message, kind, contents.c_str());
  const int count = kind == 'a' ? input.ConsumeIntegralInRange(0, 4) : 1;
  for (int element = 0; element < count && result >= 0; ++element) {
    result = appendAny(message, contents, input);
  }
  return result < 0 ? result : sd_bus_message_close_container(&message);
}

} // namespace

std::string anySignature(FuzzedDataProvider& input) {
  constexpr std::array<const char*, 12> usual = {"s",      "i",         "as",         "ai",
                                                 "a{sv}",  "a(iiay)",   "av",         "u",
                                                 "(isvu)", "a(dxxddd)", "(ia{sv}av)", "ay"};
  const auto choice = input.ConsumeIntegralInRange<std::size_t>(0, 2 * usual.size());
  return choice < usual.size() && input.remaining_bytes() > 0
             ? usual.at(choice)
             : std::string(1, basicTypes[choice % (basicTypes.size() - 1)]);
}

int appendAny(sd_bus_message& message, std::string_view signature, FuzzedDataProvider& input) {
  int result = 0;
  while (!signature.empty() && result >= 0) {
    const auto type = firstType(signature);
    result = basicTypes.find(type[0]) == std::string_view::npos
                 ? appendContainer(message, type, input)
                 : appendBasic(message, type[0], input);
    signature.remove_prefix(type.size());
  }
  return result;
}

} // namespace tidewell::fuzz
