#include "platform/WkMsgCatalog.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

namespace {

constexpr const char* kPathVariable = "QVX_MSG_CATALOG_PATH";
constexpr int kMaxNumberDigits = 9;  // keeps every number inside int range

bool isBlank(char c) { return c == ' ' || c == '\t'; }

bool isDigit(char c) { return c >= '0' && c <= '9'; }

// Letters, digits, '_' and '-' only: anything else could walk out of the catalog
// directory once it is part of a file name.
bool isSafeNamePart(std::string_view part) {
  if (part.empty()) return false;
  return std::all_of(part.begin(), part.end(), [](char c) {
    return isDigit(c) || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == '-';
  });
}

std::string environmentLocale() {
  for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    const char* value = std::getenv(variable);
    if (value != nullptr && *value != '\0') return value;
  }
  return std::string();
}

// "de_DE.UTF-8@euro" -> "de_DE"; "POSIX" and "" -> "C".
std::string normaliseLocale(std::string locale) {
  const std::size_t cut = locale.find_first_of(".@");
  if (cut != std::string::npos) locale.erase(cut);
  if (locale.empty() || locale == "POSIX") return "C";
  return locale;
}

std::string unescape(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\\' || i + 1 == text.size()) {
      out += text[i];
      continue;
    }
    switch (text[i + 1]) {
      case 'n':
        out += '\n';
        ++i;
        break;
      case 't':
        out += '\t';
        ++i;
        break;
      case '\\':
        out += '\\';
        ++i;
        break;
      default:
        out += '\\';
        break;
    }
  }
  return out;
}

// Parses one line of a catalog file; false for comments and lines that do not fit.
bool parseLine(std::string_view line, int& number, std::string& text) {
  if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
  std::size_t i = 0;
  while (i < line.size() && isBlank(line[i])) ++i;
  if (i == line.size() || line[i] == '#') return false;

  const std::size_t digitsStart = i;
  int value = 0;
  while (i < line.size() && isDigit(line[i])) {
    if (i - digitsStart == kMaxNumberDigits) return false;
    value = value * 10 + (line[i] - '0');
    ++i;
  }
  if (i == digitsStart || i == line.size() || !isBlank(line[i])) return false;
  while (i < line.size() && isBlank(line[i])) ++i;
  if (i == line.size()) return false;

  number = value;
  text = unescape(line.substr(i));
  return true;
}

}  // namespace

IUString WkMsgCatalog::messageLocale() { return IUString(normaliseLocale(environmentLocale()).c_str()); }

bool WkMsgCatalog::open(const IUString& name, const IUString& locale) {
  path_.clear();
  texts_.clear();
  const char* directory = std::getenv(kPathVariable);
  if (directory == nullptr || *directory == '\0') return false;

  const std::string catalogName = name.toUtf8();
  if (!isSafeNamePart(catalogName)) return false;
  const std::string fullLocale = locale.isEmpty() ? normaliseLocale(environmentLocale()) : locale.toUtf8();

  std::vector<std::string> candidates;
  if (isSafeNamePart(fullLocale)) {
    candidates.push_back(fullLocale);
    const std::size_t underscore = fullLocale.find('_');
    if (underscore != std::string::npos && underscore > 0) candidates.push_back(fullLocale.substr(0, underscore));
  }
  if (std::find(candidates.begin(), candidates.end(), "C") == candidates.end()) candidates.emplace_back("C");

  std::string base(directory);
  if (base.back() != '/') base += '/';
  for (const std::string& candidate : candidates) {
    const std::string path = base + "wk_" + catalogName + "_" + candidate;
    if (loadFile(IUString::fromUtf8(path))) return true;
  }
  return false;
}

bool WkMsgCatalog::loadFile(const IUString& path) {
  path_.clear();
  texts_.clear();
  const std::string file = path.toUtf8();
  // A directory would open as a stream that reads nothing and hide later candidates.
  std::error_code ignored;
  if (!std::filesystem::is_regular_file(file, ignored)) return false;
  std::ifstream in(file, std::ios::in | std::ios::binary);
  if (!in) return false;

  std::string line;
  std::string text;
  bool firstLine = true;
  while (std::getline(in, line)) {
    std::string_view view(line);
    if (firstLine && view.substr(0, 3) == "\xEF\xBB\xBF") view.remove_prefix(3);
    firstLine = false;
    int number = 0;
    if (!parseLine(view, number, text)) continue;
    texts_.emplace_back(number, IUString::fromUtf8(text));
  }

  // Sort by number keeping file order among equal numbers, then keep the last of each.
  std::stable_sort(texts_.begin(), texts_.end(),
                   [](const auto& a, const auto& b) { return a.first < b.first; });
  std::vector<std::pair<int, IUString>> unique;
  unique.reserve(texts_.size());
  for (auto& entry : texts_) {
    if (!unique.empty() && unique.back().first == entry.first) {
      unique.back().second = std::move(entry.second);
    } else {
      unique.push_back(std::move(entry));
    }
  }
  texts_ = std::move(unique);
  path_ = path;
  return true;
}

bool WkMsgCatalog::getMessage(int number, IUString& text) const {
  const auto found = std::lower_bound(texts_.begin(), texts_.end(), number,
                                      [](const auto& entry, int key) { return entry.first < key; });
  if (found == texts_.end() || found->first != number) return false;
  text = found->second;
  return true;
}
