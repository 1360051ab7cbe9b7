// The bench-size catalog as XML interchange document text, made by a small generator of
// the benchmark: the XML reader's benchmark needs a document, and this keeps it
// independent of the library's writer. The generator walks the graph reflectively and
// writes what the format asks for (identities, attributes, containment, references,
// seeds by id, blobs); it knows only the catalog package's namespace.
#pragma once

#include <string>

namespace com::veltrana::qvx::icore {
class IObject;
}

namespace qvx_bench {

std::string catalogDocumentText(com::veltrana::qvx::icore::IObject const* catalog);

}  // namespace qvx_bench
