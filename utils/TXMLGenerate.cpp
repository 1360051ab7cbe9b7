#include "utils/TXMLGenerate.h"

#include <exception>
#include <memory>

#include "platform/IOutputStream.h"
#include "utils/TXMLBufferedWriter.h"
#include "utils/TXMLNodeRecord.h"

namespace com::veltrana::qvx::utils {

using detail::TXMLAttributeRecord;
using detail::TXMLNodeRecord;

namespace {

void writeStartTag(TXMLBufferedWriter& writer, TXMLNodeRecord const& node) {
  writer.write('<');
  writer.write(node.name->text);
  for (TXMLAttributeRecord const* attribute = node.firstAttribute; attribute != nullptr;
       attribute = attribute->next) {
    writer.write(' ');
    writer.write(attribute->name->text);
    writer.write("=\"");
    writer.writeEscapedAttribute(attribute->value);
    writer.write('"');
  }
}

void writeEndTag(TXMLBufferedWriter& writer, TXMLNodeRecord const& node) {
  writer.write("</");
  writer.write(node.name->text);
  writer.write('>');
}

// One loop over first child, next sibling and parent: the stack stays the same at any
// depth of nesting.
void writeTree(TXMLBufferedWriter& writer, TXMLNodeRecord const* root) {
  TXMLNodeRecord const* node = root;
  while (true) {
    writeStartTag(writer, *node);
    if (node->firstChild == nullptr && node->text.empty()) {
      writer.write("/>");
    } else {
      writer.write('>');
      writer.writeEscapedText(node->text);
      if (node->firstChild != nullptr) {
        node = node->firstChild;
        writer.write('\n');
        continue;
      }
      writeEndTag(writer, *node);
    }
    // Climb until a node has a next sibling, closing the elements left behind.
    while (node != root && node->nextSibling == nullptr) {
      node = node->parent;
      writer.write('\n');
      writeEndTag(writer, *node);
    }
    if (node == root) return;
    node = node->nextSibling;
    writer.write('\n');
  }
}

}  // namespace

TXMLGenerate::TXMLGenerate() = default;

TXMLGenerate::~TXMLGenerate() = default;

TXMLNode TXMLGenerate::addRootNode(std::string_view name) {
  root_ = newNode(internName(name), nullptr);
  return getRootNode();
}

int TXMLGenerate::outputXMLFile(IOutputStream& out) const {
  if (root_ == nullptr) return 1;
  // The buffer is too big for the stack of a thread that a host may have made small.
  auto writer = std::make_unique<TXMLBufferedWriter>(out);
  try {
    writeTree(*writer, root_);
    writer->write('\n');
    writer->flush();
  } catch (...) {  // whatever the stream throws, the document is incomplete
    return 1;
  }
  return 0;
}

}  // namespace com::veltrana::qvx::utils
