#include "tools/qvx/JsonDumpSink.h"

#include "tools/qvx/DumpText.h"

namespace qvx_tool {

namespace {

std::string member(std::string const& name, std::string const& jsonValue) { return quotedText(name) + ": " + jsonValue; }

std::string numberText(std::int64_t number) { return std::to_string(number); }

std::string jsonValue(DumpValue const& value) { return valueText(value); }

std::string objectMembers(DumpObject const& object) {
  std::string text = member("offset", numberText(object.offset)) + ", " + member("kind", quotedText(object.kind));
  if (object.handle >= 0) text += ", " + member("handle", numberText(object.handle));
  if (!object.className.empty()) text += ", " + member("class", quotedText(object.className));
  if (object.descriptorHandle >= 0) text += ", " + member("descriptor", numberText(object.descriptorHandle));
  if (!object.identity.empty()) text += ", " + member("identity", quotedText(object.identity));
  return text;
}

}  // namespace

void JsonDumpSink::put(std::string const& text) {
  if (!open_.empty()) {
    Open& innermost = open_.back();
    if (innermost.isKey) {
      innermost.isKey = false;
    } else {
      if (!innermost.empty) items_ += ", ";
      innermost.empty = false;
    }
  } else if (!items_.empty()) {
    items_ += ", ";
  }
  items_ += text;
}

void JsonDumpSink::putKey(std::string const& name) {
  put(quotedText(name) + ": ");
  open_.back().isKey = true;
}

void JsonDumpSink::open(std::string const& prefix, char bracket, bool isProperties) {
  put(std::string(1, bracket) + prefix);
  open_.push_back({bracket == '{' ? '}' : ']', prefix.empty(), false, isProperties});
}

void JsonDumpSink::close() {
  items_ += open_.back().closing;
  open_.pop_back();
}

void JsonDumpSink::header(std::int64_t offset, std::string const& version) {
  header_ = "{" + member("offset", numberText(offset)) + ", " + member("version", quotedText(version)) + "}";
}

void JsonDumpSink::descriptor(DumpDescriptor const& descriptor) {
  std::string properties;
  for (DumpPropertyEntry const& entry : descriptor.declared) {
    std::string text = "{" + member("name", quotedText(entry.name)) + ", " + member("kind", quotedText(entry.kind));
    if (!entry.typeName.empty()) text += ", " + member("type", quotedText(entry.typeName));
    properties += (properties.empty() ? "" : ", ") + text + "}";
  }
  std::string text = "{" + member("offset", numberText(descriptor.offset)) + ", " +
                     member("handle", numberText(descriptor.handle)) + ", " +
                     member("class", quotedText(descriptor.className)) + ", " +
                     member("packageVersion", quotedText(descriptor.packageVersion)) + ", " +
                     member("super", descriptor.superHandle < 0 ? "null" : numberText(descriptor.superHandle)) +
                     ", " + member("properties", "[" + properties + "]") + "}";
  descriptors_ += (descriptors_.empty() ? "" : ", ") + text;
}

void JsonDumpSink::beginObject(DumpObject const& object) {
  open(objectMembers(object), '{');
  if (object.kind == "object") {
    putKey("properties");
    open("", '{', true);
  }
}

void JsonDumpSink::endObject() {
  if (open_.back().isProperties) close();
  close();
}

void JsonDumpSink::beginProperty(std::string const& name, bool multiValued) {
  putKey(name);
  if (multiValued) open("", '[');
}

void JsonDumpSink::endProperty() {
  if (!open_.empty() && open_.back().closing == ']') close();
}

void JsonDumpSink::value(DumpValue const& value) { put(jsonValue(value)); }

void JsonDumpSink::beginList(std::int64_t offset, int count) {
  open(member("offset", numberText(offset)) + ", " + member("kind", quotedText("list")) + ", " +
           member("count", numberText(count)),
       '{');
  putKey("elements");
  open("", '[');
}

void JsonDumpSink::endList() {
  close();
  close();
}

void JsonDumpSink::primitiveItem(std::int64_t offset, std::string const& kind, std::vector<DumpValue> const& values) {
  std::string list;
  for (DumpValue const& value : values) list += (list.empty() ? "" : ", ") + jsonValue(value);
  put("{" + member("offset", numberText(offset)) + ", " + member("kind", quotedText(kind)) + ", " +
      member("values", "[" + list + "]") + "}");
}

void JsonDumpSink::streamEnd(std::int64_t offset) { end_ = "{" + member("offset", numberText(offset)) + "}"; }

void JsonDumpSink::truncatedOutput(std::string const& why) { truncated_ = quotedText(why); }

void JsonDumpSink::fault(std::int64_t offset, std::string const& message) {
  fault_ = "{" + member("offset", numberText(offset)) + ", " + member("message", quotedText(message)) + "}";
}

void JsonDumpSink::finish() {
  while (!open_.empty()) {
    if (open_.back().isKey) items_ += "null";  // a member cut off by a fault
    close();
  }
  std::fprintf(out_, "{%s,\n %s,\n %s,\n %s,\n %s,\n %s}\n", member("header", header_).c_str(),
               member("items", "[" + items_ + "]").c_str(), member("descriptors", "[" + descriptors_ + "]").c_str(),
               member("end", end_).c_str(), member("truncated", truncated_).c_str(), member("fault", fault_).c_str());
}

}  // namespace qvx_tool
