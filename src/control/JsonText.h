#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tidewell {

/// JSON texts of values (RFC 8259), independent of the locale. Bytes that are not valid UTF-8
/// become U+FFFD; numbers that are not finite become null.
[[nodiscard]] std::string jsonText(bool value);
[[nodiscard]] std::string jsonText(std::int64_t value);
[[nodiscard]] std::string jsonText(double value);
[[nodiscard]] std::string jsonText(std::string_view text);
/// Without it, a literal would become a bool.
[[nodiscard]] std::string jsonText(const char* text);

/// Builds a JSON object on one line.
class JsonObject {
public:
  template <class Value> JsonObject& add(std::string_view name, const Value& value) {
    m_text += m_text.empty() ? "{" : ",";
    m_text += jsonText(name) + ":" + jsonText(value);
    return *this;
  }
  [[nodiscard]] std::string text() const { return m_text.empty() ? "{}" : m_text + "}"; }

private:
  std::string m_text;
};

} // namespace tidewell
