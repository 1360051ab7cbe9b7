// Prints a stream dump as indented text, one record per line, with byte offsets.
#pragma once
#include <cstdio>
#include <vector>

#include "tools/qvx/DumpSink.h"

namespace qvx_tool {

class TextDumpSink : public DumpSink {
 public:
  explicit TextDumpSink(std::FILE* out) : out_(out) {}
  void header(std::int64_t offset, std::string const& version) override;
  void descriptor(DumpDescriptor const& descriptor) override;
  void beginObject(DumpObject const& object) override;
  void endObject() override { --indent_; }
  void beginProperty(std::string const& name, bool multiValued) override;
  void endProperty() override;
  void value(DumpValue const& value) override;
  void beginList(std::int64_t offset, int count) override;
  void endList() override { --indent_; }
  void primitiveItem(std::int64_t offset, std::string const& kind, std::vector<DumpValue> const& values) override;
  void streamEnd(std::int64_t offset) override;
  void dataEnd(std::int64_t offset) override;
  void truncatedOutput(std::string const& why) override;
  void fault(std::int64_t offset, std::string const& message) override;
  void finish() override { closeLine(); }

 private:
  struct OpenProperty {
    bool multiValued;
    bool first;
  };
  void startLine();
  void closeLine();

  std::FILE* out_;
  int indent_ = 0;
  bool lineOpen_ = false;
  std::vector<OpenProperty> properties_;
};

}  // namespace qvx_tool
