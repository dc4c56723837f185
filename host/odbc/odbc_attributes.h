#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zuvi::host {

/// An ODBC connection string taken apart: "DRIVER={…};Server=…;PWD={a;b}". Names are compared without case,
/// blanks around names and values do not count, and of a name given twice the first one holds.
class OdbcAttributes {
 public:
  explicit OdbcAttributes(std::string_view connection_string);
  /// Value without its braces; empty when there is none.
  std::string Get(std::string_view name) const;
  /// Whether the attribute is named, be it without a value.
  bool Has(std::string_view name) const;
  /// Sets an attribute in place of the one of that name; the value stands as it is given, braces included.
  void Set(std::string_view name, std::string_view value);
  void Remove(std::string_view name);
  /// The string again: "name=value;" for each attribute.
  std::string Text() const;
  /// What of the text is no "name=value", in words; empty when all of it was understood.
  const std::string& Defect() const { return defect_; }
  /// Names of the attributes, in the order of the string.
  std::vector<std::string> Names() const;

 private:
  std::vector<std::pair<std::string, std::string>> attributes_;  // values as they stand in the string
  std::string defect_;
};

/// Whether a text means a connection string rather than the name of a file: it begins with a
/// usual attribute, or one of the kind that only connection strings have stands anywhere in it, and no folder
/// stands in front.
bool LooksLikeConnectionString(std::string_view text);
/// The text as it may be shown: passwords are left out, also where the string is not well formed.
std::string WithoutPassword(std::string_view connection_string);

}  // namespace zuvi::host
