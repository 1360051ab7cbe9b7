#include "utils/TXMLGenerate.h"

#include <exception>
#include <memory>

#include "platform/IOutputStream.h"
#include "utils/TXMLBufferedWriter.h"
#include "utils/TXMLNodeRecord.h"

namespace com::veltrana::qvx::utils {

using detail::TXMLAttributeRecord;
using detail::TXMLNodeRecord;


void TXMLGenerate::writeStartTag(TXMLBufferedWriter& writer, TXMLNodeRecord const& node) const {
  writer.write('<');
  writer.write(nameText(node.nameIndex));
  for (TXMLAttributeRecord const* attribute = node.firstAttribute; attribute != nullptr;
       attribute = attribute->next) {
    writer.write(' ');
    writer.write(nameText(attribute->nameIndex));
    writer.write("=\"");
    writer.writeEscapedAttribute(std::string_view(attribute->value(), attribute->valueLength));
    writer.write('"');
  }
}

void TXMLGenerate::writeEndTag(TXMLBufferedWriter& writer, TXMLNodeRecord const& node) const {
  writer.write("</");
  writer.write(nameText(node.nameIndex));
  writer.write('>');
}

// One loop over first child, next sibling and parent: the stack stays the same at any
// depth of nesting.
void TXMLGenerate::writeTree(TXMLBufferedWriter& writer) const {
  TXMLNodeRecord const* node = root_;
  while (true) {
    writeStartTag(writer, *node);
    if (node->firstChild == nullptr && node->textLength == 0) {
      writer.write("/>");
    } else {
      writer.write('>');
      writer.writeEscapedText(std::string_view(node->text, node->textLength));
      if (node->firstChild != nullptr) {
        node = node->firstChild;
        writer.write('\n');
        continue;
      }
      writeEndTag(writer, *node);
    }
    // Climb until a node has a next sibling, closing the elements left behind.
    while (node != root_ && node->nextSibling == nullptr) {
      node = node->parent;
      writer.write('\n');
      writeEndTag(writer, *node);
    }
    if (node == root_) return;
    node = node->nextSibling;
    writer.write('\n');
  }
}

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
    writeTree(*writer);
    writer->write('\n');
    writer->flush();
  } catch (...) {  // whatever the stream throws, the document is incomplete
    return 1;
  }
  return 0;
}

}  // namespace com::veltrana::qvx::utils
