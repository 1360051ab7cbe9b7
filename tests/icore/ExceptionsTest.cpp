// Which handlers catch the exception classes: IOException catches InvalidDataException,
// SerializationException is caught as the XML parser's XMLException and not as
// IOException, and a handler may extend an IllegalArgumentException's message.
#include <gtest/gtest.h>
#include <xercesc/util/XMLException.hpp>

#include <string>

#include "icore/exception/IllegalArgumentException.h"
#include "io/exception/IOException.h"
#include "io/exception/InvalidDataException.h"
#include "io/exception/SerializationException.h"

using com::veltrana::qvx::icore::exception::IllegalArgumentException;
using com::veltrana::qvx::io::exception::InvalidDataException;
using com::veltrana::qvx::io::exception::IOException;
using com::veltrana::qvx::io::exception::SerializationException;

TEST(ExceptionsTest, HandlersCatchByTheClassRelations) {
  try {
    try {
      throw IllegalArgumentException(IUString("Property rows is not settable."));
    } catch (IllegalArgumentException& e) {
      e.getMessage() += IUString(" While reading object 7.");
      throw;
    }
  } catch (IllegalArgumentException& e) {
    EXPECT_EQ(e.getMessage(), IUString("Property rows is not settable. While reading object 7."));
  }
  try {
    throw InvalidDataException(IUString("unexpected marker 0x33"));
  } catch (const IOException& e) {
    EXPECT_EQ(e.getMessage(), IUString("unexpected marker 0x33"));
  }
}

TEST(ExceptionsTest, SerializationExceptionIsCaughtAsXMLExceptionNotAsIOException) {
  try {
    try {
      throw SerializationException(IUString("Unknown element %s."), IUString("ozl:thing"));
    } catch (const IOException&) {
      ADD_FAILURE() << "an IOException handler caught a SerializationException";
    }
  } catch (const xercesc::XMLException& e) {
    EXPECT_EQ(std::u16string(e.getType()), u"SerializationException");
    const auto* own = dynamic_cast<const SerializationException*>(&e);
    ASSERT_NE(own, nullptr);
    SerializationException assigned;
    assigned = SerializationException(*own);  // its own copy operations keep the text
    EXPECT_EQ(assigned.getMessageText(), IUString("Unknown element ozl:thing."));
    return;
  }
  FAIL() << "not caught as XMLException";
}
