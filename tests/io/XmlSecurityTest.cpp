// Hostile documents that try to make the reader fetch or expand something: external
// entities naming a local file or a URL, parameter entities, external DTDs, schema
// locations on the network and entity expansion bombs. Every DOCTYPE is refused before
// any of its declarations is processed, and nothing is ever fetched: a listening socket
// on 127.0.0.1 checks that no connection is attempted.
#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <fstream>
#include <string>

#include "icore/QVXMsgCatalog.h"
#include "io/SerializationUtils.h"
#include "tests/io/XMLDocumentSupport.h"
#include "utils/TXMLElement.h"
#include "utils/TXMLSAXHandler.h"
#include "utils/TXMLSAXModel.h"

namespace {

using namespace xml_test;  // NOLINT: test file
using com::veltrana::qvx::utils::TXMLSAXModel;
using icore::qvxGetMsg;

// A TCP listener on 127.0.0.1 with a port of the system's choosing; it accepts nothing
// and only tells whether anyone tried to connect.
class LocalListener {
 public:
  LocalListener() {
    socket_ = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = 0;
    if (::bind(socket_, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 || ::listen(socket_, 8) != 0) {
      ADD_FAILURE() << "no listening socket";
    }
    socklen_t length = sizeof address;
    ::getsockname(socket_, reinterpret_cast<sockaddr*>(&address), &length);
    port_ = ntohs(address.sin_port);
  }
  ~LocalListener() { ::close(socket_); }
  LocalListener(const LocalListener&) = delete;
  LocalListener& operator=(const LocalListener&) = delete;

  std::string url(const char* path) const { return "http://127.0.0.1:" + std::to_string(port_) + "/" + path; }
  bool wasContacted() const {
    pollfd waiting{socket_, POLLIN, 0};
    return ::poll(&waiting, 1, 50) > 0;
  }

 private:
  int socket_ = -1;
  int port_ = 0;
};

// A file with a secret that no document may pull in.
class SecretFile {
 public:
  SecretFile() : path_(::testing::TempDir() + "qvx-secret.txt") { std::ofstream(path_) << "TOP-SECRET-TEXT"; }
  ~SecretFile() { std::remove(path_.c_str()); }
  const std::string& path() const { return path_; }

 private:
  std::string path_;
};

std::string withDoctype(const std::string& doctype, const std::string& body) {
  return std::string("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n") + doctype + "\n" + rootOpen() + body +
         "</ozl:OZL>\n";
}

TEST(XmlSecurityTest, EveryDocumentTypeDeclarationIsRefusedAndNothingIsFetched) {
  SecretFile secret;
  LocalListener listener;
  const std::string drawing = "<shp:Drawing ozl:id=\"stringIdentity:d\" name=\"&x;\"/>\n";
  const std::string attacks[] = {
      withDoctype("<!DOCTYPE ozl:OZL [<!ENTITY x SYSTEM \"file://" + secret.path() + "\">]>", drawing),
      withDoctype("<!DOCTYPE ozl:OZL [<!ENTITY x SYSTEM \"" + secret.path() + "\">]>", drawing),
      withDoctype("<!DOCTYPE ozl:OZL [<!ENTITY x SYSTEM \"" + listener.url("entity") + "\">]>", drawing),
      withDoctype("<!DOCTYPE ozl:OZL [<!ENTITY % p SYSTEM \"" + listener.url("parameter") + "\"> %p;]>", drawing),
      withDoctype("<!DOCTYPE ozl:OZL SYSTEM \"" + listener.url("external.dtd") + "\">", ""),
      withDoctype("<!DOCTYPE ozl:OZL [<!ENTITY x \"harmless\">]>", drawing),
  };
  for (const std::string& attack : attacks) {
    EXPECT_EQ(failureOf<SerializationException>(attack), qvxGetMsg(78066)) << attack;
  }
  EXPECT_FALSE(listener.wasContacted()) << "the reader opened a connection";
}

TEST(XmlSecurityTest, EntityExpansionBombsAreRefusedAtOnce) {
  std::string declarations = "<!ENTITY lol0 \"lol\">";
  for (int level = 1; level < 10; ++level) {
    declarations += "<!ENTITY lol" + std::to_string(level) + " \"";
    for (int i = 0; i < 10; ++i) declarations += "&lol" + std::to_string(level - 1) + ";";
    declarations += "\">";
  }
  const std::string inText = withDoctype("<!DOCTYPE ozl:OZL [" + declarations + "]>", "<ozl:crc>&lol9;</ozl:crc>\n");
  const std::string inAttribute =
      withDoctype("<!DOCTYPE ozl:OZL [" + declarations + "]>", "<shp:Drawing ozl:id=\"stringIdentity:d\" name=\"&lol9;\"/>\n");
  for (const std::string& bomb : {inText, inAttribute}) {
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(failureOf<SerializationException>(bomb), qvxGetMsg(78066));
    // A guard against a hang, far above the microseconds the refusal takes.
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
  }
}

TEST(XmlSecurityTest, SchemaLocationsAreResourceNamesAndNeverFetched) {
  LocalListener listener;
  const bool validation = io::SerializationUtils::getValidation() != IFALSE;
  io::SerializationUtils::setValidation(ITRUE);
  const std::string root =
      "<ozl:OZL xmlns:ozl=\"http://www.veltrana.com/qvx/OZL\" xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "
      "serializationSpecVersion=\"14.0\" xmlns:shp=\"http://com.example.test.shapes/1\" "
      "xsi:schemaLocation=\"http://www.veltrana.com/qvx/OZL " + listener.url("OZL-remote.xsd") +
      " http://com.example.test.shapes/1 " + listener.url("shapes-remote.xsd") + "\">\n";
  Read result;
  read(result, document("<shp:Drawing ozl:id=\"stringIdentity:d\" name=\"d\"/>\n", root));
  EXPECT_EQ(result.objects->size(), 1u) << "schemas that are not found are skipped";
  EXPECT_FALSE(listener.wasContacted()) << "the reader opened a connection";
  io::SerializationUtils::setValidation(validation ? ITRUE : IFALSE);
}

// Counts what a parse delivers.
class CountingHandler : public com::veltrana::qvx::utils::TXMLSAXHandler {
 public:
  void startElement(const com::veltrana::qvx::utils::TXMLElement&) override { ++elements; }
  void endElement(std::u16string_view) override {}
  void characters(const char16_t* text, std::size_t length) override { characters_.append(text, length); }
  int elements = 0;
  std::u16string characters_;
};

TEST(XmlSecurityTest, TheModelRefusesADoctypeBeforeAnyElementAndWithoutAnEntityHandler) {
  SecretFile secret;
  const std::string text = "<?xml version=\"1.0\"?><!DOCTYPE r [<!ENTITY x SYSTEM \"file://" + secret.path() +
                           "\">]><r>&x;</r>";
  CountingHandler handler;
  TXMLSAXModel model(handler);
  EXPECT_EQ(qvx_test::messageOf<SerializationException>([&] { model.parse(text.data(), text.size(), "t"); }),
            qvxGetMsg(78066));
  EXPECT_EQ(handler.elements, 0);
  EXPECT_TRUE(handler.characters_.empty());
  // Without a DOCTYPE the same model reads on: the refusal left no state behind.
  const std::string plain = "<r><s/>text</r>";
  EXPECT_EQ(model.parse(plain.data(), plain.size(), "t"), 0);
  EXPECT_EQ(handler.elements, 2);
}

}  // namespace
