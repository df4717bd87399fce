// Anything published under the resident's name, received by the toolkit's bus library into the
// windows' mirror. Sizes are limited, and texts are safe for labels.

#include "ui/mirror/ResidentMirror.h"
#include "support/PrivateBus.h"
#include "support/Require.h"
#include "ui/charts/Curves.h"
#include "ui/charts/ThroughputFigures.h"
#include "ui/components/ShownText.h"
#include "ui/processes/ProcessTexts.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusVirtualObject>

#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

struct AnySample {
  double time = 0.0;
  qlonglong download = 0;
  qlonglong upload = 0;
  double latency = 0.0;
};
struct AnyProcess {
  int id = 0;
  QString name;
  qlonglong bytes = 0;
  double share = 0.0;
};
struct AnyTest {
  double time = 0.0;
  double speed = 0.0;
  qlonglong responsiveness = 0;
};
Q_DECLARE_METATYPE(AnySample)
Q_DECLARE_METATYPE(AnyProcess)
Q_DECLARE_METATYPE(AnyTest)

QDBusArgument& operator<<(QDBusArgument& to, const AnySample& sample) {
  to.beginStructure();
  to << sample.time << sample.download << sample.upload << sample.latency << 0.5 << 1.0;
  to.endStructure();
  return to;
}
QDBusArgument& operator<<(QDBusArgument& to, const AnyProcess& process) {
  to.beginStructure();
  to << process.id << process.name << process.bytes << process.bytes << process.bytes
     << process.share;
  to.endStructure();
  return to;
}
QDBusArgument& operator<<(QDBusArgument& to, const AnyTest& test) {
  to.beginStructure();
  to << test.time << test.speed << test.speed << test.responsiveness;
  to.endStructure();
  return to;
}
// The library also requires readers; they read nothing.
const QDBusArgument& operator>>(const QDBusArgument& from, AnySample& /*sample*/) { return from; }
const QDBusArgument& operator>>(const QDBusArgument& from, AnyProcess& /*process*/) { return from; }
const QDBusArgument& operator>>(const QDBusArgument& from, AnyTest& /*test*/) { return from; }

namespace {

using namespace tidewell;
using fuzz::require;

/// Keeps the last values from the bus.
class Receiver final : public QDBusVirtualObject {
public:
  [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override {
    values = qdbus_cast<QVariantMap>(message.arguments().value(0));
    return bus.send(message.createReply());
  }

  QVariantMap values;
};

/// A toolkit application on a private bus.
struct Desk {
  Desk() {
    require(daemon.isThere() && bus.isConnected());
    qDBusRegisterMetaType<AnySample>();
    qDBusRegisterMetaType<QList<AnySample>>();
    qDBusRegisterMetaType<AnyProcess>();
    qDBusRegisterMetaType<QList<AnyProcess>>();
    qDBusRegisterMetaType<AnyTest>();
    qDBusRegisterMetaType<QList<AnyTest>>();
    require(bus.registerVirtualObject(QStringLiteral("/"), &receiver));
  }

  /// The values after marshalling into a message and back.
  QVariantMap sent(const QVariantMap& values) {
    auto message =
        QDBusMessage::createMethodCall(bus.baseService(), QStringLiteral("/"),
                                       QStringLiteral("org.example.Any"), QStringLiteral("Take"));
    message.setArguments({QVariant(values)});
    receiver.values.clear();
    // A call to the process itself is answered at once, without the bus.
    bus.call(message);
    require(receiver.values.size() == values.size());
    return receiver.values;
  }

  int count = 1;
  char name[5] = "fuzz";
  char* arguments[2] = {name, nullptr};
  QCoreApplication application{count, arguments};
  test::PrivateBus daemon;
  QDBusConnection bus = QDBusConnection::connectToBus(QString::fromStdString(daemon.address()),
                                                      QStringLiteral("fuzz"));
  Receiver receiver;
  QDBusConnection none{QStringLiteral("none")};
};

QString anyText(FuzzedDataProvider& input) {
  const std::string bytes = input.ConsumeRandomLengthString(32);
  return input.ConsumeBool() ? QString::fromStdString(bytes)
                             : QString::fromUtf16(reinterpret_cast<const char16_t*>(bytes.data()),
                                                  static_cast<qsizetype>(bytes.size() / 2));
}

template <class Element, class Make> QVariant anyList(FuzzedDataProvider& input, Make&& make) {
  QList<Element> list;
  const int most = input.PickValueInArray({0, 1, 2, 12, 310});
  for (int index = 0; index < most; ++index) {
    list.push_back(make());
  }
  return QVariant::fromValue(list);
}

/// The types that the resident publishes, and some that it does not.
enum Kind { truth, number, real, text, samples, processes, tests, texts, mixture, kinds };

QVariant anyValue(Kind kind, FuzzedDataProvider& input) {
  const auto anyNumber = [&] { return input.ConsumeIntegral<qlonglong>(); };
  const auto anyReal = [&] {
    return input.ConsumeBool() ? input.ConsumeFloatingPoint<double>()
                               : input.PickValueInArray({0.0, -1.0, 0.5, HUGE_VAL, std::nan("")});
  };
  switch (kind) {
  case truth:
    return input.ConsumeBool();
  case number:
    return anyNumber();
  case real:
    return anyReal();
  case samples:
    return anyList<AnySample>(input, [&] {
      return AnySample{anyReal(), anyNumber(), anyNumber(), anyReal()};
    });
  case processes:
    return anyList<AnyProcess>(input, [&] {
      return AnyProcess{input.ConsumeIntegral<int>(), anyText(input), anyNumber(), anyReal()};
    });
  case tests:
    return anyList<AnyTest>(input, [&] { return AnyTest{anyReal(), anyReal(), anyNumber()}; });
  case texts:
    return QStringList{anyText(input)};
  case mixture:
    return QVariantList{anyNumber(), anyText(input)};
  default:
    return anyText(input);
  }
}

constexpr std::array<std::pair<const char*, Kind>, 17> published = {{
    {"IsConnected", truth},
    {"MenubarText", text},
    {"DownloadBytesPerSec", number},
    {"UploadBytesPerSec", number},
    {"LatencyMs", real},
    {"JitterMs", real},
    {"PacketLossPercent", real},
    {"Samples", samples},
    {"InterfaceType", text},
    {"NetworkName", text},
    {"InterfaceName", text},
    {"IpAddress", text},
    {"PublicIp", text},
    {"Dns", text},
    {"Processes", processes},
    {"LastSpeedTest", tests},
    {"SpeedTestIsRunning", truth},
}};

QVariantMap anyValues(FuzzedDataProvider& input) {
  QVariantMap values;
  for (int entry = 0; entry < 6 && input.remaining_bytes() > 0; ++entry) {
    const auto [name, usual] = input.PickValueInArray(published);
    const bool isUsual = input.ConsumeIntegralInRange(0, 3) != 0;
    const auto kind =
        isUsual ? usual : static_cast<Kind>(input.ConsumeIntegralInRange<int>(0, kinds - 1));
    values.insert(QString::fromLatin1(name), anyValue(kind, input));
  }
  return values;
}

QDBusMessage anySample(FuzzedDataProvider& input) {
  auto signal = QDBusMessage::createSignal(QStringLiteral("/"), QStringLiteral("org.example.Any"),
                                           QStringLiteral("Any"));
  const bool isUsual = input.ConsumeBool();
  QVariantList arguments = {1.0, input.ConsumeIntegral<qlonglong>(), qlonglong{0}, 0.0, 0.0, 0.0};
  if (!isUsual) {
    arguments[input.ConsumeIntegralInRange(0, 5)] =
        anyValue(static_cast<Kind>(input.ConsumeIntegralInRange<int>(0, kinds - 1)), input);
  }
  signal.setArguments(arguments);
  return signal;
}

void checkShown(const QString& text) { fuzz::requireShowable(text.toStdString()); }

void check(const ResidentState& state) {
  const SnapshotList& samples = state.sampler.snapshots.get();
  require(samples.size() <= 300);
  checkShown(graphSummary(samples));
  const QRectF plot(0.0, 0.0, 300.0, 80.0);
  const GraphCurves curves(samples, plot);
  for (const QPointF& point : curves.download) {
    require(std::isfinite(point.x()) && point.y() >= -0.01 && point.y() <= 80.01);
  }
  require(state.tracker.processes.get().size() <= 10);
  for (const ProcessUsage& process : state.tracker.processes.get()) {
    checkShown(spokenUsage(process));
    checkShown(initialOf(shownText(process.name)));
    require(shareOf(process) >= 0.0 && shareOf(process) <= 1.0);
  }
  const ConnectionInfo& info = state.monitor.connectionInfo.get();
  for (const auto& text : {info.networkName, info.interfaceName, info.publicIP, info.dns}) {
    checkShown(shownText(text));
  }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static Desk desk;
  FuzzedDataProvider input(data, size);
  ResidentMirror mirror(desk.none);
  for (int step = 0; step < 4 && input.remaining_bytes() > 0; ++step) {
    const QVariantMap values = anyValues(input);
    mirror.setAll(desk.sent(values));
    const auto sent = values.value(QStringLiteral("Samples"));
    if (sent.metaType() == QMetaType::fromType<QList<AnySample>>()) {
      require(mirror.state().sampler.snapshots.get().size() ==
              std::min<std::size_t>(
                  300, static_cast<std::size_t>(sent.value<QList<AnySample>>().size())));
    }
    check(mirror.state());
    mirror.sampleAdded(anySample(input));
    check(mirror.state());
  }
  return 0;
}
