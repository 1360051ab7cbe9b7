#include "bench/CatalogDocument.h"

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "icore/IClass.h"
#include "icore/ICoreDatatypes.h"
#include "icore/IDatatype.h"
#include "icore/IEnumerationLiteral.h"
#include "icore/IObject.h"
#include "icore/IObjectInfo.h"
#include "icore/IProperty.h"
#include "icore/IRedefinability.h"
#include "icore/QVXRuntime.h"

namespace qvx_bench {

namespace {

namespace icore = com::veltrana::qvx::icore;
using icore::ICoreDatatypes;
using icore::IObject;
using icore::IProperty;

// The format's escaping of a string, computed on its UTF-8 bytes.
std::string escape(const IUString& text) {
  if (text.isEmpty()) return "*";
  static const char kHex[] = "0123456789ABCDEF";
  std::string escaped;
  for (unsigned char byte : text.toUtf8()) {
    const bool plain = (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z') || (byte >= '0' && byte <= '9') ||
                       byte == '-' || byte == '.' || byte == ':' || byte == '_';
    if (plain) {
      escaped += static_cast<char>(byte);
    } else if (byte == ' ') {
      escaped += '+';
    } else {
      escaped += '%';
      escaped += kHex[byte >> 4];
      escaped += kHex[byte & 15];
    }
  }
  return escaped;
}

// A text that needs no escaping inside an attribute or element (escaped texts and
// the text forms of numbers, dates and Base64 never contain markup characters).
class DocumentWriter {
 public:
  std::string write(IObject const* root) {
    std::string body;
    // Work items: an object to open (with its element name and xsi:type), or text.
    struct Item {
      IObject const* object;
      std::string element;
      bool typed;
      std::string text;
    };
    std::vector<Item> pending{{root, "cat:" + classOf(root).getName().toUtf8(), false, {}}};
    while (!pending.empty()) {
      Item item = std::move(pending.back());
      pending.pop_back();
      if (item.object == nullptr) {
        body += item.text;
        continue;
      }
      std::vector<Item> children;
      body += openTag(*item.object, item.element, item.typed, children);
      pending.push_back({nullptr, {}, false, "</" + item.element + ">\n"});
      for (auto child = children.rbegin(); child != children.rend(); ++child) pending.push_back(std::move(*child));
    }
    std::string blobs;
    if (!blobs_.empty()) {
      blobs = "<ozl:IBlobs>\n" + blobs_ + "</ozl:IBlobs>\n";
    }
    return std::string("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!-- Veltrana proprietary -->\n") +
           "<ozl:OZL xmlns:ozl=\"http://www.veltrana.com/qvx/OZL\" xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "
           "serializationSpecVersion=\"14.0\" xmlns:cat=\"http://com.example.catalog/1\" versioncat=\"1.2.0\">\n" +
           body + blobs + "</ozl:OZL>\n";
  }

 private:
  template <typename Item>
  std::string openTag(IObject const& object, const std::string& element, bool typed, std::vector<Item>& children) {
    icore::IObjectInfo const& info = infoOf(object);
    icore::IClass const& objectClass = classOf(&object);
    std::string tag = "<" + element;
    if (objectClass.isValueClass() == IFALSE) tag += " ozl:id=\"" + identityOf(&object) + "\"";
    if (typed) tag += " xsi:type=\"cat:" + objectClass.getName().toUtf8() + "\"";
    std::string elements;
    for (IProperty const* property : objectClass.getAllProperties(IFALSE)) {
      if (&property->getRedefinability() == &icore::IRedefinability::ABSTRACT_PROPERTY) continue;
      void const* value = info.get(*property, ITRUE);
      if (value == nullptr) continue;
      const std::string name = property->getName().toUtf8();
      icore::IType const* type = property->getType();
      if (type->isClass() != IFALSE && property->isContainment() != IFALSE) {
        addContained(*property, value, children);
      } else if (type->isClass() != IFALSE) {
        const std::string ids = joined(*property, value, [this](void const* target) {
          return identityOf(static_cast<IObject const*>(target));
        });
        if (!ids.empty()) tag += " " + name + "=\"" + ids + "\"";
      } else if (type->isEnum() != IFALSE) {
        const std::string literals = joined(*property, value, [](void const* literal) {
          return escape(static_cast<icore::IEnumerationLiteral const*>(literal)->getName());
        });
        if (!literals.empty() && (property->isCollection() != IFALSE || literals != escape(property->getDefaultValueLiteral()))) {
          tag += " " + name + "=\"" + literals + "\"";
        }
      } else {
        addDatatype(info, *property, value, tag, elements);
      }
    }
    if (!elements.empty()) children.insert(children.begin(), Item{nullptr, {}, false, elements});
    return tag + ">\n";
  }

  template <typename Item>
  void addContained(IProperty const& property, void const* value, std::vector<Item>& children) {
    const std::string name = property.getName().toUtf8();
    if (property.isCollection() == IFALSE) {
      children.push_back({static_cast<IObject const*>(value), name, true, {}});
      return;
    }
    auto const& items = *static_cast<IVector<IObject*> const*>(value);
    if (items.isEmpty()) return;
    children.push_back({nullptr, {}, false, "<" + name + ">\n"});
    for (IObject* item : items) children.push_back({item, property.getType()->getName().toUtf8(), true, {}});
    children.push_back({nullptr, {}, false, "</" + name + ">\n"});
  }

  void addDatatype(icore::IObjectInfo const& info, IProperty const& property, void const* value, std::string& tag,
                   std::string& elements) {
    auto const& datatype = *static_cast<icore::IDatatype const*>(property.getType());
    const int typeId = datatype.getTypeId();
    const std::string name = property.getName().toUtf8();
    std::string text;
    if (property.isCollection() != IFALSE) {
      if (typeId == ICoreDatatypes::BLOB_TYPE_ID) return;
      text = joined(property, value, [&](void const* item) { return valueText(datatype, item, 0); });
      if (text.empty()) return;
    } else if (typeId == ICoreDatatypes::BLOB_TYPE_ID) {
      unsigned int length = 0;
      void const* bytes = info.get(property, &length, ITRUE);
      const std::string id = "ID_" + std::to_string(++blobCounter_);
      blobs_ += "<IBlob ozl:id=\"" + id + "\" xsi:type=\"ozl:IBlob\">" + valueText(datatype, bytes, length) + "</IBlob>\n";
      text = id;
    } else {
      text = valueText(datatype, value, 0);
      if (text == defaultText(property)) return;
    }
    if (property.getXMLPropertyAsElement() != IFALSE) {
      const std::string wrapper = property.getXMLPropertyElementName().toUtf8();
      elements += "<" + wrapper + "><" + name + ">" + text + "</" + name + "></" + wrapper + ">\n";
    } else {
      tag += " " + name + "=\"" + text + "\"";
    }
  }

  static std::string valueText(icore::IDatatype const& datatype, void const* value, unsigned int length) {
    std::unique_ptr<IUString> text(ICoreDatatypes::primitiveToString(datatype, value, length));
    if (!text) return std::string();
    const int typeId = datatype.getTypeId();
    if (typeId == ICoreDatatypes::STRING_TYPE_ID || typeId == ICoreDatatypes::CHARACTER_TYPE_ID) return escape(*text);
    std::string plain = text->toUtf8();
    if (typeId == ICoreDatatypes::BLOB_TYPE_ID) plain.erase(std::remove(plain.begin(), plain.end(), '\n'), plain.end());
    return plain;
  }

  // The default literal in written form, as the format compares it.
  static std::string defaultText(IProperty const& property) {
    IUString const& literal = property.getDefaultValueLiteral();
    auto const& datatype = *static_cast<icore::IDatatype const*>(property.getType());
    const int typeId = datatype.getTypeId();
    if (typeId == ICoreDatatypes::STRING_TYPE_ID || typeId == ICoreDatatypes::CHARACTER_TYPE_ID) return escape(literal);
    if (typeId != ICoreDatatypes::FLOAT_TYPE_ID && typeId != ICoreDatatypes::DOUBLE_TYPE_ID) return literal.toUtf8();
    unsigned int length = 0;
    void* parsed = ICoreDatatypes::primitiveFromString(datatype, literal, &length);
    std::string text = valueText(datatype, parsed, 0);
    ICoreDatatypes::deletePrimitive(datatype, parsed);
    return text;
  }

  template <typename Text>
  static std::string joined(IProperty const& property, void const* value, Text&& textOf) {
    if (property.isCollection() == IFALSE) return textOf(value);
    std::string words;
    for (void const* item : *static_cast<IVector<void*> const*>(value)) {
      if (item == nullptr) continue;
      if (!words.empty()) words += ' ';
      words += textOf(item);
    }
    return words;
  }

  static icore::IObjectInfo const& infoOf(IObject const& object) {
    return *icore::QVXRuntime::getInstance()->getIObjectInfo(&object);
  }
  static icore::IClass const& classOf(IObject const* object) { return *infoOf(*object).getIClass(); }
  static std::string identityOf(IObject const* object) {
    return escapeIfNeeded(icore::QVXRuntime::getInstance()->identityToString(infoOf(*object).getIdentity()));
  }
  static std::string escapeIfNeeded(const IUString& id) {
    return id.startsWith(IUString("uuidV1:")) ? id.toUtf8() : escape(id);
  }

  std::string blobs_;
  int blobCounter_ = 0;
};

}  // namespace

std::string catalogDocumentText(IObject const* catalog) { return DocumentWriter().write(catalog); }

}  // namespace qvx_bench
