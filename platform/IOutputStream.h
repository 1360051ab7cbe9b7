// The byte output stream of the platform layer. The XML writer and the seed
// registry's dump write through it, so they need not know whether the bytes end
// in a file, a string or a socket. Text goes out as UTF-8.
#pragma once

#include <cstddef>
#include <string_view>

#include "platform/IUString.h"
#include "platform/QvxExport.h"

// Implementations decide where bytes go and how they are buffered; the convenience
// operations below all end in write(bytes, n). Not synchronised.
class QVX_API IOutputStream {
 public:
  virtual ~IOutputStream();

  virtual void write(const char* bytes, std::size_t count) = 0;
  // Pushes every byte written so far to the final destination.
  virtual void flush() = 0;

  void write(std::string_view text) { write(text.data(), text.size()); }
  // Narrow text up to its NUL; a null pointer writes nothing. (Also keeps a string
  // literal from being ambiguous between the string_view and IUString overloads.)
  void write(const char* text) {
    if (text != nullptr) write(std::string_view(text));
  }
  // Writes the UTF-8 form of `text`, in pieces through a small local buffer, so no
  // string is allocated.
  void write(const IUString& text);

  IOutputStream& operator<<(const char* text) {
    write(text);
    return *this;
  }
  IOutputStream& operator<<(std::string_view text) {
    write(text);
    return *this;
  }
  IOutputStream& operator<<(const IUString& text) {
    write(text);
    return *this;
  }
  IOutputStream& operator<<(char c) {
    write(&c, 1);
    return *this;
  }
  // Integers in decimal.
  IOutputStream& operator<<(int value) { return writeSigned(value); }
  IOutputStream& operator<<(long value) { return writeSigned(value); }
  IOutputStream& operator<<(long long value) { return writeSigned(value); }
  IOutputStream& operator<<(unsigned value) { return writeUnsigned(value); }
  IOutputStream& operator<<(unsigned long value) { return writeUnsigned(value); }
  IOutputStream& operator<<(unsigned long long value) { return writeUnsigned(value); }

 protected:
  IOutputStream() = default;
  IOutputStream(const IOutputStream&) = default;
  IOutputStream& operator=(const IOutputStream&) = default;

 private:
  IOutputStream& writeSigned(long long value);
  IOutputStream& writeUnsigned(unsigned long long value);
};
