#pragma once

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <unistd.h>

namespace tidewell::test {

/// Prevents the process from opening file descriptors (EMFILE) while it lives.
class ScarceDescriptors {
public:
  ScarceDescriptors() {
    EXPECT_EQ(::getrlimit(RLIMIT_NOFILE, &m_usual), 0);
    // The limit is the lowest free number, so no number below it is free.
    const int lowest = ::dup(STDIN_FILENO);
    ::close(lowest);
    const rlimit scarce{static_cast<rlim_t>(lowest), m_usual.rlim_max};
    EXPECT_EQ(::setrlimit(RLIMIT_NOFILE, &scarce), 0);
    EXPECT_LT(::dup(STDIN_FILENO), 0);
  }
  ScarceDescriptors(ScarceDescriptors&&) = delete;
  ~ScarceDescriptors() { EXPECT_EQ(::setrlimit(RLIMIT_NOFILE, &m_usual), 0); }

private:
  rlimit m_usual{};
};

} // namespace tidewell::test
