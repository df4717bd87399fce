#include "control/ResidentWatch.h"

#include <utility>

namespace tidewell {
namespace {

namespace face = residentInterface;

// Each returns a negative number if the message does not hold such a value.
template <class Value> int readValue(sd_bus_message& message, Value& value) {
  return sd_bus_message_read_basic(&message, face::typeCode<Value>, &value);
}
int readValue(sd_bus_message& message, bool& value) {
  int number = 0;
  const int result = sd_bus_message_read_basic(&message, 'b', &number);
  value = number != 0;
  return result;
}
int readValue(sd_bus_message& message, std::string& value) {
  const char* text = "";
  const int result = sd_bus_message_read_basic(&message, 's', &text);
  value = text;
  return result;
}

template <class Record> int readRecord(sd_bus_message& message, Record& record) {
  const auto read = [&](auto... field) {
    int result = 0;
    ((result = result < 0 ? result : readValue(message, record.*field)), ...);
    return result;
  };
  return std::apply(read, face::fieldsOf<Record>);
}

template <class Record> int readRecords(sd_bus_message& message, std::vector<Record>& records) {
  const std::string signature = face::signatureOf<Record>();
  records.clear();
  int result = sd_bus_message_enter_container(&message, 'a', ("(" + signature + ")").c_str());
  while (result >= 0) {
    result = sd_bus_message_enter_container(&message, 'r', signature.c_str());
    if (result <= 0) {
      break;
    }
    result = readRecord(message, records.emplace_back());
    if (result >= 0) {
      result = sd_bus_message_exit_container(&message);
    }
  }
  return result < 0 ? result : sd_bus_message_exit_container(&message);
}

template <class Value>
int readPlain(sd_bus_message& message, const std::string& name, ResidentValues& values) {
  Value value{};
  const int result = readValue(message, value);
  if (result >= 0) {
    values.plain.insert_or_assign(name, std::move(value));
  }
  return result;
}

/// Reads the contents of a variant, or skips them if no property is of this type.
int readProperty(sd_bus_message& message, const std::string& name, const std::string& type,
                 ResidentValues& values) {
  if (type == "b") {
    return readPlain<bool>(message, name, values);
  }
  if (type == "x") {
    return readPlain<std::int64_t>(message, name, values);
  }
  if (type == "d") {
    return readPlain<double>(message, name, values);
  }
  if (type == "s") {
    return readPlain<std::string>(message, name, values);
  }
  if (name == face::processes.name && type == face::listSignatureOf<ProcessUsage>()) {
    return readRecords(message, values.processes);
  }
  if (name == face::lastSpeedTest.name && type == face::listSignatureOf<SpeedTestResult>()) {
    return readRecords(message, values.lastSpeedTest);
  }
  return sd_bus_message_skip(&message, type.c_str());
}

int readEntry(sd_bus_message& message, ResidentValues& values) {
  std::string name;
  int result = readValue(message, name);
  const char* type = nullptr;
  if (result >= 0) {
    result = sd_bus_message_peek_type(&message, nullptr, &type);
  }
  if (result >= 0) {
    const std::string contents = type == nullptr ? "" : type;
    result = sd_bus_message_enter_container(&message, 'v', contents.c_str());
    result = result < 0 ? result : readProperty(message, name, contents, values);
    result = result < 0 ? result : sd_bus_message_exit_container(&message);
  }
  return result;
}

/// Reads properties with their values into `values`. False if the message is not of this form.
bool readProperties(sd_bus_message& message, ResidentValues& values) {
  int result = sd_bus_message_enter_container(&message, 'a', "{sv}");
  while (result >= 0) {
    result = sd_bus_message_enter_container(&message, 'e', "sv");
    if (result == 0) {
      return true;
    }
    result = result < 0 ? result : readEntry(message, values);
    result = result < 0 ? result : sd_bus_message_exit_container(&message);
  }
  return false;
}

std::string changesRule() {
  return std::string("type='signal',sender='") + face::name + "',path='" + face::path +
         "',interface='" + propertiesInterface + "',member='PropertiesChanged',arg0='" +
         face::name + "'";
}

} // namespace

ResidentWatch::ResidentWatch(sd_bus& bus, std::function<void()> changed)
    : m_bus(bus), m_changed(std::move(changed)),
      m_owners(watchOwner(bus, face::name, [this](auto* signal) { ownerChanged(signal); })),
      m_changes(watchSignal(bus, changesRule().c_str(),
                            [this](auto* signal) {
                              if (signal != nullptr) {
                                valuesChanged(*signal);
                              }
                            })),
      m_question(callMethod(
          bus, busDaemon, "GetNameOwner", [this](auto* reply) { ownerFound(reply); }, "s",
          face::name)) {}

void ResidentWatch::ask() {
  m_presence = Presence::unknown;
  m_question = withHandler([this](auto* reply) { valuesFound(reply); },
                           [this](auto** slot, auto callback, void* own) {
                             return sd_bus_call_method_async(
                                 &m_bus, slot, m_owner.c_str(), face::path, propertiesInterface,
                                 "GetAll", callback, own, "s", face::name);
                           });
}

void ResidentWatch::call(const char* method, std::function<void(bool isAnswered)> done) {
  m_call = withHandler([done = std::move(done)](auto* reply) { done(reply != nullptr); },
                       [&](auto** slot, auto callback, void* own) {
                         return sd_bus_call_method_async(&m_bus, slot, m_owner.c_str(), face::path,
                                                         face::name, method, callback, own, "");
                       });
}

void ResidentWatch::ownerFound(sd_bus_message* reply) {
  const char* owner = "";
  if (reply != nullptr) {
    sd_bus_message_read(reply, "s", &owner);
  }
  setOwner(owner);
}

void ResidentWatch::ownerChanged(sd_bus_message* signal) {
  const char* owner = "";
  if (signal != nullptr && sd_bus_message_read(signal, "sss", nullptr, nullptr, &owner) >= 0) {
    setOwner(owner);
  }
}

void ResidentWatch::setOwner(const char* owner) {
  m_owner = owner;
  m_question.reset();
  if (m_owner.empty()) {
    show(Presence::absent);
  } else {
    ask();
  }
}

void ResidentWatch::valuesFound(sd_bus_message* reply) {
  m_values = {};
  const bool isWhole = reply != nullptr && readProperties(*reply, m_values);
  show(isWhole ? Presence::present : Presence::silent);
}

void ResidentWatch::valuesChanged(sd_bus_message& signal) {
  const char* const sender = sd_bus_message_get_sender(&signal);
  if (sender == nullptr || m_owner != sender) {
    return;
  }
  if (m_presence == Presence::silent) {
    ask(); // it is alive again
  } else if (m_presence == Presence::present && sd_bus_message_skip(&signal, "s") >= 0 &&
             readProperties(signal, m_values)) {
    show(Presence::present);
  }
}

void ResidentWatch::show(Presence presence) {
  m_presence = presence;
  m_changed();
}

} // namespace tidewell
