// The walk behind ObjectGraphComparator: both graphs in step, contained objects on an
// explicit stack, references checked once every contained object has its place.
#include "icore/ObjectGraphComparator.h"

#include <cstdint>
#include <cstring>
#include <limits>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "icore/IClass.h"
#include "icore/ICoreDatatypes.h"
#include "icore/IDatatype.h"
#include "icore/IEnumerationLiteral.h"
#include "icore/IIdentity.h"
#include "icore/IObjectInfo.h"
#include "icore/IObjectReflector.h"
#include "icore/IProperty.h"
#include "icore/IType.h"
#include "icore/exception/EncryptionFailureException.h"
#include "icore/internal/IObjectInternal.h"
#include "icore/runtime/IdentityExternalizer.h"
#include "platform/WkDate.h"

namespace com::veltrana::qvx::icore {

namespace {

using Result = ObjectGraphComparator::ComparisonResult;

constexpr std::size_t kNoStep = std::numeric_limits<std::size_t>::max();
constexpr long kSingle = -1;

// How a pair of objects was reached. Paths are kept as links to the parent step, so a
// graph costs one step per object instead of one path string per object; the text is
// only built for the difference that is reported.
struct PathStep {
  std::size_t parent;         // kNoStep for a root
  IProperty const* property;  // null for a root
  long index;                 // element index or kSingle; a root's position
  bool viaReference;          // reached through a reference, not a containment
  IObject const* root;        // the left root object, to name it
};

struct Pair {
  IObject const* left;
  IObject const* right;
  std::size_t step;
};

struct Reference {
  IObject const* left;
  IObject const* right;
  std::size_t owner;  // the step of the referring pair
  IProperty const* property;
  long index;
};

IObjectInfo& infoOf(IObject const* object) { return *IObjectReflector::getInstance()->getIObjectInfo(object); }

// Booleans are 32-bit integers, so their tag carries a kind to tell them apart.
enum class ValueKind { kPlain, kBoolean };
template <typename T, ValueKind Kind = ValueKind::kPlain>
struct Tag {
  using type = T;
  static constexpr ValueKind kind = Kind;
};

// Calls `visit` with the value type behind a pointer of the primitive data type
// `typeId` (blobs are handled apart, since their length travels separately). Returns
// false for a type id that is not a core primitive.
template <typename Visit>
bool withValueType(int typeId, Visit&& visit) {
  switch (typeId) {
    case ICoreDatatypes::BYTE_TYPE_ID: visit(Tag<char>{}); return true;
    case ICoreDatatypes::BOOLEAN_TYPE_ID: visit(Tag<IBOOLEAN, ValueKind::kBoolean>{}); return true;
    case ICoreDatatypes::CHARACTER_TYPE_ID: visit(Tag<char16_t>{}); return true;
    case ICoreDatatypes::DATE_TYPE_ID: visit(Tag<WkDate>{}); return true;
    case ICoreDatatypes::DOUBLE_TYPE_ID: visit(Tag<double>{}); return true;
    case ICoreDatatypes::FLOAT_TYPE_ID: visit(Tag<float>{}); return true;
    case ICoreDatatypes::INTEGER_TYPE_ID: visit(Tag<std::int32_t>{}); return true;
    case ICoreDatatypes::LONG_TYPE_ID: visit(Tag<std::int64_t>{}); return true;
    case ICoreDatatypes::SHORT_TYPE_ID: visit(Tag<std::int16_t>{}); return true;
    case ICoreDatatypes::STRING_TYPE_ID: visit(Tag<IUString>{}); return true;
    case ICoreDatatypes::IIDENTITY_TYPE_ID: visit(Tag<IIdentity>{}); return true;
    default: return false;
  }
}

IUString identityText(IIdentity const* identity) {
  if (identity == nullptr) return IUString("none");
  runtime::IdentityExternalizer* externalizer = identity->getIdentityExternalizer();
  if (externalizer == nullptr) return IUString("an identity without externalizer");
  return externalizer->getExternalizerId() + IUString(":") + externalizer->toString(identity);
}

bool sameIdentity(IIdentity const* left, IIdentity const* right) {
  if (left == nullptr || right == nullptr) return left == right;
  if (left->getIdentityExternalizer() == nullptr || right->getIdentityExternalizer() == nullptr) {
    return (*left == *right) != IFALSE;
  }
  return identityText(left) == identityText(right);
}

// Exact equality of values: floating-point numbers by bit pattern, so that a value read
// back equals the one written even for NaN, and -0.0 differs from 0.0.
template <typename T>
bool sameValue(T const& left, T const& right) {
  return left == right;
}
template <>
bool sameValue<double>(double const& left, double const& right) {
  return std::memcmp(&left, &right, sizeof(double)) == 0;
}
template <>
bool sameValue<float>(float const& left, float const& right) {
  return std::memcmp(&left, &right, sizeof(float)) == 0;
}
template <>
bool sameValue<IIdentity>(IIdentity const& left, IIdentity const& right) {
  return sameIdentity(&left, &right);
}

IUString describe(char value) { return IUString::format("%d", static_cast<int>(static_cast<signed char>(value))); }
IUString describeBoolean(IBOOLEAN value) {
  if (value == ITRUE) return IUString("true");
  if (value == IFALSE) return IUString("false");
  return IUString::format("%d", value);
}
IUString describe(char16_t value) { return IUString::format("U+%04X", static_cast<unsigned>(value)); }
IUString describe(WkDate const& value) { return value.format("MM/DD/YYYY:HH24:MI:SS.NS"); }
IUString describe(double value) { return IUString::format("%.17g", value); }
IUString describe(float value) { return IUString::format("%.9g", static_cast<double>(value)); }
IUString describe(std::int32_t value) { return IUString::format("%d", value); }
IUString describe(std::int64_t value) { return IUString::format("%lld", static_cast<long long>(value)); }
IUString describe(std::int16_t value) { return IUString::format("%d", static_cast<int>(value)); }
IUString describe(IUString const& value) { return IUString("\"") + value + IUString("\""); }
IUString describe(IIdentity const& value) { return identityText(&value); }

template <typename ValueTag, typename T>
IUString describeAs(ValueTag, T const& value) {
  if constexpr (ValueTag::kind == ValueKind::kBoolean) {
    return describeBoolean(value);
  } else {
    return describe(value);
  }
}

IUString describeBlob(void const* bytes, unsigned int length) {
  IUString text = IUString::format("%u bytes", length);
  if (bytes == nullptr || length == 0) return text;
  constexpr unsigned int kShown = 16;
  text += IUString(" ");
  auto const* data = static_cast<unsigned char const*>(bytes);
  for (unsigned int i = 0; i < length && i < kShown; ++i) text += IUString::format("%02x", data[i]);
  if (length > kShown) text += IUString("...");
  return text;
}

IUString describeLiteral(IEnumerationLiteral const* literal) {
  return literal != nullptr ? literal->getName() : IUString("null");
}

IUString classNameOf(IClass const* objectClass) {
  return objectClass != nullptr ? objectClass->getQualifiedName() : IUString("no class");
}

class GraphWalk {
 public:
  explicit GraphWalk(ObjectGraphComparator::Options const& options) : options_(options) {}

  Result run(IVector<IObject*> const& left, IVector<IObject*> const& right) {
    if (left.size() != right.size()) {
      return differ(IUString::format("top-level objects: %u != %u", static_cast<unsigned>(left.size()),
                                     static_cast<unsigned>(right.size())));
    }
    multipleRoots_ = left.size() > 1;
    for (std::size_t position = left.size(); position-- > 0;) {
      const std::size_t step = addStep(kNoStep, nullptr, static_cast<long>(position), false, left[position]);
      pending_.push_back({left[position], right[position], step});
    }
    if (!drain()) return result_;
    // References found while draining are appended; each walk of a newly reached pair
    // finishes before the next reference is checked.
    for (std::size_t next = 0; next < references_.size(); ++next) {
      const Reference reference = references_[next];
      if (!checkReference(reference) || !drain()) return result_;
    }
    return result_;
  }

 private:
  bool drain() {
    while (!pending_.empty()) {
      const Pair pair = pending_.back();
      pending_.pop_back();
      if (!visit(pair)) return false;
    }
    return true;
  }

  std::size_t addStep(std::size_t parent, IProperty const* property, long index, bool viaReference,
                      IObject const* root) {
    steps_.push_back({parent, property, index, viaReference, root});
    return steps_.size() - 1;
  }

  bool visit(Pair const& pair) {
    if (pair.left == nullptr || pair.right == nullptr) {
      if (pair.left == pair.right) return true;
      return differAt(pair.step, IUString(pair.left == nullptr ? "null != an object" : "an object != null"));
    }
    const auto leftSeen = leftPlace_.find(pair.left);
    const auto rightSeen = rightPlace_.find(pair.right);
    if (leftSeen != leftPlace_.end() || rightSeen != rightPlace_.end()) {
      // Reached again through a containment: a containment cycle, or an object that two
      // containments hold. Fine when both sides meet the same earlier place.
      if (leftSeen != leftPlace_.end() && rightSeen != rightPlace_.end() && leftSeen->second == rightSeen->second) {
        return true;
      }
      return differAt(pair.step, placeText(leftSeen, leftPlace_) + IUString(" != ") + placeText(rightSeen, rightPlace_));
    }
    leftPlace_.emplace(pair.left, pair.step);
    rightPlace_.emplace(pair.right, pair.step);

    IObjectInfo& left = infoOf(pair.left);
    IObjectInfo& right = infoOf(pair.right);
    IClass const* objectClass = left.getIClass();
    if (objectClass != right.getIClass()) {
      // Objects of different classes have nothing more to compare.
      return differAt(pair.step, IUString("class ") + classNameOf(objectClass) + IUString(" != ") +
                                     classNameOf(right.getIClass()));
    }
    if (objectClass == nullptr) return true;
    const bool leftProxy = left.isProxy() != IFALSE;
    if (leftProxy != (right.isProxy() != IFALSE)) {
      return differAt(pair.step, IUString(leftProxy ? "proxy != object" : "object != proxy"));
    }
    if (!options_.ignoreIdentities && objectClass->isIdentifiableClass()) {
      IIdentity const* leftIdentity = left.getIdentity();
      IIdentity const* rightIdentity = right.getIdentity();
      if (!sameIdentity(leftIdentity, rightIdentity) &&
          !differAt(pair.step, IUString("identity ") + identityText(leftIdentity) + IUString(" != ") +
                                   identityText(rightIdentity))) {
        return false;
      }
    }
    if (leftProxy) return true;

    contained_.clear();
    for (IProperty const* property : objectClass->getAllProperties(ITRUE)) {
      if (!compareProperty(left, right, *property, pair.step)) return false;
    }
    // Pushed in reverse so that contained objects are visited in document order.
    for (std::size_t i = contained_.size(); i-- > 0;) pending_.push_back(contained_[i]);
    return true;
  }

  bool compareProperty(IObjectInfo& left, IObjectInfo& right, IProperty const& property, std::size_t step) {
    if (property.isContainer()) return true;
    IType const* type = property.getType();
    if (type == nullptr) return true;
    if (property.isCollection()) return compareCollection(left, right, property, *type, step);

    if (type->isClass()) {
      auto const* leftTarget = static_cast<IObject const*>(left.get(property, IFALSE));
      auto const* rightTarget = static_cast<IObject const*>(right.get(property, IFALSE));
      follow(leftTarget, rightTarget, property, kSingle, step);
      return true;
    }
    if (type->isEnum()) {
      auto const* leftLiteral = static_cast<IEnumerationLiteral const*>(left.get(property, IFALSE));
      auto const* rightLiteral = static_cast<IEnumerationLiteral const*>(right.get(property, IFALSE));
      if (sameLiteral(leftLiteral, rightLiteral)) return true;
      return differAt(step, property, kSingle, describeLiteral(leftLiteral), describeLiteral(rightLiteral));
    }
    const int typeId = type->getTypeId();
    if (typeId == ICoreDatatypes::IIDENTITY_TYPE_ID && options_.ignoreIdentities) return true;
    unsigned int leftLength = 0;
    unsigned int rightLength = 0;
    void const* leftValue = left.get(property, &leftLength, ITRUE);
    void const* rightValue = right.get(property, &rightLength, ITRUE);
    if (typeId == ICoreDatatypes::BLOB_TYPE_ID) {
      if (leftLength == rightLength && (leftLength == 0 || (leftValue != nullptr && rightValue != nullptr &&
                                                            std::memcmp(leftValue, rightValue, leftLength) == 0))) {
        return true;
      }
      return differAt(step, property, kSingle, describeBlob(leftValue, leftLength),
                      describeBlob(rightValue, rightLength));
    }
    if (typeId == ICoreDatatypes::STRING_TYPE_ID && property.isSensitive()) {
      return compareSensitive(left, right, property, kSingle, step, static_cast<IUString const*>(leftValue),
                              static_cast<IUString const*>(rightValue));
    }
    return comparePrimitive(typeId, leftValue, rightValue, property, kSingle, step);
  }

  // A sensitive text may be stored encrypted, and encryption need not give the same text
  // twice: texts that differ are compared in clear. Neither is shown in the difference.
  bool compareSensitive(IObjectInfo& left, IObjectInfo& right, IProperty const& property, long index,
                        std::size_t step, IUString const* leftText, IUString const* rightText) {
    if (leftText == nullptr || rightText == nullptr) {
      if (leftText == rightText) return true;
      return differAt(step, property, index, IUString(leftText != nullptr ? "a sensitive value" : "null"),
                      IUString(rightText != nullptr ? "a sensitive value" : "null"));
    }
    if (*leftText == *rightText || sameClearText(left, right, property, *leftText, *rightText)) return true;
    return differAt(step, property, index, IUString("a sensitive value"), IUString("another"));
  }

  static bool sameClearText(IObjectInfo& left, IObjectInfo& right, IProperty const& property,
                            IUString const& leftText, IUString const& rightText) {
    internal::IObjectInternal* leftObject = left.getAssociatedObject();
    internal::IObjectInternal* rightObject = right.getAssociatedObject();
    try {
      return leftObject->decrypt(leftText, &property, leftObject) ==
             rightObject->decrypt(rightText, &property, rightObject);
    } catch (exception::EncryptionFailureException&) {
      return false;  // not both encrypted: the stored texts differ, and so do the values
    }
  }

  bool compareCollection(IObjectInfo& left, IObjectInfo& right, IProperty const& property, IType const& type,
                         std::size_t step) {
    const IBOOLEAN flag = type.isClass() || type.isEnum() ? IFALSE : ITRUE;
    void const* leftItems = left.get(property, flag);
    void const* rightItems = right.get(property, flag);
    if (type.isClass()) {
      auto const* leftObjects = static_cast<IVector<IObject*> const*>(leftItems);
      auto const* rightObjects = static_cast<IVector<IObject*> const*>(rightItems);
      if (!sameCount(leftObjects, rightObjects, property, step)) return keepGoing();
      for (std::size_t i = 0; i < sizeOf(leftObjects); ++i) {
        follow((*leftObjects)[i], (*rightObjects)[i], property, static_cast<long>(i), step);
      }
      return true;
    }
    if (type.isEnum()) {
      auto const* leftLiterals = static_cast<IVector<IEnumerationLiteral*> const*>(leftItems);
      auto const* rightLiterals = static_cast<IVector<IEnumerationLiteral*> const*>(rightItems);
      if (!sameCount(leftLiterals, rightLiterals, property, step)) return keepGoing();
      for (std::size_t i = 0; i < sizeOf(leftLiterals); ++i) {
        if (!sameLiteral((*leftLiterals)[i], (*rightLiterals)[i]) &&
            !differAt(step, property, static_cast<long>(i), describeLiteral((*leftLiterals)[i]),
                      describeLiteral((*rightLiterals)[i]))) {
          return false;
        }
      }
      return true;
    }
    const int typeId = type.getTypeId();
    if (typeId == ICoreDatatypes::BLOB_TYPE_ID) {
      return sameCount(static_cast<IVector<char*> const*>(leftItems), static_cast<IVector<char*> const*>(rightItems),
                       property, step) ||
             keepGoing();
    }
    if (typeId == ICoreDatatypes::IIDENTITY_TYPE_ID && options_.ignoreIdentities) return true;
    if (typeId == ICoreDatatypes::STRING_TYPE_ID && property.isSensitive()) {
      auto const* leftTexts = static_cast<IVector<IUString*> const*>(leftItems);
      auto const* rightTexts = static_cast<IVector<IUString*> const*>(rightItems);
      if (!sameCount(leftTexts, rightTexts, property, step)) return keepGoing();
      for (std::size_t i = 0; i < sizeOf(leftTexts); ++i) {
        if (!compareSensitive(left, right, property, static_cast<long>(i), step, (*leftTexts)[i], (*rightTexts)[i])) {
          return false;
        }
      }
      return true;
    }
    bool equal = true;
    withValueType(typeId, [&](auto tag) {
      using T = typename decltype(tag)::type;
      auto const* leftValues = static_cast<IVector<T*> const*>(leftItems);
      auto const* rightValues = static_cast<IVector<T*> const*>(rightItems);
      if (!sameCount(leftValues, rightValues, property, step)) {
        equal = keepGoing();
        return;
      }
      for (std::size_t i = 0; i < sizeOf(leftValues) && equal; ++i) {
        equal = comparePrimitive(typeId, (*leftValues)[i], (*rightValues)[i], property, static_cast<long>(i), step);
      }
    });
    return equal;
  }

  bool comparePrimitive(int typeId, void const* leftValue, void const* rightValue, IProperty const& property,
                        long index, std::size_t step) {
    bool equal = true;
    // Values of a data type other than the core primitives have no form known here
    // and are not compared.
    withValueType(typeId, [&](auto tag) {
      using T = typename decltype(tag)::type;
      auto const* leftTyped = static_cast<T const*>(leftValue);
      auto const* rightTyped = static_cast<T const*>(rightValue);
      if (leftTyped == nullptr || rightTyped == nullptr) {
        if (leftTyped == rightTyped) return;
        equal = differAt(step, property, index, leftTyped != nullptr ? describeAs(tag, *leftTyped) : IUString("null"),
                         rightTyped != nullptr ? describeAs(tag, *rightTyped) : IUString("null"));
        return;
      }
      if (!sameValue<T>(*leftTyped, *rightTyped) && !sameWrittenForm(typeId, property, leftTyped, rightTyped)) {
        equal = differAt(step, property, index, describeAs(tag, *leftTyped), describeAs(tag, *rightTyped));
      }
    });
    return equal;
  }

  // Doubles, floats and dates have text forms of fixed precision ("%.15lg", "%f",
  // milliseconds): with valuesAsWritten, values that the documents write alike are equal.
  bool sameWrittenForm(int typeId, IProperty const& property, void const* left, void const* right) {
    if (!options_.valuesAsWritten) return false;
    if (typeId != ICoreDatatypes::DOUBLE_TYPE_ID && typeId != ICoreDatatypes::FLOAT_TYPE_ID &&
        typeId != ICoreDatatypes::DATE_TYPE_ID) {
      return false;
    }
    auto const& datatype = static_cast<IDatatype const&>(*property.getType());
    leftText_.clear();
    rightText_.clear();
    return ICoreDatatypes::appendPrimitiveText(leftText_, datatype, left, 0) &&
           ICoreDatatypes::appendPrimitiveText(rightText_, datatype, right, 0) && leftText_ == rightText_;
  }

  // A contained object is compared in its turn; a referenced one once all contained
  // objects have their places.
  void follow(IObject const* left, IObject const* right, IProperty const& property, long index, std::size_t step) {
    if (property.isContainment()) {
      if (left == nullptr && right == nullptr) return;
      contained_.push_back({left, right, addStep(step, &property, index, false, nullptr)});
      return;
    }
    references_.push_back({left, right, step, &property, index});
  }

  bool checkReference(Reference const& reference) {
    if (reference.left == nullptr && reference.right == nullptr) return true;
    const auto leftSeen = reference.left != nullptr ? leftPlace_.find(reference.left) : leftPlace_.end();
    const auto rightSeen = reference.right != nullptr ? rightPlace_.find(reference.right) : rightPlace_.end();
    const bool leftKnown = leftSeen != leftPlace_.end();
    const bool rightKnown = rightSeen != rightPlace_.end();
    if (leftKnown && rightKnown && leftSeen->second == rightSeen->second) return true;
    if (!leftKnown && !rightKnown && reference.left != nullptr && reference.right != nullptr) {
      // Neither target is contained in its graph: compare them here, with what they contain.
      pending_.push_back({reference.left, reference.right,
                          addStep(reference.owner, reference.property, reference.index, true, nullptr)});
      return true;
    }
    return differAt(reference.owner, *reference.property, reference.index,
                    targetText(reference.left, leftSeen, leftPlace_),
                    targetText(reference.right, rightSeen, rightPlace_));
  }

  using Places = std::unordered_map<IObject const*, std::size_t>;

  IUString targetText(IObject const* target, Places::const_iterator seen, Places const& places) const {
    if (target == nullptr) return IUString("null");
    if (seen == places.end()) return IUString("refers to an object not reached through containment");
    return IUString("refers to ") + pathOf(seen->second);
  }

  IUString placeText(Places::const_iterator seen, Places const& places) const {
    if (seen == places.end()) return IUString("an object reached for the first time");
    return IUString("the object at ") + pathOf(seen->second);
  }

  static bool sameLiteral(IEnumerationLiteral const* left, IEnumerationLiteral const* right) {
    if (left == nullptr || right == nullptr) return left == right;
    return left->getName() == right->getName();
  }

  template <typename Vector>
  static std::size_t sizeOf(Vector const* items) {
    return items != nullptr ? items->size() : 0;
  }

  // Records a difference of counts; the elements of such a property are not compared.
  template <typename Vector>
  bool sameCount(Vector const* left, Vector const* right, IProperty const& property, std::size_t step) {
    const std::size_t leftCount = sizeOf(left);
    const std::size_t rightCount = sizeOf(right);
    if (leftCount == rightCount) return true;
    differAt(step, property, kSingle, IUString::format("%u elements", static_cast<unsigned>(leftCount)),
             IUString::format("%u elements", static_cast<unsigned>(rightCount)));
    return false;
  }

  IUString rootName(IObject const* root) const {
    if (root == nullptr) return IUString("null");
    IObjectInfo& info = infoOf(root);
    IClass const* objectClass = info.getIClass();
    if (objectClass == nullptr) return IUString("object");
    IProperty const* name = objectClass->getProperty("name");
    if (name != nullptr && !info.isProxy() && name->isSingleValued() && name->getType() != nullptr &&
        name->getType()->getTypeId() == ICoreDatatypes::STRING_TYPE_ID && name->getType()->isPrimitive()) {
      auto const* value = static_cast<IUString const*>(info.get(*name, ITRUE));
      if (value != nullptr && !value->isEmpty()) return *value;
    }
    return objectClass->getName();
  }

  IUString pathOf(std::size_t step) const {
    std::vector<std::size_t> chain;
    for (std::size_t at = step; at != kNoStep; at = steps_[at].parent) chain.push_back(at);
    IUString path;
    for (auto at = chain.rbegin(); at != chain.rend(); ++at) {
      const PathStep& node = steps_[*at];
      if (node.property == nullptr) {
        if (multipleRoots_) path += IUString::format("[%ld]", node.index);
        path += rootName(node.root);
        continue;
      }
      path += IUString(node.viaReference ? "." : "/");
      path += node.property->getName();
      if (node.index != kSingle) path += IUString::format("[%ld]", node.index);
    }
    return path;
  }

  Result differ(IUString text) {
    result_.equal = false;
    if (result_.difference.isEmpty()) result_.difference = text;
    if (options_.reportAllDifferences) result_.differences.append(std::move(text));
    return result_;
  }

  // Whether the walk goes on after a difference: only when all are reported. The
  // caller then skips what the difference makes meaningless (an object of another
  // class, the elements of a list of another length).
  bool keepGoing() const { return options_.reportAllDifferences; }

  bool differAt(std::size_t step, IUString const& what) {
    differ(pathOf(step) + IUString(": ") + what);
    return keepGoing();
  }

  bool differAt(std::size_t step, IProperty const& property, long index, IUString const& left, IUString const& right) {
    IUString where = pathOf(step) + IUString(".") + property.getName();
    if (index != kSingle) where += IUString::format("[%ld]", index);
    differ(where + IUString(": ") + left + IUString(" != ") + right);
    return keepGoing();
  }

  ObjectGraphComparator::Options options_;
  Result result_;
  std::string leftText_;  // reused by sameWrittenForm
  std::string rightText_;
  bool multipleRoots_ = false;
  std::vector<PathStep> steps_;
  std::vector<Pair> pending_;
  std::vector<Pair> contained_;
  std::vector<Reference> references_;
  // The step at which each object was visited: its place in its graph. Only looked up,
  // never iterated, so addresses decide nothing about the result.
  Places leftPlace_;
  Places rightPlace_;
};

}  // namespace

ObjectGraphComparator::ComparisonResult ObjectGraphComparator::compare(IVector<IObject*> const& left,
                                                                       IVector<IObject*> const& right) {
  return compare(left, right, Options());
}

ObjectGraphComparator::ComparisonResult ObjectGraphComparator::compare(IVector<IObject*> const& left,
                                                                       IVector<IObject*> const& right,
                                                                       Options const& options) {
  GraphWalk walk(options);
  return walk.run(left, right);
}

ObjectGraphComparator::ComparisonResult ObjectGraphComparator::compare(IObject const* left, IObject const* right) {
  return compare(left, right, Options());
}

ObjectGraphComparator::ComparisonResult ObjectGraphComparator::compare(IObject const* left, IObject const* right,
                                                                       Options const& options) {
  IVector<IObject*> leftRoots(1, 1, 1);
  IVector<IObject*> rightRoots(1, 1, 1);
  leftRoots.append(const_cast<IObject*>(left));
  rightRoots.append(const_cast<IObject*>(right));
  return compare(leftRoots, rightRoots, options);
}

}  // namespace com::veltrana::qvx::icore
