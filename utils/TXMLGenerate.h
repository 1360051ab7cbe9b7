// Building and writing a whole XML document: the document model with a root element,
// written to an IOutputStream in one pass that needs the same stack at any depth.
#pragma once

#include <string_view>

#include "platform/QvxExport.h"
#include "utils/TXMLDOMModel.h"
#include "utils/TXMLNode.h"

class IOutputStream;

namespace com::veltrana::qvx::utils {

class TXMLBufferedWriter;

// Output layout: every element starts on a line of its own and an element with child
// elements ends on a line of its own; there is no indentation (which would grow with
// the square of the depth). Text comes right after its start tag, attributes in the
// order they were first set. Empty elements are written as <name/>. No XML
// declaration is written: the caller writes whatever comes before the root.
class QVX_API TXMLGenerate : public TXMLDOMModel {
 public:
  TXMLGenerate();
  ~TXMLGenerate() override;

  // Creates the root element `name`; a root made before is dropped from the document
  // (its storage stays until createNewDOMTree).
  TXMLNode addRootNode(std::string_view name);

  // Writes the tree under the root to `out` and flushes it. Returns 0 on success, 1
  // when there is no root or the stream threw; the stream then keeps what reached it.
  int outputXMLFile(IOutputStream& out) const;

 private:
  void writeTree(TXMLBufferedWriter& writer) const;
  void writeStartTag(TXMLBufferedWriter& writer, detail::TXMLNodeRecord const& node) const;
  void writeEndTag(TXMLBufferedWriter& writer, detail::TXMLNodeRecord const& node) const;
};

}  // namespace com::veltrana::qvx::utils
