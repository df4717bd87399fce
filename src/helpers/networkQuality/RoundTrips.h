#pragma once

#include "base/Scheduler.h"

#include <optional>
#include <vector>

namespace tidewell {

/// How long one request on a connection of its own took, in seconds.
struct ForeignProbe {
  double tcp = 0.0;  // to connect
  double tls = 0.0;  // one round trip of the encryption's handshake
  double http = 0.0; // from the request to the reply
};

/// How long round trips took in some span, in seconds.
struct RoundTripMeans {
  ForeignProbe foreign; // on connections of their own
  double self = 0.0;    // on the connections that load the line

  /// Round trips per minute: the mean of what both kinds reach.
  [[nodiscard]] double perMinute() const;
};

/// The probes of one direction, in the order in which they ended. Pure.
class RoundTrips {
public:
  void addForeign(Seconds now, const ForeignProbe& probe) { m_foreign.push_back({now, probe}); }
  void addSelf(Seconds now, double seconds) { m_self.push_back({now, seconds}); }

  /// Of the probes that ended at `begin` or later; none unless there are two of each kind.
  [[nodiscard]] std::optional<RoundTripMeans> since(Seconds begin) const;

private:
  template <class Probe> struct Ended {
    Seconds time;
    Probe probe;
  };

  std::vector<Ended<ForeignProbe>> m_foreign;
  std::vector<Ended<double>> m_self;
};

} // namespace tidewell
