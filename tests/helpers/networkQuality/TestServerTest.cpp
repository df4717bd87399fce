#include "helpers/networkQuality/TestServer.h"

#include <gtest/gtest.h>

#include <string>

namespace tidewell::test {
namespace {

const std::string urls = R"("urls":{"large_download_url":"https://a.example/large",)"
                         R"("small_download_url":"https://a.example/small",)"
                         R"("upload_url":"https://a.example/up"})";

const TestServer server{"https://a.example/large", "https://a.example/small",
                        "https://a.example/up", ""};

std::string changed(const std::string& from, const std::string& to) {
  std::string text = R"({"version":1,)" + urls + "}";
  const auto at = text.find(from);
  EXPECT_NE(at, std::string::npos) << from;
  return text.replace(at, from.size(), to);
}

TEST(TestServer, IsHttpsByDefaultAndOneHost) {
  const TestServer usual = defaultServer();
  EXPECT_TRUE(httpsHost(usual.largeDownload));
  EXPECT_EQ(httpsHost(usual.largeDownload), httpsHost(usual.smallDownload));
  EXPECT_EQ(httpsHost(usual.largeDownload), httpsHost(usual.upload));
  EXPECT_EQ(usual.endpoint, "");
}

TEST(TestServer, IsReadFromADocument) {
  EXPECT_EQ(parseServerDocument(R"({"version":1,)" + urls + "}"), server);
  EXPECT_EQ(parseServerDocument(" \n" + urls + "\n"), std::nullopt);
  EXPECT_EQ(parseServerDocument(changed("{", R"({"future":[{"x":[1,2,{}]}],)")), server);
}

TEST(TestServer, MayHaveTheNamesOfEarlierDocuments) {
  EXPECT_EQ(parseServerDocument(R"({"version":1,"urls":{
    "large_https_download_url":"https://a.example/large",
    "small_https_download_url":"https://a.example/small",
    "https_upload_url":"https://a.example/up"}})"),
            server);
  EXPECT_EQ(parseServerDocument(changed(
                R"("urls":{)", R"("urls":{"large_https_download_url":"https://b.example/old",)")),
            server);
}

TEST(TestServer, OfADocumentMayNameAnEndpoint) {
  TestServer other = server;
  other.endpoint = "b.example";
  EXPECT_EQ(parseServerDocument(changed("{", R"({"test_endpoint":"b.example",)")), other);
  EXPECT_EQ(parseServerDocument(changed("{", R"({"test_endpoint":null,)")), server);
  EXPECT_EQ(parseServerDocument(changed("{", R"({"test_endpoint":"",)")), server);
  for (const char* bad : {"7", "\"a b\"", "\"b.example:1:c:2\"", "\"\\u0000\"", "[]"}) {
    EXPECT_EQ(parseServerDocument(changed("{", std::string(R"({"test_endpoint":)") + bad + ",")),
              std::nullopt)
        << bad;
  }
}

TEST(TestServer, OfAnotherVersionIsNone) {
  for (const char* version : {"2", "0", "\"1\"", "null", "[1]", "{}"}) {
    EXPECT_EQ(parseServerDocument(changed("1", version)), std::nullopt) << version;
  }
  EXPECT_EQ(parseServerDocument("{" + urls + "}"), std::nullopt);
}

TEST(TestServer, IsNoneUnlessAllAddressesAreOfOneHttpsHost) {
  for (const auto& [from, to] : std::initializer_list<std::pair<const char*, const char*>>{
           {"a.example/small", "b.example/small"},
           {"a.example/up", "a.example:444/up"},
           {"https://a.example/up", "http://a.example/up"},
           {"https://a.example/large", "file:///dev/zero"},
           {"\"https://a.example/up\"", "5"},
           {"\"upload_url\"", "\"x\""}}) {
    EXPECT_EQ(parseServerDocument(changed(from, to)), std::nullopt) << to;
  }
}

TEST(TestServer, IsNoneOfHostileBytes) {
  const std::string deep(60'000, '[');
  const std::string good = R"({"version":1,)" + urls + "}";
  for (const std::string& text : std::vector<std::string>{
           "", "null", "[]", "{}", "1", deep, "\xff\xfe", good + "x",
           good.substr(0, good.size() - 1), R"({"version":1,"urls":[]})",
           R"({"version":1,"urls":null})", R"({"version":1e999})", std::string(1, '\0')}) {
    EXPECT_EQ(parseServerDocument(text), std::nullopt) << text.substr(0, 40);
  }
  EXPECT_EQ(parseServerDocument(good + std::string(70'000, ' ')), std::nullopt);
  EXPECT_EQ(parseServerDocument(changed("/large", "/\xff")), std::nullopt);
  EXPECT_EQ(parseServerDocument(changed("/large", "/\\u0000")), std::nullopt);
}

TEST(HttpsAddress, NamesItsHostAndPort) {
  EXPECT_EQ(httpsHost("https://a.example"), "a.example");
  EXPECT_EQ(httpsHost("https://a.example/path?x=1:2"), "a.example");
  EXPECT_EQ(httpsHost("https://A.Example:8443/"), "a.example:8443");
  EXPECT_EQ(httpsHost("https://a.example:443/"), "a.example");
  EXPECT_EQ(httpsHost("https://192.0.2.1?x"), "192.0.2.1");
  EXPECT_EQ(httpsHost("https://[2001:db8::1]/x"), "[2001:db8::1]");
  EXPECT_EQ(httpsHost("https://[2001:db8::1]:44/x"), "[2001:db8::1]:44");
}

TEST(HttpsAddress, IsNothingElse) {
  for (const std::string text :
       {"", "http://a.example/", "file:///etc/passwd", "HTTPS://a", "a.example", "-v"}) {
    EXPECT_EQ(httpsHost(text), std::nullopt) << text;
  }
  for (const std::string rest : {"",
                                 "/path",
                                 "user@a.example/",
                                 "user:word@a.example/",
                                 "a.example:/",
                                 "a.example:0/",
                                 "a.example:65536/",
                                 "a.example:+5/",
                                 "a.example:5x/",
                                 "a.exa mple/",
                                 "a.example/\n",
                                 "a.example/\x7f",
                                 "a.example/\xc3\xa4",
                                 "-a.example/",
                                 "[/",
                                 "[]/",
                                 "[::1",
                                 "]/",
                                 "a\\b",
                                 "a%2eb/"}) {
    EXPECT_EQ(httpsHost("https://" + rest), std::nullopt) << rest;
  }
  const std::string start = "https://a.example/";
  EXPECT_TRUE(httpsHost(start + std::string(2000 - start.size(), 'x')));
  EXPECT_FALSE(httpsHost(start + std::string(2001 - start.size(), 'x')));
}

TEST(ServerSettings, HoldTheAddressInTheFirstLineThatSaysSomething) {
  const std::string bytes("\0\xff\n", 3);
  EXPECT_EQ(addressInSettings("https://a.example/config"), "https://a.example/config");
  EXPECT_EQ(addressInSettings("# of our provider\r\n\n \t https://a.example/ \r\nhttps://b\n"),
            "https://a.example/");
  EXPECT_EQ(addressInSettings(""), "");
  EXPECT_EQ(addressInSettings("\n\n# https://a.example\n   \t\n"), "");
  EXPECT_EQ(addressInSettings(bytes), bytes.substr(0, 2));
}

} // namespace
} // namespace tidewell::test
