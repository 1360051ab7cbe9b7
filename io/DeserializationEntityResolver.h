// Supplies the XML reader with the schema documents it may read, and nothing else: a
// name is looked up with the resource resolver on the local file system; external
// entities, DTDs and anything on the network are refused.
#pragma once

#include <string>

#include "utils/TXMLEntityHandler.h"

namespace com::veltrana::qvx::utils {
class ILoggerUtils;
class TXMLSAXModel;
}  // namespace com::veltrana::qvx::utils

namespace com::veltrana::qvx::io {

class DeserializationEntityResolver : public utils::TXMLEntityHandler {
 public:
  explicit DeserializationEntityResolver(utils::ILoggerUtils& logger);
  ~DeserializationEntityResolver() override;

  // Supplies schema files only: the last path segment of `systemId` as a resource name.
  IBOOLEAN resolveEntity(const IUString& publicId, const IUString& systemId, std::string& content) override;

  // Adds to `model` every schema that the value of an xsi:schemaLocation attribute
  // names (namespace and location pairs) and the resource resolver finds. A schema not
  // found is logged as a warning (78073) and left out.
  void addSchemasNamedBy(const IUString& schemaLocation, utils::TXMLSAXModel& model);

 private:
  // The content of resource `name`, or false with the resolver's message in `error`.
  static bool readResource(const IUString& name, std::string& content, IUString& error);

  utils::ILoggerUtils& logger_;
};

}  // namespace com::veltrana::qvx::io
