#pragma once

#include "base/Scheduler.h"

#include <optional>
#include <vector>

namespace tidewell {

/// How long a request on a new connection took, in seconds.
struct ForeignProbe {
  double tcp = 0.0;  // to connect
  double tls = 0.0;  // one round trip of the TLS handshake
  double http = 0.0; // from the request to the reply
};

/// Mean round trips, in seconds.
struct RoundTripMeans {
  ForeignProbe foreign; // on new connections
  double self = 0.0;    // on the connections that load the line

  /// Round trips per minute: the mean of both kinds.
  [[nodiscard]] double perMinute() const;
};

/// The probes of one direction, in the order in which they ended. Pure.
class RoundTrips {
public:
  void addForeign(Seconds now, const ForeignProbe& probe) { m_foreign.push_back({now, probe}); }
  void addSelf(Seconds now, double seconds) { m_self.push_back({now, seconds}); }

  /// The means of the probes that ended at `begin` or later; nullopt unless there are two of each
  /// kind.
  [[nodiscard]] std::optional<RoundTripMeans> since(Seconds begin) const;

private:
  template <class Probe> struct Ended {
    Seconds time;
    Probe probe;
  };

  std::vector<Ended<ForeignProbe>> m_foreign;
  std::vector<Ended<double>> m_self;
};

/// The interval between pairs of probes: at most 20 pairs a second, three in a round trip, and five
/// percent of what the line carries. Pure.
class ProbePace {
public:
  /// Adds the round trip of a foreign probe and the bytes that it moved both ways.
  void addProbe(Seconds roundTrip, double bytes);

  /// The interval on a line of this goodput; days if it moves nothing.
  [[nodiscard]] Seconds interval(double bytesPerSecond) const;

private:
  double m_costs = 0.0;
  double m_probes = 0.0;
  Seconds m_roundTrip = 0.0; // the latest
};

} // namespace tidewell
