#include "platform/WkSystem.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

// A fresh directory under the system's temporary directory, removed afterwards
// with everything the test put in it (one level deep).
class WkSystemTest : public testing::Test {
 protected:
  void SetUp() override {
    char pattern[] = "/tmp/qvx-wksystem-XXXXXX";
    ASSERT_NE(mkdtemp(pattern), nullptr);
    root_ = pattern;
  }
  void TearDown() override {
    for (const char* name : {"/logs", "/file"}) {
      rmdir((root_ + name).c_str());
      std::remove((root_ + name).c_str());
    }
    rmdir(root_.c_str());
  }
  std::string root_;
};

TEST_F(WkSystemTest, GetEnvReadsUtf8AndGivesEmptyWhenUnset) {
  const char* name = "QVX_WKSYSTEM_TEST_VARIABLE";
  ASSERT_EQ(setenv(name, "/opt/r\xC3\xA9sources;/x", 1), 0);
  EXPECT_EQ(wkGetEnv(name), IUString(u"/opt/r\u00e9sources;/x"));
  unsetenv(name);
  EXPECT_TRUE(wkGetEnv(name).isEmpty());
  EXPECT_TRUE(wkGetEnv("").isEmpty());
}

TEST_F(WkSystemTest, CreateDirMakesAnAccessibleDirectoryAndAcceptsAnExistingOne) {
  const IUString logs = IUString::fromUtf8(root_ + "/logs");
  EXPECT_FALSE(wkAccess(logs));
  ASSERT_EQ(wkCreateDir(logs), ISTATUS_SUCCESS);
  EXPECT_TRUE(wkAccess(logs));
  EXPECT_TRUE(WkSystem::access(logs, WkSystem::kReadable | WkSystem::kWritable));
  EXPECT_EQ(wkCreateDir(logs), ISTATUS_SUCCESS);
}

TEST_F(WkSystemTest, CreateDirFailsWithAReasonForAMissingParentOrAFile) {
  IUString error;
  EXPECT_EQ(WkSystem::createDir(IUString::fromUtf8(root_ + "/missing/logs"), &error), ISTATUS_FAILURE);
  EXPECT_NE(error.toUtf8().find(root_ + "/missing/logs"), std::string::npos) << error.toUtf8();

  const std::string file = root_ + "/file";
  std::FILE* handle = std::fopen(file.c_str(), "w");
  ASSERT_NE(handle, nullptr);
  std::fclose(handle);
  EXPECT_EQ(wkCreateDir(IUString::fromUtf8(file)), ISTATUS_FAILURE);
  EXPECT_TRUE(wkAccess(IUString::fromUtf8(file)));
  EXPECT_FALSE(WkSystem::access(IUString::fromUtf8(file), WkSystem::kExecutable));
  EXPECT_EQ(wkCreateDir(""), ISTATUS_FAILURE);
  EXPECT_FALSE(wkAccess(""));
}

}  // namespace
