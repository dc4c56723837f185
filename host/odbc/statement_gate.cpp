// Texts are built by joining pieces, keys of users among them: a key must never bring a statement of its own,
// nor a function that reads files or loads code. The drivers leave those switched on and offer no way to
// switch them off. What is inside quotes or comments does not count; everything else does.
#include "host/odbc/statement_gate.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "base/text.h"

namespace zuvi::host {
namespace {

// Functions of the engines, of SQLite's driver (blob_…) and of wide-spread extensions.
constexpr std::array<std::string_view, 11> kForbiddenFunctions{
    "load_extension", "fts3_tokenizer", "blob_import", "blob_export", "readfile", "writefile",
    "load_file",      "sys_exec",       "sys_eval",    "sys_get",     "sys_set"};
// They bring in code or files, or run a text that nobody has looked at.
constexpr std::array<std::string_view, 6> kForbiddenStarts{"attach",    "load",    "install",
                                                           "uninstall", "prepare", "execute"};

template <class List>
bool IsIn(const List& list, std::string_view word) {
  return std::ranges::any_of(list, [&](std::string_view one) { return EqualsIgnoringCase(one, word); });
}

[[noreturn]] void Reject(std::string_view what) {
  throw HostError("El texto usa " + std::string(what) +
                  ", que alcanza archivos o código fuera de la base, y no se ejecutó.");
}

/// To SQLite a blank where a word begins, and part of it further on.
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

bool IsBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
bool IsWordCharacter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || c == '$' ||
         static_cast<unsigned char>(c) >= 0x80;
}

/// Reads a statement the way its engine does, as far as words, quotes and comments go.
class Scanner {
 public:
  Scanner(Engine engine, std::string_view sql) : maria_(engine == Engine::MariaDb), sql_(sql) {}

  void Scan() {
    bool terminated = false;
    while (pos_ < sql_.size()) {
      if (SkipComment()) continue;
      if (!maria_ && StartsWith(kByteOrderMark)) {
        pos_ += kByteOrderMark.size();
        continue;
      }
      const char c = sql_[pos_];
      if (IsBlank(c)) {
        ++pos_;
        continue;
      }
      if (c == ';') {
        terminated = true;
        ++pos_;
        continue;
      }
      if (terminated) throw HostError("El texto contiene más de una instrucción y no se ejecutó ninguna.");
      Symbol(c);
    }
  }

 private:
  bool StartsWith(std::string_view text) const { return sql_.substr(pos_).starts_with(text); }

  void SkipTo(std::string_view end, std::size_t from) {
    const std::size_t found = sql_.find(end, from);
    pos_ = found == std::string_view::npos ? sql_.size() : found + end.size();
  }

  bool SkipComment() {
    if (StartsWith("--") && (!maria_ || pos_ + 2 == sql_.size() ||
                             static_cast<unsigned char>(sql_[pos_ + 2]) <= ' ' || sql_[pos_ + 2] == 127)) {
      SkipTo("\n", pos_ + 2);
    } else if (maria_ && StartsWith("#")) {
      SkipTo("\n", pos_ + 1);
    } else if (maria_ && (StartsWith("/*!") || StartsWith("/*M!"))) {
      // The server runs what stands in these or skips it, as its version has it: it cannot be told where a
      // quote in them ends.
      throw HostError("El texto contiene un comentario ejecutable (/*!) y no se ejecutó.");
    } else if (StartsWith("/*")) {
      SkipTo("*/", pos_ + 2);
    } else {
      return false;
    }
    return true;
  }

  void Symbol(char c) {
    if (c == '\'' || (c == '"' && maria_)) {
      SkipQuotes(c);
      previous_ = {};
    } else if (c == '"' || c == '`') {
      const std::size_t start = pos_ + 1;
      SkipQuotes(c);
      Name(sql_.substr(start, pos_ - start - 1));
    } else if (c == '[' && !maria_) {
      const std::size_t start = pos_ + 1;
      SkipTo("]", start);
      Name(sql_.substr(start, pos_ - start - 1));
    } else if (IsWordCharacter(c)) {
      const std::size_t start = pos_;
      while (pos_ < sql_.size() && IsWordCharacter(sql_[pos_])) ++pos_;
      const std::string_view word = sql_.substr(start, pos_ - start);
      // A variable of SQLite's goes on to the closing parenthesis, quotes included.
      const bool variable =
          word.find('$') != std::string_view::npos ||
          (start > 0 && std::string_view(":@#").find(sql_[start - 1]) != std::string_view::npos);
      if (!maria_ && variable && pos_ < sql_.size() && sql_[pos_] == '(')
        Reject("una variable con paréntesis");
      Word(word);
    } else {
      if (c == '(' && IsIn(kForbiddenFunctions, previous_)) Reject(previous_);
      previous_ = {};
      ++pos_;
    }
  }

  void Name(std::string_view name) {
    first_ = false;
    previous_ = name;
    // A table whose reading writes.
    if (EqualsIgnoringCase(name, "pragma_optimize")) Reject(name);
  }

  void Word(std::string_view word) {
    if (std::exchange(first_, false)) {
      if (IsIn(kForbiddenStarts, word)) Reject(word);
      vacuum_ = EqualsIgnoringCase(word, "vacuum");
    }
    const bool after_into = EqualsIgnoringCase(previous_, "into");
    if (after_into && (EqualsIgnoringCase(word, "outfile") || EqualsIgnoringCase(word, "dumpfile")))
      Reject(word);
    if (vacuum_ && EqualsIgnoringCase(word, "into")) Reject("vacuum into");
    Name(word);
  }

  /// A doubled quote inside reads as the end and the beginning of another, which comes to the same.
  void SkipQuotes(char quote) {
    for (++pos_; pos_ < sql_.size(); ++pos_) {
      if (sql_[pos_] == quote) {
        ++pos_;
        return;
      }
      if (sql_[pos_] == '\\' && maria_ && quote != '`') ++pos_;
    }
    pos_ = sql_.size();
  }

  bool maria_;
  std::string_view sql_;
  std::size_t pos_ = 0;
  std::string_view previous_;  // the word or quoted name just read
  bool first_ = true;
  bool vacuum_ = false;
};

/// Whether `end` ends a text, without regard to case.
bool EndsWith(std::string_view text, std::string_view end) {
  return text.size() >= end.size() && EqualsIgnoringCase(text.substr(text.size() - end.size()), end);
}

/// "file" in any case. Steps over four characters at a time, as most are none of its letters.
bool ContainsFile(std::string_view sql) {
  constexpr std::string_view kFile = "file";
  for (std::size_t end = kFile.size(); end <= sql.size();) {
    const auto letter = kFile.rfind(LowerCase(sql[end - 1]));
    if (letter == std::string_view::npos)
      end += kFile.size();
    else if (letter + 1 < kFile.size())
      end += kFile.size() - 1 - letter;
    else if (EndsWith(sql.substr(0, end), kFile))
      return true;
    else
      ++end;
  }
  return false;
}

/// Whether one of the characters that only few statements have makes a closer look necessary: every
/// statement passes here, and most of them must not cost more than this.
bool Suspicious(Engine engine, std::string_view sql) {
  if (sql.find(';') != std::string_view::npos) return true;
  if (engine == Engine::MariaDb && sql.find("/*") != std::string_view::npos) return true;
  if (engine == Engine::Sqlite && sql.find(kByteOrderMark) != std::string_view::npos) return true;
  for (std::size_t i = sql.find('_'); i != std::string_view::npos; i = sql.find('_', i + 1))
    for (const std::string_view prefix : {"load", "blob", "fts3", "sys", "pragma"})
      if (EndsWith(sql.substr(0, i), prefix)) return true;
  return ContainsFile(sql);
}

/// Without what may stand in front of a statement: blanks, comments, opening parentheses.
std::string_view WithoutPreamble(std::string_view sql) {
  for (;;) {
    const auto past = [&](std::string_view end) {
      const std::size_t found = sql.find(end);
      sql.remove_prefix(found == std::string_view::npos ? sql.size() : found + end.size());
    };
    if (!sql.empty() && (IsBlank(sql.front()) || sql.front() == '('))
      sql.remove_prefix(1);
    else if (sql.starts_with(kByteOrderMark))
      sql.remove_prefix(kByteOrderMark.size());
    else if (sql.starts_with("/*") && !sql.starts_with("/*!") && !sql.starts_with("/*M!"))
      past("*/");
    else if (sql.starts_with("-- "))
      past("\n");
    else
      return sql;
  }
}

/// The first word in small letters; empty when the text starts with something else than a word.
std::string FirstWord(std::string_view sql) {
  sql = WithoutPreamble(sql);
  const auto end = static_cast<std::size_t>(std::ranges::find_if_not(sql, IsWordCharacter) - sql.begin());
  std::string word(sql.substr(0, std::min<std::size_t>(end, 12)));
  std::ranges::transform(word, word.begin(), LowerCase);
  return word;
}

StatementKind KindOf(std::string_view word, std::string_view sql) {
  if (word == "select" || word == "show" || word == "values" || word == "describe" || word == "desc" ||
      word == "explain")
    return StatementKind::Read;
  if (word == "begin" || word == "start") return StatementKind::Begin;
  if (word == "commit" || word == "end") return StatementKind::Commit;
  // Back to a savepoint, the transaction goes on.
  if (word == "rollback" && ToLower(sql).find(" to") == std::string::npos) return StatementKind::Rollback;
  return StatementKind::Write;
}

}  // namespace

StatementKind CheckStatement(Engine engine, std::string_view sql) {
  if (sql.find('\0') != std::string_view::npos)
    throw HostError("La instrucción contiene un carácter nulo y no se ejecutó.");
  const std::string word = FirstWord(sql);
  if (word.empty() || word == "vacuum" || IsIn(kForbiddenStarts, word) || Suspicious(engine, sql))
    Scanner(engine, sql).Scan();
  return KindOf(word, sql);
}

void RequireReading(std::string_view sql) {
  const std::string word = FirstWord(sql);
  if (word == "with" || KindOf(word, sql) == StatementKind::Read) return;
  if (word == "pragma") {
    std::string_view rest = WithoutPreamble(sql).substr(word.size());
    rest.remove_prefix(std::min(rest.find_first_not_of(" \t\r\n"), rest.size()));
    std::string pragma = ToLower(rest.substr(0, rest.find_first_of(" \t\r\n(=;")));
    if (const auto dot = pragma.find('.'); dot != std::string::npos) pragma.erase(0, dot + 1);
    // Those that only tell, with an argument or without.
    constexpr std::array<std::string_view, 10> kTellingPragmas{
        "table_info",  "table_xinfo",   "table_list",      "index_list",       "index_info",
        "index_xinfo", "database_list", "integrity_check", "foreign_key_list", "foreign_key_check"};
    if (IsIn(kTellingPragmas, pragma) && rest.find('=') == std::string_view::npos) return;
  }
  throw HostError(
      "Esta conexión es de solo lectura: se admiten SELECT, WITH, VALUES, SHOW, DESCRIBE y EXPLAIN. No se "
      "ejecutó nada.");
}

}  // namespace zuvi::host
