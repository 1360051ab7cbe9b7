// Deep comparison of two object graphs through the reflective facade: the tool that
// round-trip tests and tools use to tell whether a graph read back from a stream is the
// graph that was written. It sits on top of the object storage and the metamodel and
// knows no concrete class.
#pragma once

#include "platform/IUString.h"
#include "platform/IVector.h"
#include "platform/QvxExport.h"

namespace com::veltrana::qvx::icore {

class IObject;

// Compares two graphs given by their top-level objects. Both are walked in step, in
// depth-first order of containment, with an explicit stack, so any depth of nesting is
// safe. For each pair of objects it compares, in this order: the class; the proxy
// state; the identity (qualified string; only for identifiable classes); then every
// property of getAllProperties(true) except container properties:
//   primitive     by type id: integers, characters and booleans by value, doubles and
//                 floats by bit pattern, dates by every part, strings by code units,
//                 blobs by length and bytes, identities by qualified string
//   enumeration   by literal name
//   containment   the contained objects are compared as pairs in their turn
//   reference     by position: both targets must be the same node of their graphs
// A string property marked sensitive may hold encrypted text, which differs from one
// encryption to the next: texts that differ are decrypted through their objects and
// compared in clear, and the difference never shows them.
// Multi-valued properties compare their counts, then their elements in order. A proxy
// is compared by class and identity only. References are checked after the contained
// objects: every object reached through containment then has its place, so isomorphic
// graphs compare equal whatever their addresses, and cycles end. A referenced object
// that is not contained anywhere in the graph is compared where it is first referenced,
// with its own contained objects.
//
// The first difference found (or, on request, every one) is reported as a path from the root, e.g.
// "catalog/schemas[3]/tables[17]/columns[2].length: 24 != 32": the root is named by its
// "name" property when it has a non-empty one, else by its class; "/" descends into a
// contained object, "." names a property (and an object reached through a reference).
// With several top-level objects the root's position comes first: "[1]catalog/...".
//
// Classes must follow the reflective contract of IObjectInternal (values as its header
// describes them); the core metamodel objects themselves do not (IEnumeration's
// "literals" is a vector behind a single-valued containment), so they are not
// compared with this. A multi-valued blob property is compared by count only, its
// elements carrying no length. The graphs are only read; one thread at a time.
class QVX_API ObjectGraphComparator {
 public:
  struct Options {
    // Skip identities: two graphs built separately get different generated ones.
    bool ignoreIdentities = false;
    // Go on after a difference and collect all of them (in `differences`). An object
    // whose class or proxy state differs, and a list whose length differs, count as one
    // difference: what lies below them is not compared.
    bool reportAllDifferences = false;
    // Compare doubles, floats and dates by their text forms, which are what the XML
    // document carries ("%.15lg", "%f", milliseconds), instead of by bit pattern: for
    // a graph read back from a document.
    bool valuesAsWritten = false;
  };

  struct ComparisonResult {
    bool equal = true;
    // The first difference, empty when the graphs are equal.
    IUString difference;
    // Every difference in the order found, when reportAllDifferences was asked for.
    IVector<IUString> differences{0, 16, 1024};
  };

  static ComparisonResult compare(IVector<IObject*> const& left, IVector<IObject*> const& right);
  static ComparisonResult compare(IVector<IObject*> const& left, IVector<IObject*> const& right,
                                  Options const& options);
  static ComparisonResult compare(IObject const* left, IObject const* right);
  static ComparisonResult compare(IObject const* left, IObject const* right, Options const& options);
};

}  // namespace com::veltrana::qvx::icore
