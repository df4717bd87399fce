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

/// Asks for a small reply again and again, each time on a new connection.
class ForeignProber {
public:
  /// `onProbe` hears of every probe that was answered, and of the bytes that it took.
  ForeignProber(TransferLoop& loop, const Route& route, std::string address,
                std::function<void(const ForeignProbe&, double bytes)> onProbe);
  ForeignProber(const ForeignProber&) = delete;
  ForeignProber& operator=(const ForeignProber&) = delete;
  ~ForeignProber();

  /// Begins a probe, unless very many are under way.
  void probe();

  /// What all probes have moved.
  [[nodiscard]] TcpCounts counts() const;

private:
  struct Probe {
    Probe(const Route& route, const std::string& address, TcpTally& connectionTally)
        : tally(connectionTally), transfer(route, address) {
      tally.count(transfer.handle());
    }
    TcpTally& tally;
    Transfer transfer;
  };

  void ended(Probe* probe);
  void forgetClosed();

  const Route& m_route;
  std::string m_address;
  std::function<void(const ForeignProbe&, double bytes)> m_onProbe;
  TcpCounts m_closed; // without those in m_tallies
  // One per connection. The pool may take leave of a server long after a probe's end.
  std::vector<std::unique_ptr<TcpTally>> m_tallies;
  std::vector<std::unique_ptr<Probe>> m_probes;
  TransferPool m_pool; // goes first: it closes the connections that probes count
};

} // namespace tidewell
