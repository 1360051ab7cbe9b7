// Tests of the exception classes: the message they carry, value semantics, and which
// handlers catch them (IOException catches InvalidDataException; SerializationException
// is caught as the XML parser's XMLException and not as IOException).
#include <gtest/gtest.h>
#include <xercesc/util/XMLException.hpp>

#include <string>
#include <type_traits>
#include <utility>

#include "icore/exception/EncryptionFailureException.h"
#include "icore/exception/EncryptionProviderExistsException.h"
#include "icore/exception/IdentityException.h"
#include "icore/exception/IllegalArgumentException.h"
#include "icore/exception/InstantiationException.h"
#include "icore/exception/NoSuchIPropertyException.h"
#include "icore/exception/SeedException.h"
#include "icore/exception/UnresolvedProxyException.h"
#include "icore/exception/UnsupportedOperationException.h"
#include "io/exception/IOException.h"
#include "io/exception/InvalidDataException.h"
#include "io/exception/SerializationException.h"

namespace {

using namespace com::veltrana::qvx::icore::exception;
using com::veltrana::qvx::io::exception::InvalidDataException;
using com::veltrana::qvx::io::exception::IOException;
using com::veltrana::qvx::io::exception::SerializationException;

// The message of any of the IUString-carrying classes, read through a mutable object
// (IllegalArgumentException has no const getMessage).
template <typename E>
IUString messageOf(E exception) {
  return exception.getMessage();
}

template <typename E>
class MessageExceptionTest : public testing::Test {};

using MessageExceptions =
    testing::Types<IllegalArgumentException, UnresolvedProxyException, UnsupportedOperationException,
                   InstantiationException, IdentityException, NoSuchIPropertyException, SeedException,
                   EncryptionFailureException, EncryptionProviderExistsException, IOException, InvalidDataException>;
TYPED_TEST_SUITE(MessageExceptionTest, MessageExceptions);

TYPED_TEST(MessageExceptionTest, CarriesItsMessageByValue) {
  using E = TypeParam;
  static_assert(!std::is_polymorphic_v<E>, "the exception classes have no virtual operations");
  static_assert(std::is_copy_constructible_v<E> && std::is_copy_assignable_v<E>);
  static_assert(!std::is_convertible_v<IUString, E>, "a message does not silently become an exception");

  EXPECT_TRUE(messageOf(E()).isEmpty());

  IUString text("package acme.sales is taken");
  E original(text);
  text += " (changed afterwards)";
  EXPECT_EQ(messageOf(original), IUString("package acme.sales is taken"));

  E copy(original);
  E assigned;
  assigned = original;
  original = E(IUString("replaced"));
  EXPECT_EQ(messageOf(copy), IUString("package acme.sales is taken"));
  EXPECT_EQ(messageOf(assigned), IUString("package acme.sales is taken"));
  EXPECT_EQ(messageOf(original), IUString("replaced"));

  try {
    throw E(IUString("thrown"));
  } catch (E& caught) {
    EXPECT_EQ(messageOf(caught), IUString("thrown"));
  }
}

// Interface facts that handlers rely on: only IllegalArgumentException hands out a
// mutable message, and the class relations decide which handler catches what.
static_assert(std::is_same_v<decltype(std::declval<IllegalArgumentException&>().getMessage()), IUString&>);
static_assert(std::is_same_v<decltype(std::declval<const UnresolvedProxyException&>().getMessage()), const IUString&>);
static_assert(std::is_same_v<decltype(std::declval<const IOException&>().getMessage()), const IUString&>);
static_assert(std::is_same_v<decltype(std::declval<const InvalidDataException&>().getMessage()), const IUString&>);
static_assert(std::is_base_of_v<IOException, InvalidDataException>);
static_assert(!std::is_base_of_v<IOException, SerializationException>);
static_assert(std::is_base_of_v<xercesc::XMLException, SerializationException>);

TEST(ExceptionsTest, IllegalArgumentMessageCanBeExtendedByAHandler) {
  try {
    try {
      throw IllegalArgumentException(IUString("Property rows is not a settable property of Table."));
    } catch (IllegalArgumentException& e) {
      e.getMessage() += IUString(" While reading object 7.");
      throw;
    }
  } catch (IllegalArgumentException& e) {
    EXPECT_EQ(e.getMessage(), IUString("Property rows is not a settable property of Table. While reading object 7."));
  }
}

TEST(ExceptionsTest, IOExceptionHandlerCatchesInvalidData) {
  bool caughtAsIO = false;
  try {
    throw InvalidDataException(IUString("unexpected marker 0x33"));
  } catch (const IOException& e) {
    caughtAsIO = true;
    EXPECT_EQ(e.getMessage(), IUString("unexpected marker 0x33"));
  }
  EXPECT_TRUE(caughtAsIO);
}

TEST(ExceptionsTest, SerializationExceptionIsCaughtAsXMLExceptionNotAsIOException) {
  bool caughtAsXml = false;
  try {
    try {
      throw SerializationException(IUString("line 3, column 7: unknown element ozl:thing"));
    } catch (const IOException&) {
      ADD_FAILURE() << "an IOException handler caught a SerializationException";
    }
  } catch (const xercesc::XMLException& e) {
    caughtAsXml = true;
    EXPECT_EQ(std::u16string(e.getType()), u"SerializationException");
    const auto* own = dynamic_cast<const SerializationException*>(&e);
    ASSERT_NE(own, nullptr);
    EXPECT_EQ(std::u16string(own->getMessage()), u"line 3, column 7: unknown element ozl:thing");
    EXPECT_EQ(own->getMessageText(), IUString("line 3, column 7: unknown element ozl:thing"));
  }
  EXPECT_TRUE(caughtAsXml);
}

TEST(ExceptionsTest, SerializationExceptionFormatsCopiesAndDefaultsToEmpty) {
  EXPECT_EQ(std::u16string(SerializationException().getMessage()), u"");

  SerializationException formatted(IUString("Unknown element %s."), IUString("ozl:thing"));
  EXPECT_EQ(formatted.getMessageText(), IUString("Unknown element ozl:thing."));

  SerializationException copy(formatted);
  SerializationException assigned;
  assigned = formatted;
  formatted = SerializationException(IUString("other"));
  EXPECT_EQ(copy.getMessageText(), IUString("Unknown element ozl:thing."));
  EXPECT_EQ(assigned.getMessageText(), IUString("Unknown element ozl:thing."));
  EXPECT_EQ(formatted.getMessageText(), IUString("other"));
  EXPECT_EQ(std::u16string(copy.getType()), u"SerializationException");
}

}  // namespace
