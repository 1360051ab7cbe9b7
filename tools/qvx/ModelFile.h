// Reading and writing whole model files in either form: the binary object stream
// (".qvx") and the XML interchange document (".xml"). The form of a file read is told
// by its first byte, that of a file written by its extension or by choice.
#pragma once
#include <string>
#include <vector>

#include "platform/IVector.h"

namespace com::veltrana::qvx::icore {
class IObject;
}

namespace qvx_tool {

enum class FileFormat { kBinary, kXml };

// The objects of one file: its top-level objects in order, and every object the reads
// created that nothing contains, which it deletes with itself. Seeds stay with the
// seed registry.
class LoadedModel {
 public:
  LoadedModel() = default;
  LoadedModel(const LoadedModel&) = delete;
  LoadedModel& operator=(const LoadedModel&) = delete;
  ~LoadedModel();

  IVector<com::veltrana::qvx::icore::IObject*> const& roots() const { return roots_; }
  void addRoot(com::veltrana::qvx::icore::IObject* object);
  // Takes `object` over unless a container, the seed registry or this model has it.
  void adopt(com::veltrana::qvx::icore::IObject* object);

 private:
  IVector<com::veltrana::qvx::icore::IObject*> roots_;
  std::vector<com::veltrana::qvx::icore::IObject*> owned_;
};

class ModelFile {
 public:
  // The form that `path`'s extension names (".qvx" binary, ".xml" XML), or a usage error.
  static FileFormat formatOfName(std::string const& path);
  // "binary" or "xml"; anything else is a usage error.
  static FileFormat formatOfWord(std::string const& word);
  // The form of an existing file by its first byte; errors (status 2) name the file for
  // a missing, unreadable or empty file and for one that is neither form.
  static FileFormat formatOfContent(std::string const& path);
  static void load(std::string const& path, LoadedModel& into);
  static void save(IVector<com::veltrana::qvx::icore::IObject*> const& roots, std::string const& path,
                   FileFormat format);
};

}  // namespace qvx_tool
