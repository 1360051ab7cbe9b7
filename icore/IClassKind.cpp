#include "icore/IClassKind.h"

namespace com::veltrana::qvx::icore {

IClassKind const IClassKind::FIRST_CLASS(IClassKind::nFIRST_CLASS, "FIRST_CLASS");
IClassKind const IClassKind::SECOND_CLASS(IClassKind::nSECOND_CLASS, "SECOND_CLASS");
IClassKind const IClassKind::VALUE_CLASS(IClassKind::nVALUE_CLASS, "VALUE_CLASS");
IClassKind const IClassKind::ANNOTATION_CLASS(IClassKind::nANNOTATION_CLASS, "ANNOTATION_CLASS");
IClassKind const IClassKind::ANY_CLASS(IClassKind::nANY_CLASS, "ANY_CLASS");
IClassKind const IClassKind::UNSET(IClassKind::nUNSET, "UNSET");

namespace {
IClassKind const* const kAllIClassKind[] = {&IClassKind::FIRST_CLASS, &IClassKind::SECOND_CLASS, &IClassKind::VALUE_CLASS, &IClassKind::ANNOTATION_CLASS, &IClassKind::ANY_CLASS, &IClassKind::UNSET};
}  // namespace

IClassKind::~IClassKind() = default;

IClassKind const* IClassKind::get(int value) { return byValue(kAllIClassKind, value); }

IClassKind const* IClassKind::valueOf(IUString const& name) { return byName(kAllIClassKind, name); }

}  // namespace com::veltrana::qvx::icore
