#include "platform/IVectorException.h"

const char* const IVectorException::kIndexOutOfBound = "Index is out of bound.";
const char* const IVectorException::kFailedToGrow = "IVector failed to grow.";
