// Out-of-line members of the logger interface; they anchor its vtable here.
#include "utils/ILogger.h"

namespace com::veltrana::qvx::utils {

ILogger::ILogger(std::int32_t level) : level_(level) {}

ILogger::~ILogger() = default;

}  // namespace com::veltrana::qvx::utils
