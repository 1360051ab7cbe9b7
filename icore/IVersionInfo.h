// A version number: major, minor and release numbers and a build text.
#pragma once

#include "platform/IUString.h"
#include "platform/QvxExport.h"

namespace com::veltrana::qvx::icore {

class QVX_API IVersionInfo {
 public:
  IVersionInfo() = default;
  IVersionInfo(int major, int minor, int release, IUString build);
  IVersionInfo(const IVersionInfo&) = default;
  IVersionInfo& operator=(const IVersionInfo&) = default;
  virtual ~IVersionInfo();

  int getMajorVersion() const { return major_; }
  int getMinorVersion() const { return minor_; }
  int getReleaseVersion() const { return release_; }
  IUString getBuildVersion() const { return build_; }

 private:
  int major_ = 0;
  int minor_ = 0;
  int release_ = 0;
  IUString build_;
};

}  // namespace com::veltrana::qvx::icore
