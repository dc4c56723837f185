#include "host/odbc/odbc_attributes.h"

#include <algorithm>
#include <array>

#include "base/text.h"

namespace zuvi::host {
namespace {

/// In the name of whatever holds a password, misspelled and in Spanish too.
constexpr std::array kSecrets{"pwd", "pass", "contrase", "clave", "secret"};
/// What only a connection string has, wherever it stands in it.
constexpr std::array kTelltale{"DRIVER", "DSN", "FILEDSN", "SERVER", "UID", "USER"};
/// Names by which a string is known that lacks what to connect with.
constexpr std::array kUsual{"DRIVER", "DSN",      "FILEDSN", "SERVER",  "DATABASE", "UID",     "USER",
                            "PWD",    "PASSWORD", "SOCKET",  "CHARSET", "OPTION",   "SAVEFILE"};

template <class List>
bool IsAnyOf(const List& list, std::string_view name) {
  return std::ranges::any_of(list, [&](const char* one) { return EqualsIgnoringCase(one, name); });
}

bool IsSecret(std::string_view name) {
  const std::string lower = ToLower(name);
  return std::ranges::any_of(kSecrets,
                             [&](const char* part) { return lower.find(part) != std::string::npos; });
}

/// Attribute names are words; what has a dot or a slash in it is part of a file's name.
bool IsName(std::string_view name) {
  return !name.empty() && std::ranges::all_of(name, [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
           c == ' ' || static_cast<unsigned char>(c) >= 0x80;
  });
}

struct ParsedValue {
  std::size_t end = 0;  // at the semicolon after it, or the end of the string
  bool complete = true;
};

/// Inside braces a semicolon is part of the value and "}}" is a brace.
ParsedValue ReadValue(std::string_view connection_string, std::size_t from) {
  std::size_t i = std::min(connection_string.find_first_not_of(' ', from), connection_string.size());
  ParsedValue value;
  if (i < connection_string.size() && connection_string[i] == '{') {
    value.complete = false;
    for (++i; i < connection_string.size(); ++i) {
      if (connection_string[i] != '}') continue;
      if (i + 1 < connection_string.size() && connection_string[i + 1] == '}') {
        ++i;
        continue;
      }
      ++i;
      value.complete = Trim(connection_string.substr(
                                i, std::min(connection_string.find(';', i), connection_string.size()) - i))
                           .empty();
      break;
    }
  }
  value.end = std::min(connection_string.find(';', i), connection_string.size());
  return value;
}

}  // namespace

OdbcAttributes::OdbcAttributes(std::string_view connection_string) {
  for (std::size_t start = 0; start < connection_string.size();) {
    const std::size_t equals = connection_string.find('=', start);
    const std::size_t cut = std::min(connection_string.find(';', start), connection_string.size());
    if (cut < equals || equals == std::string_view::npos) {
      if (!Trim(connection_string.substr(start, cut - start)).empty() && defect_.empty())
        defect_ = "hay una parte sin «=»";
      start = cut + 1;
      continue;
    }
    const std::string name(Trim(connection_string.substr(start, equals - start)));
    const ParsedValue value = ReadValue(connection_string, equals + 1);
    if (defect_.empty() && !IsName(name)) defect_ = "hay un valor sin nombre de atributo";
    if (defect_.empty() && !value.complete) defect_ = "las llaves de " + name + " no cierran donde termina";
    if (!Has(name))
      attributes_.emplace_back(name, Trim(connection_string.substr(equals + 1, value.end - equals - 1)));
    start = value.end + 1;
  }
}

std::string OdbcAttributes::Get(std::string_view name) const {
  for (const auto& [key, value] : attributes_) {
    if (!EqualsIgnoringCase(key, name)) continue;
    if (value.size() < 2 || value.front() != '{' || value.back() != '}') return value;
    std::string plain;
    for (std::size_t i = 1; i + 1 < value.size(); ++i) {
      plain += value[i];
      if (value[i] == '}') ++i;
    }
    return plain;
  }
  return {};
}

std::vector<std::string> OdbcAttributes::Names() const {
  std::vector<std::string> names;
  names.reserve(attributes_.size());
  for (const auto& [name, value] : attributes_) names.push_back(name);
  return names;
}

bool OdbcAttributes::Has(std::string_view name) const {
  return std::ranges::any_of(
      attributes_, [&](const auto& attribute) { return EqualsIgnoringCase(attribute.first, name); });
}

void OdbcAttributes::Set(std::string_view name, std::string_view value) {
  Remove(name);
  attributes_.emplace_back(name, value);
}

void OdbcAttributes::Remove(std::string_view name) {
  std::erase_if(attributes_,
                [&](const auto& attribute) { return EqualsIgnoringCase(attribute.first, name); });
}

std::string OdbcAttributes::Text() const {
  std::string text;
  for (const auto& [key, value] : attributes_) text.append(key).append("=").append(value).append(";");
  return text;
}

bool LooksLikeConnectionString(std::string_view text) {
  // A file whose name starts like an attribute is given with its folder: "./driver=x".
  const std::size_t equals = text.find('=');
  if (equals == std::string_view::npos) return false;
  if (text.substr(0, equals).find_first_of("/\\") != std::string_view::npos) return false;
  const std::vector<std::string> names = OdbcAttributes(text).Names();
  return !names.empty() &&
         (IsAnyOf(kUsual, names.front()) || std::ranges::any_of(names, [](const std::string& name) {
            return IsAnyOf(kTelltale, name) || IsSecret(name);
          }));
}

std::string WithoutPassword(std::string_view connection_string) {
  OdbcAttributes attributes(connection_string);
  if (attributes.Defect().empty()) {
    for (const std::string& name : attributes.Names())
      if (IsSecret(name)) attributes.Remove(name);
    return attributes.Text();
  }
  // Where the string breaks off somewhere, nobody knows where the password ends.
  const std::string lower = ToLower(connection_string);
  std::size_t cut = std::string::npos;
  for (const char* part : kSecrets) cut = std::min(cut, lower.find(part));
  if (const std::size_t url = lower.find("://"); url != std::string::npos) cut = std::min(cut, url + 3);
  return cut >= connection_string.size() ? std::string(connection_string)
                                         : std::string(connection_string.substr(0, cut)) + "…";
}

}  // namespace zuvi::host
