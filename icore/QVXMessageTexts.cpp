// The English texts of the "qvxmsg" catalog. Placeholders follow IUString::format:
// %s for names and texts, %d for integers (an index, a handle, a marker value). Each
// text takes exactly the arguments its callers pass, in the order they pass them; a
// catalog file (WkMsgCatalog) may replace single texts for a locale.
#include "icore/QVXMessageTexts.h"

#include <algorithm>
#include <iterator>

namespace com::veltrana::qvx::icore::detail {

namespace {

constexpr QVXMessageText kTexts[] = {
    // 73xxx: metamodel and runtime.
    {73000, u"Cannot create an instance of class %s: the class is abstract."},
    {73002, u"The data type or class %s is not handled by this factory."},
    {73003, u"Metamodel objects have no proxies: the core factory cannot create a proxy."},
    {73004, u"The core factory does not create instances of this class."},
    {73005, u"Property %s is not a readable property of %s."},
    {73006, u"Property %s is not a settable property of %s."},
    {73007, u"A different package is already registered under the qualified name %s."},
    {73008, u"Class %s is not identifiable: its objects have no identity."},
    {73009, u"A null pointer was passed where a package or an object is required."},
    {73010, u"Multi-valued property %s of %s cannot be set as a whole; change the collection that get returns."},
    {73011, u"Package %s does not contain the class %s."},

    // 74xxx: identities and their string forms.
    {74000, u"The identity has no identity externalizer, so it cannot be turned into text."},
    {74001, u"No identity externalizer is registered for the prefix %s."},
    {74002, u"The object already has an identity; an identity is set once and never replaced."},

    // 75xxx: object info, proxies and primitive values.
    {75000, u"The object is an unresolved proxy; resolve it before this operation."},
    {75001, u"The object is not a proxy."},
    {75002, u"A proxy cannot be resolved to a null object."},
    {75003, u"A proxy can only be resolved to an object of exactly its own class."},
    {75004, u"The property values of an unresolved proxy cannot be read or written."},
    {75007, u"A proxy cannot be created without an identity."},
    {75008, u"A proxy cannot be created for an abstract class."},
    {75009, u"Class %s is not identifiable, so no proxy can be created for it."},
    {75010, u"The primitives factory creates no proxies; cannot create a proxy of class %s."},

    // 76xxx: seeds, the encryption provider, package libraries and resources.
    {76000, u"The seed file %s could not be opened."},
    {76004, u"The resource %s was not found."},
    {76005, u"No package library resolver is registered, so the library of package %s cannot be found."},
    {76006, u"Directories searched, from %s: %s"},
    {76011, u"The encryption provider library %s returned no provider."},
    {76012, u"The package library resolver failed for package %s: %s"},
    {76013, u"The package library resolver named no library for package %s."},
    {76014, u"The package library %s was loaded, but building its packages failed: %s"},

    // 77xxx: set-up of the XML serializer and reader, and the logger.
    {77000, u"The XML deserializer was given no input stream."},
    {77001, u"Creating an XML deserializer without an input stream."},
    {77002, u"The XML deserializer has no input stream to read."},
    {77003, u"The XML environment of the XML deserializer could not be started."},
    {77004, u"The XML document could not be parsed."},
    {77005, u"The list of objects to serialize is empty."},
    {77006, u"The XML environment of the XML serializer could not be initialized."},
    {77007, u"Writing the XML document failed."},
    {77008, u"An object in the list to serialize has no runtime record."},
    {77009, u"The object at index %d of the list to serialize is not of an identifiable class."},
    {77010, u"An object of the seeded class %s has no identity."},
    {77011, u"Two different objects carry the same id %s."},
    {77012, u"A value of the multi-valued string property %s contains a blank in its written form: %s"},
    {77013, u"The log file could not be opened for appending."},
    {77014, u"The object at index %d of the list to serialize is a proxy; a proxy cannot be serialized."},

    // 78xxx: XML reading.
    {78000, u"Starting to read an XML document."},
    {78001, u"Reading the XML document with the options: %s"},
    {78002, u"Reading the XML document with no options set."},
    {78003, u"Created the XML parser; parsing the document."},
    {78004, u"Finished reading the XML document."},
    {78005, u"Container element: nothing to create."},
    {78006, u"Creating the object of an element with an id."},
    {78007, u"Creating a value-class object."},
    {78008, u"Reading a reference element."},
    {78009, u"Creating a proxy object."},
    {78010, u"Reading a blob element."},
    {78011, u"Reading the attributes of the root element."},
    {78012, u"Entering annotations; their content is ignored."},
    {78013, u"Unknown element %s."},
    {78014, u"Ignoring an element inside annotations."},
    {78015, u"End of element %s."},
    {78016, u"Read the top-level object with identity %s."},
    {78018, u"Wrapper element of a property written as elements."},
    {78029, u"End of the document: resolving references."},
    {78043, u"The package %s is not registered; loading its package library."},
    {78044, u"The package library of %s could not be loaded: %s"},
    {78046, u"Start of an element."},
    {78047, u"The value of property %s could not be set from the text: %s"},
    {78048, u"The root element declares a namespace with the attribute \"xmlns:\" but no prefix."},
    {78049, u"The root element has no serializationSpecVersion attribute."},
    {78050, u"The document's serializationSpecVersion is %s; this reader expects version %s."},
    {78052, u"The reference of property %s of object %s to the id %s cannot be resolved."},
    {78053, u"The type of property %s is not a data type, so the property cannot hold a list of values."},
    {78054, u"Property %s has no value list to append values to."},
    {78055, u"The type of property %s is not one of the built-in data types."},
    {78056, u"Package %s: the document was written with version %s, whose major version differs from that of "
            u"the registered version %s."},
    {78057, u"The document declares no version for a package that it uses; the version check is skipped."},
    {78058, u"The attribute %s names no property of class %s."},
    {78063, u"Property %s holds blobs, so it cannot hold a list of values."},
    {78064, u"Reading a property element."},
    {78065, u"The value %s of property %s of class %s is not valid."},
    {78066, u"The document has a document type declaration; XML interchange documents never have one."},
    {78067, u"The external resource %s is not available to XML documents."},
    {78068, u"The id %s is given to more than one object."},
    {78069, u"The type %s of element %s is not a class of a known package."},
    {78070, u"Property %s of class %s cannot refer to the object %s of class %s."},
    {78071, u"The object %s cannot be contained by property %s: it is contained already or would contain itself."},
    {78072, u"The blob %s named by property %s is not in the document."},
    {78073, u"The schema %s for namespace %s was not found and is not used for validation: %s"},
    {78074, u"Property %s of class %s is a containment and cannot be given as an attribute."},

    // 79xxx: XML writing.
    {79000, u"Starting to serialize objects to XML."},
    {79001, u"Finished serializing objects to XML."},
    {79002, u"Starting to serialize objects to XML with the options: %s"},
    {79003, u"Finished serializing objects to XML with the options: %s"},
    {79004, u"The object with id %s has already been written."},
    {79005, u"%sWriting element %s with id %s."},
    {79006, u"%sWriting proxy element %s with id %s."},
    {79007, u"Writing property %s."},
    {79009, u"Writing the reference to the identifiable object %s as a proxy."},
    {79010, u"Generated the identity %s for an object of class %s."},
    {79012, u"The schema file %s could not be opened: %s"},
    {79013, u"Could not seek to the end of the schema file."},
    {79014, u"Could not determine the size of the schema file."},
    {79015, u"The schema file could not be read completely."},

    // 80xxx: binary output stream and stream writer.
    {80001, u"The binary output stream was given no output stream."},
    {80002, u"The underlying stream is no longer in a good state: a read or write failed or the data ended."},
    {80004, u"The collection to write is empty."},
    {80005, u"An object of class %s was already written but has no handle."},
    {80006, u"A seeded object of class %s has no identity string."},
    {80007, u"The collection to write is null."},
    {80009, u"Memory for the string conversion buffer could not be allocated."},

    // 81xxx: binary input stream and object reading.
    {81001, u"The binary input stream was given no input stream."},
    {81002, u"Unsupported binary stream version %s; this reader accepts only version %s."},
    {81003, u"The next item of the stream is not of the type being read."},
    {81004, u"Unexpected marker in the stream: expected one of [%s], found %d."},
    {81005, u"An object reference names a handle under which no object has been read."},
    {81006, u"Unexpected primitive type in the object data."},
    {81007, u"A property value read from the stream could not be set on the object."},
    {81008, u"The seeded object named in the stream is not known to the seed registry."},
    {81009, u"The library of package %s could not be loaded: %s"},
    {81010, u"The class %s cannot be resolved: package %s is not registered."},
    {81011, u"The class %s is not in package %s."},
    {81012, u"No class descriptor has been read under handle %d."},
    {81013, u"The next item is a list of objects; read it with readObjects."},
    {81014, u"The list in the stream cannot be read as a list of objects."},
    {81015, u"The end of the stream has been reached."},
    {81016, u"Skipping a boxed primitive value; it yields no object."},
    {81017, u"Package %s: the stream was written with version %s, whose major version differs from that of the "
            u"registered version %s."},
    {81018, u"The count or length %d read at binary stream offset %lld is negative."},
    {81019, u"The class descriptors read up to binary stream offset %lld inherit more property entries than the stream "
            u"can describe."},

    // 82xxx: handle manager of the binary streams.
    {82001, u"An object of class %s already has the handle %d."},
    {82002, u"Handle %d already holds an object of class %s; it cannot be given to an object of class %s."},
    {82003, u"Handle %d already holds a different class descriptor."},
};

constexpr bool isStrictlySorted() {
  for (std::size_t i = 1; i < std::size(kTexts); ++i) {
    if (kTexts[i - 1].number >= kTexts[i].number) return false;
  }
  return true;
}
static_assert(isStrictlySorted(), "the message table must be sorted by number, without duplicates");

}  // namespace

const QVXMessageText* qvxMessageTexts() { return kTexts; }

std::size_t qvxMessageTextCount() { return std::size(kTexts); }

const char16_t* findQVXMessageText(int number) {
  const auto* end = std::end(kTexts);
  const auto* found = std::lower_bound(std::begin(kTexts), end, number,
                                       [](const QVXMessageText& entry, int key) { return entry.number < key; });
  return found != end && found->number == number ? found->text : nullptr;
}

}  // namespace com::veltrana::qvx::icore::detail
