#include "helpers/networkQuality/TestServer.h"
#include "helpers/networkQuality/HttpsAddress.h"

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
}

TEST(TestServer, MayHaveTheNamesOfEarlierDocuments) {
  EXPECT_EQ(parseServerDocument(R"({"version":1,"urls":{
    "large_https_download_url":"https://a.example/large",
    "small_https_download_url":"https://a.example/small",
    "https_upload_url":"https://a.example/up"}})"),
            server);
}

TEST(TestServer, PrefersThePresentNames) {
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

TEST(TestServer, TakesNoNoticeOfUnknownKeys) {
  EXPECT_EQ(parseServerDocument(changed("{", R"({"future":[{"x":[1,2,{}]}],)")), server);
}

TEST(TestServer, OfAnotherVersionIsNone) {
  for (const char* version : {"2", "0", "\"1\"", "null", "[1]", "{}"}) {
    EXPECT_EQ(parseServerDocument(changed("1", version)), std::nullopt) << version;
  }
  EXPECT_EQ(parseServerDocument("{" + urls + "}"), std::nullopt);
}

TEST(TestServer, IsNoneUnlessAllAddressesAreOfOneHttpsHost) {
  EXPECT_EQ(parseServerDocument(changed("a.example/small", "b.example/small")), std::nullopt);
  EXPECT_EQ(parseServerDocument(changed("a.example/up", "a.example:444/up")), std::nullopt);
  EXPECT_EQ(parseServerDocument(changed("https://a.example/up", "http://a.example/up")),
            std::nullopt);
  EXPECT_EQ(parseServerDocument(changed("https://a.example/large", "file:///dev/zero")),
            std::nullopt);
  EXPECT_EQ(parseServerDocument(changed("\"https://a.example/up\"", "5")), std::nullopt);
  EXPECT_EQ(parseServerDocument(changed("\"upload_url\"", "\"x\"")), std::nullopt);
}

TEST(TestServer, IsNoneOfHostileBytes) {
  const std::string deep(60'000, '[');
  const std::string good = R"({"version":1,)" + urls + "}";
  for (const std::string& text :
       {std::string(), std::string("null"), std::string("[]"), std::string("{}"), std::string("1"),
        deep, std::string("\xff\xfe"), good + "x", good.substr(0, good.size() - 1),
        std::string("{\"version\":1,\"urls\":[]}"), std::string("{\"version\":1,\"urls\":null}"),
        std::string("{\"version\":1e999}"), std::string(1, '\0')}) {
    EXPECT_EQ(parseServerDocument(text), std::nullopt) << text.substr(0, 40);
  }
  EXPECT_EQ(parseServerDocument(good + std::string(70'000, ' ')), std::nullopt);
  EXPECT_EQ(parseServerDocument(changed("/large", "/\xff")), std::nullopt);
  EXPECT_EQ(parseServerDocument(changed("/large", "/\\u0000")), std::nullopt);
}

} // namespace
} // namespace tidewell::test
