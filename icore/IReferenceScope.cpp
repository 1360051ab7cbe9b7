#include "icore/IReferenceScope.h"

namespace com::veltrana::qvx::icore {

IReferenceScope const IReferenceScope::INTERNAL(IReferenceScope::nINTERNAL, "INTERNAL");
IReferenceScope const IReferenceScope::EXTERNAL(IReferenceScope::nEXTERNAL, "EXTERNAL");
IReferenceScope const IReferenceScope::DEFERRED(IReferenceScope::nDEFERRED, "DEFERRED");
IReferenceScope const IReferenceScope::NONE(IReferenceScope::nNONE, "NONE");
IReferenceScope const IReferenceScope::UNSET(IReferenceScope::nUNSET, "UNSET");

namespace {
IReferenceScope const* const kAllIReferenceScope[] = {&IReferenceScope::INTERNAL, &IReferenceScope::EXTERNAL, &IReferenceScope::DEFERRED, &IReferenceScope::NONE, &IReferenceScope::UNSET};
}  // namespace

IReferenceScope::~IReferenceScope() = default;

IReferenceScope const* IReferenceScope::get(int value) { return byValue(kAllIReferenceScope, value); }

IReferenceScope const* IReferenceScope::valueOf(IUString const& name) { return byName(kAllIReferenceScope, name); }

}  // namespace com::veltrana::qvx::icore
