#include "platform/DynLoadLib.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using MathFunction = double (*)(double);

TEST(DynLoadLibTest, MissingLibraryFailsWithTheLoaderTextNamingIt) {
  DynLoadLib library;
  EXPECT_EQ(library.load("libqvx-no-such-library.so"), ISTATUS_FAILURE);
  EXPECT_FALSE(library.isLoaded());
  EXPECT_NE(library.getError().toUtf8().find("libqvx-no-such-library.so"), std::string::npos)
      << library.getError().toUtf8();
  EXPECT_EQ(library.getFunctionAddr("cos"), nullptr);
  EXPECT_NE(library.getError().toUtf8().find("cos"), std::string::npos);
}

TEST(DynLoadLibTest, FindsFunctionsOfASystemLibrary) {
  DynLoadLib library;
  ASSERT_EQ(library.load("libm.so.6"), ISTATUS_SUCCESS) << library.getError().toUtf8();
  EXPECT_TRUE(library.getError().isEmpty());
  auto cosine = reinterpret_cast<MathFunction>(library.getFunctionAddr("cos"));
  ASSERT_NE(cosine, nullptr);
  EXPECT_EQ(cosine(0.0), 1.0);

  EXPECT_EQ(library.getFunctionAddr("qvxNoSuchSymbol"), nullptr);
  EXPECT_NE(library.getError().toUtf8().find("qvxNoSuchSymbol"), std::string::npos) << library.getError().toUtf8();
  // The error belongs to the failing call: a later success clears it.
  EXPECT_NE(library.getFunctionAddr("sin"), nullptr);
  EXPECT_TRUE(library.getError().isEmpty());
}

TEST(DynLoadLibTest, FailedLoadKeepsTheLibraryAlreadyLoaded) {
  DynLoadLib library;
  ASSERT_EQ(library.load("libm.so.6"), ISTATUS_SUCCESS);
  EXPECT_EQ(library.load("/nonexistent/dir/libx.so"), ISTATUS_FAILURE);
  EXPECT_NE(library.getError().toUtf8().find("/nonexistent/dir/libx.so"), std::string::npos);
  EXPECT_TRUE(library.isLoaded());
  EXPECT_EQ(library.getFileName(), IUString("libm.so.6"));
  EXPECT_NE(library.getFunctionAddr("cos"), nullptr);
}

TEST(DynLoadLibTest, EmptyNameDoesNotOpenTheMainProgram) {
  DynLoadLib library;
  EXPECT_EQ(library.load(""), ISTATUS_FAILURE);
  EXPECT_FALSE(library.isLoaded());
  EXPECT_FALSE(library.getError().isEmpty());
}

}  // namespace
