#pragma once

#include "helpers/networkQuality/RoundTrips.h"
#include "helpers/networkQuality/TcpTally.h"
#include "helpers/networkQuality/Transfer.h"
#include "helpers/networkQuality/TransferLoop.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace tidewell {

/// Requests a small reply again and again, each time on a new connection.
class ForeignProber {
public:
  /// Calls `onProbe` for every answered probe, with the bytes that it took.
  ForeignProber(TransferLoop& loop, const Destination& destination, std::string address,
                std::function<void(const ForeignProbe&, double bytes)> onProbe);
  ~ForeignProber();

  /// Begins a probe unless 32 are under way.
  void probe();

  /// What all probes have moved.
  [[nodiscard]] TcpCounts counts() const;

private:
  struct Probe {
    Probe(const Destination& destination, const std::string& address, TcpTally& connectionTally)
        : tally(connectionTally), transfer(destination, address) {
      tally.count(transfer.handle());
    }
    TcpTally& tally;
    Transfer transfer;
  };

  void ended(Probe* probe);
  void forgetClosed();

  const Destination& m_destination;
  std::string m_address;
  std::function<void(const ForeignProbe&, double bytes)> m_onProbe;
  TcpCounts m_closed; // without those in m_tallies
  // One per connection. The pool may close a connection long after the probe's end.
  std::vector<std::unique_ptr<TcpTally>> m_tallies;
  std::vector<std::unique_ptr<Probe>> m_probes;
  TransferPool m_pool; // destroyed first, because it closes the connections that probes count
};

} // namespace tidewell
