// The exception of IVector: an index outside the vector, or a failed growth.
#pragma once

#include "platform/IUString.h"
#include "platform/QvxExport.h"

class QVX_API IVectorException {
 public:
  IVectorException() = default;
  explicit IVectorException(const IUString& message) : message_(message) {}
  const IUString& getMessage() const { return message_; }

  // The two texts the vector throws with.
  static const char* const kIndexOutOfBound;  // "Index is out of bound."
  static const char* const kFailedToGrow;     // "IVector failed to grow."

 private:
  IUString message_;
};
