// The platform's message-catalog service: loads the message texts of one catalog for
// one locale from a catalog file, so that installations can translate or reword the
// texts that the library has compiled in.
//
// Where the file is looked for. `open(name, locale)` tries the file names
// "wk_<name>_<locale>" in the directory named by the environment variable
// QVX_MSG_CATALOG_PATH (for the catalog "qvxmsg" that is the "wk_qvxmsg_%s" family),
// first for the locale as given ("en_US"), then for its language alone ("en"), then
// for "C". The first file that opens is loaded; later candidates are not merged in.
// With QVX_MSG_CATALOG_PATH unset or empty no file is looked for at all. An empty
// locale means the process's message locale: the first non-empty value of LC_ALL,
// LC_MESSAGES and LANG, without its ".codeset" and "@modifier" parts ("de_DE.UTF-8"
// gives "de_DE"); "POSIX" and an unset locale count as "C". Names and locales made of
// other characters than letters, digits, '_' and '-' are not used to build a path.
//
// File format. UTF-8 text, one message per line:
//     NUMBER<TAB or blanks>TEXT
//   - NUMBER is a decimal message number (digits only, at most 9 of them);
//   - TEXT runs to the end of the line; the escapes \n, \t and \\ stand for a newline,
//     a tab and a backslash, any other backslash is kept as written;
//   - blank lines and lines whose first non-blank character is '#' are comments;
//   - a UTF-8 byte-order mark at the start and a '\r' before a line end are ignored;
//   - when a number appears twice, the later line wins.
// A line that does not fit (no number, no separator, an empty text) is skipped, and
// invalid UTF-8 is replaced as IUString does, so a damaged file never stops the
// catalog from loading the lines that are fine.
//
// A WkMsgCatalog is not synchronised; the owner guards it (IMsgCatalogImpl looks
// texts up under its lock).
#pragma once

#include <cstddef>
#include <utility>
#include <vector>

#include "platform/IUString.h"
#include "platform/QvxExport.h"

class QVX_API WkMsgCatalog {
 public:
  WkMsgCatalog() = default;

  // Looks for the catalog file of `name` and `locale` as described above and loads
  // it. Returns true when a file was loaded. Without a file the catalog is empty,
  // which is not an error: callers fall back to their compiled-in texts.
  bool open(const IUString& name, const IUString& locale);

  // Loads one catalog file, replacing the texts held so far. Returns false (and
  // leaves the catalog empty) when the file cannot be opened.
  bool loadFile(const IUString& path);

  // The text of `number`; false, with `text` left alone, when the file had none.
  bool getMessage(int number, IUString& text) const;

  // The file that was loaded, empty if none.
  const IUString& getPath() const { return path_; }
  std::size_t size() const { return texts_.size(); }

  // The process's message locale as described above ("C" when none is set).
  static IUString messageLocale();

 private:
  IUString path_;
  std::vector<std::pair<int, IUString>> texts_;  // sorted by number, unique
};
