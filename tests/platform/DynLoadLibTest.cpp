#include "platform/DynLoadLib.h"

#include <gtest/gtest.h>

#include <string>

// Calling through a found address is exercised by the package library tests.
TEST(DynLoadLibTest, FailuresNameTheFileOrSymbolAndKeepTheLibraryLoaded) {
  DynLoadLib library;
  auto errorNames = [&library](const std::string& what) {
    return library.getError().toUtf8().find(what) != std::string::npos;
  };
  EXPECT_EQ(library.load("libqvx-no-such-library.so"), ISTATUS_FAILURE);
  EXPECT_TRUE(errorNames("libqvx-no-such-library.so")) << library.getError().toUtf8();
  EXPECT_EQ(library.load(""), ISTATUS_FAILURE);  // must not open the main program
  EXPECT_FALSE(library.isLoaded());
  ASSERT_EQ(library.load("libm.so.6"), ISTATUS_SUCCESS) << library.getError().toUtf8();
  EXPECT_EQ(library.getFunctionAddr("qvxNoSuchSymbol"), nullptr);
  EXPECT_TRUE(errorNames("qvxNoSuchSymbol")) << library.getError().toUtf8();
  EXPECT_EQ(library.load("/nonexistent/dir/libx.so"), ISTATUS_FAILURE);
  EXPECT_TRUE(errorNames("/nonexistent/dir/libx.so")) << library.getError().toUtf8();
  EXPECT_EQ(library.getFileName(), IUString("libm.so.6"));
  EXPECT_NE(library.getFunctionAddr("cos"), nullptr);
  EXPECT_TRUE(library.getError().isEmpty());  // the error belongs to the failing call
}
