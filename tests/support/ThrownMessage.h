// Checks of error texts: the message of the exception that an action throws, to be
// compared with the catalog text (qvxGetMsg / qvxFormatMsg) that names its number.
#pragma once

#include <gtest/gtest.h>

#include "platform/IUString.h"

namespace qvx_test {

// The message of the `Exception` that `action` throws; a test failure when none is.
template <typename Exception, typename Action>
IUString messageOf(Action&& action) {
  try {
    action();
  } catch (Exception& thrown) {
    return thrown.getMessage();
  }
  ADD_FAILURE() << "the expected exception was not thrown";
  return IUString("<nothing thrown>");
}

}  // namespace qvx_test
