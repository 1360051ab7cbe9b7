#include "icore/IVersionInfo.h"

#include <utility>

namespace com::veltrana::qvx::icore {

IVersionInfo::IVersionInfo(int major, int minor, int release, IUString build)
    : major_(major), minor_(minor), release_(release), build_(std::move(build)) {}

IVersionInfo::~IVersionInfo() = default;

}  // namespace com::veltrana::qvx::icore
