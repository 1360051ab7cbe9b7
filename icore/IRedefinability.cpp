#include "icore/IRedefinability.h"

namespace com::veltrana::qvx::icore {

IRedefinability const IRedefinability::FINAL_PROPERTY(IRedefinability::nFINAL_PROPERTY, "FINAL_PROPERTY");
IRedefinability const IRedefinability::ABSTRACT_PROPERTY(IRedefinability::nABSTRACT_PROPERTY, "ABSTRACT_PROPERTY");
IRedefinability const IRedefinability::REDEFINABLE_PROPERTY(IRedefinability::nREDEFINABLE_PROPERTY, "REDEFINABLE_PROPERTY");

namespace {
IRedefinability const* const kAllIRedefinability[] = {&IRedefinability::FINAL_PROPERTY, &IRedefinability::ABSTRACT_PROPERTY, &IRedefinability::REDEFINABLE_PROPERTY};
}  // namespace

IRedefinability::~IRedefinability() = default;

IRedefinability const* IRedefinability::get(int value) { return byValue(kAllIRedefinability, value); }

IRedefinability const* IRedefinability::valueOf(IUString const& name) { return byName(kAllIRedefinability, name); }

}  // namespace com::veltrana::qvx::icore
