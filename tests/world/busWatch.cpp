// Follows Tidewell on the session bus and writes one line of JSON per event, stamped on arrival:
//
//   {"at": 1700000000.123, "event": "watching"}                    from now on nothing is missed
//   {"at": ..., "event": "owner", "present": true}
//   {"at": ..., "event": "values", "values": {"MenubarText": "..."}}    all at first, then changes
//   {"at": ..., "event": "sample", "sample": [timestamp, down, up, latency, jitter, loss]}
//   {"at": ..., "event": "window", "window": "panel"}              one that somebody asked for
//
// Ends when the bus does.

#include "base/NumberText.h"

#include <array>
#include <charconv>
#include <cstdint>
#include <ctime>
#include <iostream>
#include <memory>
#include <string>
#include <string_view>

#include <systemd/sd-bus.h>

namespace {

constexpr const char* service = "com.halden.Tidewell";
constexpr const char* object = "/com/halden/Tidewell";

struct BusClose {
  void operator()(sd_bus* bus) const { sd_bus_flush_close_unref(bus); }
};
struct MessageRelease {
  void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
};
using Bus = std::unique_ptr<sd_bus, BusClose>;
using Message = std::unique_ptr<sd_bus_message, MessageRelease>;

std::string numberText(double value) {
  std::array<char, 64> text{};
  char* const end = std::to_chars(text.data(), text.data() + text.size(), value).ptr;
  return {text.data(), end};
}

std::string quoted(std::string_view text) {
  std::string json = "\"";
  for (const char character : text) {
    if (character == '"' || character == '\\') {
      json += '\\';
    }
    json += static_cast<unsigned char>(character) < 0x20 ? ' ' : character;
  }
  return json + '"';
}

void print(std::string_view event, std::string_view rest) {
  timespec now{};
  ::clock_gettime(CLOCK_REALTIME, &now);
  const double at = static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
  std::cout << R"({"at": )" << tidewell::fixedText(at, 6) << R"(, "event": )" << quoted(event)
            << rest << "}" << std::endl;
}

/// The variant at the read position as JSON, empty for types that are of no interest here.
std::string readVariant(sd_bus_message* message) {
  char type = 0;
  const char* contents = nullptr;
  std::string json;
  if (sd_bus_message_peek_type(message, &type, &contents) <= 0) {
    return json;
  }
  const std::string_view signature = contents;
  if (signature == "s") {
    const char* text = nullptr;
    sd_bus_message_read(message, "v", "s", &text);
    json = quoted(text);
  } else if (signature == "b") {
    int value = 0;
    sd_bus_message_read(message, "v", "b", &value);
    json = value != 0 ? "true" : "false";
  } else if (signature == "x") {
    std::int64_t value = 0;
    sd_bus_message_read(message, "v", "x", &value);
    json = std::to_string(value);
  } else if (signature == "d") {
    double value = 0.0;
    sd_bus_message_read(message, "v", "d", &value);
    json = numberText(value);
  } else {
    sd_bus_message_skip(message, "v");
  }
  return json;
}

/// Prints the a{sv} at the read position.
void printValues(sd_bus_message* message) {
  std::string values;
  sd_bus_message_enter_container(message, 'a', "{sv}");
  while (sd_bus_message_enter_container(message, 'e', "sv") > 0) {
    const char* name = nullptr;
    sd_bus_message_read(message, "s", &name);
    const std::string value = readVariant(message);
    if (!value.empty()) {
      values += (values.empty() ? "" : ", ") + quoted(name) + ": " + value;
    }
    sd_bus_message_exit_container(message);
  }
  sd_bus_message_exit_container(message);
  print("values", R"(, "values": {)" + values + "}");
}

void printAllValues(sd_bus* bus) {
  sd_bus_message* reply = nullptr;
  if (sd_bus_call_method(bus, service, object, "org.freedesktop.DBus.Properties", "GetAll", nullptr,
                         &reply, "s", service) >= 0) {
    const Message owned(reply);
    printValues(reply);
  }
}

int onSample(sd_bus_message* message, void* /*context*/, sd_bus_error* /*error*/) {
  double timestamp = 0.0;
  std::int64_t download = 0;
  std::int64_t upload = 0;
  double latency = 0.0;
  double jitter = 0.0;
  double loss = 0.0;
  if (sd_bus_message_read(message, "(dxxddd)", &timestamp, &download, &upload, &latency, &jitter,
                          &loss) >= 0 ||
      (sd_bus_message_rewind(message, 1) >= 0 &&
       sd_bus_message_read(message, "dxxddd", &timestamp, &download, &upload, &latency, &jitter,
                           &loss) >= 0)) {
    print("sample", R"(, "sample": [)" + numberText(timestamp) + ", " + std::to_string(download) +
                        ", " + std::to_string(upload) + ", " + numberText(latency) + ", " +
                        numberText(jitter) + ", " + numberText(loss) + "]");
  }
  return 0;
}

int onChange(sd_bus_message* message, void* /*context*/, sd_bus_error* /*error*/) {
  const char* interface = nullptr;
  sd_bus_message_read(message, "s", &interface);
  if (interface != nullptr && std::string_view(interface) == service) {
    printValues(message);
  }
  return 0;
}

int onWindow(sd_bus_message* message, void* /*context*/, sd_bus_error* /*error*/) {
  const char* window = "";
  sd_bus_message_read(message, "s", &window);
  print("window", R"(, "window": )" + quoted(window));
  return 0;
}

int onOwner(sd_bus_message* message, void* /*context*/, sd_bus_error* /*error*/) {
  const char* name = nullptr;
  const char* before = nullptr;
  const char* after = "";
  sd_bus_message_read(message, "sss", &name, &before, &after);
  const bool present = !std::string_view(after).empty();
  print("owner", present ? R"(, "present": true)" : R"(, "present": false)");
  if (present) {
    printAllValues(sd_bus_message_get_bus(message));
  }
  return 0;
}

bool subscribe(sd_bus* bus) {
  return sd_bus_match_signal(bus, nullptr, service, object, service, "SampleAdded", onSample,
                             nullptr) >= 0 &&
         sd_bus_match_signal(bus, nullptr, service, object, service, "WindowRequested", onWindow,
                             nullptr) >= 0 &&
         sd_bus_match_signal(bus, nullptr, service, object, "org.freedesktop.DBus.Properties",
                             "PropertiesChanged", onChange, nullptr) >= 0 &&
         sd_bus_add_match(bus, nullptr,
                          "type='signal',sender='org.freedesktop.DBus',member='NameOwnerChanged',"
                          "arg0='com.halden.Tidewell'",
                          onOwner, nullptr) >= 0;
}

} // namespace

int main() {
  sd_bus* opened = nullptr;
  if (sd_bus_open_user(&opened) < 0) {
    std::cerr << "busWatch: no session bus\n";
    return 1;
  }
  const Bus bus(opened);
  if (!subscribe(bus.get())) {
    std::cerr << "busWatch: the bus refuses to be watched\n";
    return 1;
  }
  print("watching", "");
  if (sd_bus_get_name_creds(bus.get(), service, 0, nullptr) >= 0) {
    print("owner", R"(, "present": true)");
    printAllValues(bus.get());
  }
  while (true) {
    const int handled = sd_bus_process(bus.get(), nullptr);
    if (handled < 0 || (handled == 0 && sd_bus_wait(bus.get(), UINT64_MAX) < 0)) {
      return 0;
    }
  }
}
