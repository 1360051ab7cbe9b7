// The marker bytes of the binary object stream. Every record starts with one of them.
//
// Stream layout (all numbers big-endian; a string is an int byte count and that many
// UTF-8 bytes; see StreamWriter.h for the primitive encodings):
//   header        01, string "14.0.0"
//   item          10 (null) | object record | 1C count {object record | 10}
//                 | primitive marker value | list marker count {element marker value | 10}
//                 | 34 (end)
//   object record 11 handle
//                 | 03 15 handle className identity 12 12            (proxy)
//                 | 03 17 handle seedIdentity                        (seeded object)
//                 | 03 descriptor (35 handle | 12) (1D identity | 12) 12 12 data
//   descriptor    04 handle className packageVersion short:declaredCount
//                    (04 descriptor | 02 handle | 12) propertyEntry*   | 02 handle
//   data          one entry per property of the descriptor's complete list, super class
//                 first: 1B (skipped) or the kind marker and the value
#pragma once

namespace com::veltrana::qvx::io {

inline constexpr char TC_SERIALIZATION_START = 1;
inline constexpr char TC_CLASSDESC_REFERENCE = 2;
inline constexpr char TC_OBJECT = 3;
inline constexpr char TC_CLASSDESC = 4;
inline constexpr char TC_BYTE = 5;
inline constexpr char TC_BOOLEAN = 6;
inline constexpr char TC_SHORT = 7;
inline constexpr char TC_INTEGER = 8;
inline constexpr char TC_LONG = 9;
inline constexpr char TC_FLOAT = 10;
inline constexpr char TC_DOUBLE = 11;
inline constexpr char TC_CHAR = 12;
inline constexpr char TC_STRING = 13;
inline constexpr char TC_BLOB = 14;
inline constexpr char TC_DATE = 15;
inline constexpr char TC_NULL = 16;
inline constexpr char TC_OBJ_REFERENCE = 17;
inline constexpr char TC_NOT_SPECIFIED = 18;
inline constexpr char TC_UDC = 19;
inline constexpr char TC_ENUM = 20;
inline constexpr char TC_PROXY = 21;
inline constexpr char TC_SEEDED = 23;
inline constexpr char TC_PRIM_COLLECTION = 24;
inline constexpr char TC_ENUM_COLLECTION = 25;
inline constexpr char TC_UDC_COLLECTION = 26;
inline constexpr char TC_PROPERTY_SKIPPED = 27;
inline constexpr char TC_LIST_OF_OBJECTS = 28;
inline constexpr char TC_IDENTITY = 29;
inline constexpr char TC_ANNOTATIONS = 30;
inline constexpr char TC_GENERIC_ANNOTATIONS = 31;
inline constexpr char TC_NAMESPACE = 32;
inline constexpr char TC_ANNOTATIONS_SKIPPED = 33;
inline constexpr char TC_BYTE_LIST = 34;
inline constexpr char TC_BOOLEAN_LIST = 35;
inline constexpr char TC_SHORT_LIST = 36;
inline constexpr char TC_INTEGER_LIST = 37;
inline constexpr char TC_LONG_LIST = 38;
inline constexpr char TC_FLOAT_LIST = 39;
inline constexpr char TC_DOUBLE_LIST = 40;
inline constexpr char TC_CHAR_LIST = 41;
inline constexpr char TC_STRING_LIST = 42;
inline constexpr char TC_DATE_LIST = 43;
inline constexpr char TC_BOXED_BYTE = 44;
inline constexpr char TC_BOXED_BOOLEAN = 45;
inline constexpr char TC_BOXED_SHORT = 46;
inline constexpr char TC_BOXED_INTEGER = 47;
inline constexpr char TC_BOXED_LONG = 48;
inline constexpr char TC_BOXED_FLOAT = 49;
inline constexpr char TC_BOXED_DOUBLE = 50;
inline constexpr char TC_BOXED_CHAR = 51;
inline constexpr char TC_STREAM_END = 52;
inline constexpr char TC_HANDLE = 53;
inline constexpr char TC_LONG_IDENTITY = 54;

// The format version that the header carries; readers accept no other.
inline constexpr const char* kStreamFormatVersion = "14.0.0";

}  // namespace com::veltrana::qvx::io

namespace com::veltrana::qvx::io {

// The primitive marker (TC_BYTE .. TC_DATE) of a core data type id (1000 to 1010), or
// 0 for any other type id.
inline constexpr char primitiveMarkerOf(int typeId) {
  switch (typeId) {
    case 1000: return TC_BYTE;
    case 1001: return TC_BLOB;
    case 1002: return TC_BOOLEAN;
    case 1003: return TC_CHAR;
    case 1004: return TC_DATE;
    case 1005: return TC_DOUBLE;
    case 1006: return TC_FLOAT;
    case 1007: return TC_INTEGER;
    case 1008: return TC_LONG;
    case 1009: return TC_SHORT;
    case 1010: return TC_STRING;
    default: return 0;
  }
}

inline constexpr bool isPrimitiveMarker(char marker) { return marker >= TC_BYTE && marker <= TC_DATE; }

}  // namespace com::veltrana::qvx::io
