#include "platform/linux/process/LinuxHttpClient.h"
#include "platform/linux/process/SpawnedChild.h"
#include "support/LoopRunner.h"
#include "support/NetworkNamespace.h"
#include "support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <poll.h>

namespace tidewell::test {
namespace {

constexpr const char* url = "https://127.0.0.1:8443";

/// The helper against the test's server, in a network namespace of its own.
class PublicAddressTest : public testing::Test {
protected:
  void SetUp() override {
    network = NetworkNamespace::enter();
    if (!network) {
      GTEST_SKIP() << "this machine does not allow network namespaces";
    }
    EXPECT_TRUE(shell("ip link set lo up"));
    if (!makeCertificate("127.0.0.1") || !shell("python3 -c 'import ssl'")) {
      GTEST_SKIP() << "openssl or python3 is not installed";
    }
    ::setenv("SSL_CERT_FILE", (directory / "cert.pem").c_str(), 1);
    for (const char* proxy : {"https_proxy", "HTTPS_PROXY", "all_proxy", "ALL_PROXY"}) {
      ::unsetenv(proxy);
    }
  }
  void TearDown() override {
    server.reset();
    ::unsetenv("SSL_CERT_FILE");
  }

  bool makeCertificate(const std::string& address) {
    return shell("cd " + directory.path().string() +
                 " && openssl req -x509 -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes "
                 "-keyout key.pem -out cert.pem -days 2 -subj /CN=test -addext "
                 "subjectAltName=IP:" +
                 address);
  }
  void serve(const std::string& mode) {
    server = SpawnedChild::start(loop, "/usr/bin/env",
                                 {"python3", TIDEWELL_TESTS "/support/tlsServer.py",
                                  directory / "cert.pem", directory / "key.pem", mode,
                                  directory / "ready"},
                                 100.0);
    for (int wait = 0; wait < 1000 && !std::filesystem::exists(directory / "ready"); ++wait) {
      ::poll(nullptr, 0, 10);
    }
  }
  std::optional<std::string> get(const std::string& address = url, Seconds wait = 15.0) {
    return awaited(loop, client.get(address, wait));
  }
  double secondsOf(const auto& work) {
    const auto begin = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
  }

  std::unique_ptr<NetworkNamespace> network;
  TemporaryDirectory directory;
  EpollLoop loop;
  std::unique_ptr<SpawnedChild> server;
  LinuxHttpClient client{loop, TIDEWELL_PUBLIC_ADDRESS};
};

TEST_F(PublicAddressTest, PrintsTheBody) {
  serve("good");
  EXPECT_EQ(get(), "203.0.113.7\n");
}

TEST_F(PublicAddressTest, SaysWhoAsks) {
  serve("agent");
  EXPECT_TRUE(get().value_or("").starts_with("User-Agent: Tidewell/"));
}

TEST_F(PublicAddressTest, TakesAnEmptyBodyForABody) {
  serve("empty");
  EXPECT_EQ(get(), "");
}

TEST_F(PublicAddressTest, TakesAnyBodyWhateverTheStatus) {
  serve("html");
  EXPECT_EQ(get(), "<html>Log in</html>");
}

TEST_F(PublicAddressTest, FollowsNoRedirection) {
  serve("redirect");
  EXPECT_EQ(get(), "moved");
}

TEST_F(PublicAddressTest, TakesABodyOfFourKilobytesAndNoMore) {
  serve("longest");
  EXPECT_EQ(get().value_or("").size(), 4096U);
}

TEST_F(PublicAddressTest, RefusesALongerBody) {
  serve("toolong");
  EXPECT_EQ(get(), std::nullopt);
}

TEST_F(PublicAddressTest, RefusesABodyThatNeverEnds) {
  serve("flood");
  EXPECT_LT(secondsOf([&] { EXPECT_EQ(get(), std::nullopt); }), 2.5);
}

TEST_F(PublicAddressTest, RefusesABodyThatWasCutOff) {
  serve("cutoff");
  EXPECT_EQ(get(), std::nullopt);
}

TEST_F(PublicAddressTest, GivesUpAfterThreeSecondsOfDribble) {
  serve("slow");
  const double seconds = secondsOf([&] { EXPECT_EQ(get(), std::nullopt); });
  EXPECT_GT(seconds, 2.9);
  EXPECT_LT(seconds, 4.5);
}

TEST_F(PublicAddressTest, IsEndedWhenItsTimeIsOver) {
  serve("silent");
  const double seconds = secondsOf([&] { EXPECT_EQ(get(url, 0.5), std::nullopt); });
  EXPECT_GE(seconds, 0.5);
  EXPECT_LT(seconds, 1.5);
}

TEST_F(PublicAddressTest, ShowsNothingOfAnEndThatSaysNothing) {
  serve("nothing");
  EXPECT_EQ(get(), std::nullopt);
  EXPECT_EQ(get("https://127.0.0.1:9"), std::nullopt) << "nobody listens";
}

TEST_F(PublicAddressTest, TrustsNoCertificateOfAStranger) {
  serve("good");
  ::unsetenv("SSL_CERT_FILE");
  EXPECT_EQ(get(), std::nullopt);
}

TEST_F(PublicAddressTest, TrustsNoCertificateOfAnotherName) {
  ASSERT_TRUE(makeCertificate("127.0.0.2"));
  serve("good");
  EXPECT_EQ(get(), std::nullopt);
}

TEST_F(PublicAddressTest, SpeaksNothingButHttps) {
  writeInPlace(directory / "secret", "secret");
  const std::vector<std::string> addresses = {"file://" + (directory / "secret").string(),
                                              "http://127.0.0.1:8443",
                                              "ftp://x",
                                              "",
                                              "-v",
                                              "https://"};
  for (const std::string& address : addresses) {
    EXPECT_EQ(get(address), std::nullopt) << address;
  }
}

TEST_F(PublicAddressTest, UsesTheProxyOfTheEnvironment) {
  serve("good");
  ::setenv("https_proxy", "http://127.0.0.1:9", 1);
  EXPECT_EQ(get(), std::nullopt);
  ::unsetenv("https_proxy");
  EXPECT_EQ(get(), "203.0.113.7\n");
}

} // namespace
} // namespace tidewell::test
