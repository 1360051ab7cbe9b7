#include "tools/qvx/TextDumpSink.h"

#include <string>

#include "tools/qvx/DumpText.h"

namespace qvx_tool {

namespace {

std::string at(std::int64_t offset) { return "  @" + std::to_string(offset); }

std::string objectLine(DumpObject const& object) {
  std::string line = object.kind;
  if (object.handle >= 0) line += " #" + std::to_string(object.handle);
  if (!object.className.empty()) line += " " + object.className;
  if (object.descriptorHandle >= 0) line += " (descriptor #" + std::to_string(object.descriptorHandle) + ")";
  if (!object.identity.empty()) line += " identity " + quotedText(object.identity);
  return line + at(object.offset);
}

}  // namespace

void TextDumpSink::startLine() {
  closeLine();
  std::fputs(std::string(static_cast<std::size_t>(2 * indent_), ' ').c_str(), out_);
}

void TextDumpSink::closeLine() {
  if (!lineOpen_) return;
  std::fputc('\n', out_);
  lineOpen_ = false;
}

void TextDumpSink::header(std::int64_t offset, std::string const& version) {
  startLine();
  std::fprintf(out_, "header: format version %s%s\n", quotedText(version).c_str(), at(offset).c_str());
}

void TextDumpSink::descriptor(DumpDescriptor const& descriptor) {
  startLine();
  std::string super =
      descriptor.superHandle < 0 ? "no super class" : "super #" + std::to_string(descriptor.superHandle);
  std::fprintf(out_, "class descriptor #%d %s, package version %s, %s%s\n", descriptor.handle,
               descriptor.className.c_str(), descriptor.packageVersion.c_str(), super.c_str(),
               at(descriptor.offset).c_str());
  for (DumpPropertyEntry const& entry : descriptor.declared) {
    startLine();
    std::fprintf(out_, "  %s: %s%s\n", entry.name.c_str(), entry.kind.c_str(),
                 entry.typeName.empty() ? "" : (" " + entry.typeName).c_str());
  }
}

void TextDumpSink::beginObject(DumpObject const& object) {
  if (lineOpen_ && !properties_.empty() && !properties_.back().multiValued) {
    // The value of a single-valued property stays on the property's line.
    std::fprintf(out_, " %s\n", objectLine(object).c_str());
    lineOpen_ = false;
  } else {
    startLine();
    std::fprintf(out_, "%s\n", objectLine(object).c_str());
  }
  ++indent_;
}

void TextDumpSink::beginProperty(std::string const& name, bool multiValued) {
  startLine();
  std::fprintf(out_, "%s =%s", name.c_str(), multiValued ? " [" : "");
  lineOpen_ = true;
  properties_.push_back({multiValued, true});
  ++indent_;
}

void TextDumpSink::value(DumpValue const& value) {
  if (!lineOpen_) {
    startLine();
    lineOpen_ = true;
  } else if (!properties_.empty() && !properties_.back().first) {
    std::fputc(',', out_);
  }
  std::fprintf(out_, " %s", valueText(value).c_str());
  if (!properties_.empty()) properties_.back().first = false;
}

void TextDumpSink::endProperty() {
  --indent_;
  const bool multiValued = !properties_.empty() && properties_.back().multiValued;
  if (!properties_.empty()) properties_.pop_back();
  if (!multiValued) {
    closeLine();
    return;
  }
  if (lineOpen_) {
    std::fputs(" ]\n", out_);
    lineOpen_ = false;
    return;
  }
  startLine();
  std::fputs("]\n", out_);
}

void TextDumpSink::beginList(std::int64_t offset, int count) {
  startLine();
  std::fprintf(out_, "list of %d objects%s\n", count, at(offset).c_str());
  ++indent_;
}

void TextDumpSink::primitiveItem(std::int64_t offset, std::string const& kind, std::vector<DumpValue> const& values) {
  startLine();
  std::string joined;
  for (DumpValue const& value : values) joined += (joined.empty() ? "" : ", ") + valueText(value);
  std::fprintf(out_, "%s: %s%s\n", kind.c_str(), joined.c_str(), at(offset).c_str());
}

void TextDumpSink::streamEnd(std::int64_t offset) {
  indent_ = 0;
  startLine();
  std::fprintf(out_, "end of stream%s\n", at(offset).c_str());
}

void TextDumpSink::dataEnd(std::int64_t offset) {
  indent_ = 0;
  startLine();
  std::fprintf(out_, "end of data, without end marker%s\n", at(offset).c_str());
}

void TextDumpSink::truncatedOutput(std::string const& why) {
  indent_ = 0;
  startLine();
  std::fprintf(out_, "... %s\n", why.c_str());
}

void TextDumpSink::fault(std::int64_t offset, std::string const& message) {
  indent_ = 0;
  startLine();
  std::fprintf(out_, "FAULT at byte offset %lld: %s\n", static_cast<long long>(offset), message.c_str());
}

}  // namespace qvx_tool
