#pragma once

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <unistd.h>

namespace tidewell::test {

/// Lets the process open no further file descriptors (EMFILE) while it lives.
class ScarceDescriptors {
public:
  ScarceDescriptors() {
    EXPECT_EQ(::getrlimit(RLIMIT_NOFILE, &m_usual), 0);
    // The lowest free number is the first that is not given out any more; there are none below.
    const int lowest = ::dup(STDIN_FILENO);
    ::close(lowest);
    const rlimit scarce{static_cast<rlim_t>(lowest), m_usual.rlim_max};
    EXPECT_EQ(::setrlimit(RLIMIT_NOFILE, &scarce), 0);
    EXPECT_LT(::dup(STDIN_FILENO), 0);
  }
  ScarceDescriptors(const ScarceDescriptors&) = delete;
  ScarceDescriptors& operator=(const ScarceDescriptors&) = delete;
  ~ScarceDescriptors() { EXPECT_EQ(::setrlimit(RLIMIT_NOFILE, &m_usual), 0); }

private:
  rlimit m_usual{};
};

} // namespace tidewell::test
