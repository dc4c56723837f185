// Texts are built by joining pieces, keys of users among them: a key must never bring a statement of its own,
// nor a function that reads files or loads code. The drivers leave those switched on and offer no way to
// switch them off. What is inside quotes or comments does not count; everything else does.
#include "host/odbc/compuerta.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "base/text.h"

namespace zuvi::host {
namespace {

// Functions of the engines, of SQLite's driver (blob_…) and of wide-spread extensions.
constexpr std::array<std::string_view, 11> kFunciones{
    "load_extension", "fts3_tokenizer", "blob_import", "blob_export", "readfile", "writefile",
    "load_file",      "sys_exec",       "sys_eval",    "sys_get",     "sys_set"};
// They bring in code or files, or run a text that nobody has looked at.
constexpr std::array<std::string_view, 6> kComienzos{"attach",    "load",    "install",
                                                     "uninstall", "prepare", "execute"};

template <class Lista>
bool EstaEn(const Lista& lista, std::string_view palabra) {
  return std::ranges::any_of(lista, [&](std::string_view una) { return IgualSinCaso(una, palabra); });
}

[[noreturn]] void Rechaza(std::string_view que) {
  throw HostError("El texto usa " + std::string(que) +
                  ", que alcanza archivos o código fuera de la base, y no se ejecutó.");
}

/// To SQLite a blank where a word begins, and part of it further on.
constexpr std::string_view kMarcaDeOrden = "\xEF\xBB\xBF";

bool EsBlanco(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
bool EsLetra(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || c == '$' ||
         static_cast<unsigned char>(c) >= 0x80;
}

/// Reads a statement the way its engine does, as far as words, quotes and comments go.
class Lector {
 public:
  Lector(Motor motor, std::string_view sql) : maria_(motor == Motor::MariaDb), sql_(sql) {}

  void Revisa() {
    bool terminada = false;
    while (pos_ < sql_.size()) {
      if (SaltaComentario()) continue;
      if (!maria_ && Empieza(kMarcaDeOrden)) {
        pos_ += kMarcaDeOrden.size();
        continue;
      }
      const char c = sql_[pos_];
      if (EsBlanco(c)) {
        ++pos_;
        continue;
      }
      if (c == ';') {
        terminada = true;
        ++pos_;
        continue;
      }
      if (terminada) throw HostError("El texto contiene más de una instrucción y no se ejecutó ninguna.");
      Simbolo(c);
    }
  }

 private:
  bool Empieza(std::string_view texto) const { return sql_.substr(pos_).starts_with(texto); }

  void SaltaHasta(std::string_view fin, std::size_t desde) {
    const std::size_t hallado = sql_.find(fin, desde);
    pos_ = hallado == std::string_view::npos ? sql_.size() : hallado + fin.size();
  }

  bool SaltaComentario() {
    if (Empieza("--") && (!maria_ || pos_ + 2 == sql_.size() ||
                          static_cast<unsigned char>(sql_[pos_ + 2]) <= ' ' || sql_[pos_ + 2] == 127)) {
      SaltaHasta("\n", pos_ + 2);
    } else if (maria_ && Empieza("#")) {
      SaltaHasta("\n", pos_ + 1);
    } else if (maria_ && (Empieza("/*!") || Empieza("/*M!"))) {
      // The server runs what stands in these or skips it, as its version has it: it cannot be told where a
      // quote in them ends.
      throw HostError("El texto contiene un comentario ejecutable (/*!) y no se ejecutó.");
    } else if (Empieza("/*")) {
      SaltaHasta("*/", pos_ + 2);
    } else {
      return false;
    }
    return true;
  }

  void Simbolo(char c) {
    if (c == '\'' || (c == '"' && maria_)) {
      SaltaComillas(c);
      anterior_ = {};
    } else if (c == '"' || c == '`') {
      const std::size_t inicio = pos_ + 1;
      SaltaComillas(c);
      Nombre(sql_.substr(inicio, pos_ - inicio - 1));
    } else if (c == '[' && !maria_) {
      const std::size_t inicio = pos_ + 1;
      SaltaHasta("]", inicio);
      Nombre(sql_.substr(inicio, pos_ - inicio - 1));
    } else if (EsLetra(c)) {
      const std::size_t inicio = pos_;
      while (pos_ < sql_.size() && EsLetra(sql_[pos_])) ++pos_;
      const std::string_view palabra = sql_.substr(inicio, pos_ - inicio);
      // A variable of SQLite's goes on to the closing parenthesis, quotes included.
      const bool variable =
          palabra.find('$') != std::string_view::npos ||
          (inicio > 0 && std::string_view(":@#").find(sql_[inicio - 1]) != std::string_view::npos);
      if (!maria_ && variable && pos_ < sql_.size() && sql_[pos_] == '(')
        Rechaza("una variable con paréntesis");
      Palabra(palabra);
    } else {
      if (c == '(' && EstaEn(kFunciones, anterior_)) Rechaza(anterior_);
      anterior_ = {};
      ++pos_;
    }
  }

  void Nombre(std::string_view nombre) {
    primera_ = false;
    anterior_ = nombre;
    // A table whose reading writes.
    if (IgualSinCaso(nombre, "pragma_optimize")) Rechaza(nombre);
  }

  void Palabra(std::string_view palabra) {
    if (std::exchange(primera_, false)) {
      if (EstaEn(kComienzos, palabra)) Rechaza(palabra);
      copia_ = IgualSinCaso(palabra, "vacuum");
    }
    const bool tras_into = IgualSinCaso(anterior_, "into");
    if (tras_into && (IgualSinCaso(palabra, "outfile") || IgualSinCaso(palabra, "dumpfile")))
      Rechaza(palabra);
    if (copia_ && IgualSinCaso(palabra, "into")) Rechaza("vacuum into");
    Nombre(palabra);
  }

  /// A doubled quote inside reads as the end and the beginning of another, which comes to the same.
  void SaltaComillas(char comilla) {
    for (++pos_; pos_ < sql_.size(); ++pos_) {
      if (sql_[pos_] == comilla) {
        ++pos_;
        return;
      }
      if (sql_[pos_] == '\\' && maria_ && comilla != '`') ++pos_;
    }
    pos_ = sql_.size();
  }

  bool maria_;
  std::string_view sql_;
  std::size_t pos_ = 0;
  std::string_view anterior_;  // the word or quoted name just read
  bool primera_ = true;
  bool copia_ = false;
};

/// Whether `fin` ends a text, without regard to case.
bool Acaba(std::string_view texto, std::string_view fin) {
  return texto.size() >= fin.size() && IgualSinCaso(texto.substr(texto.size() - fin.size()), fin);
}

/// "file" in any case. Steps over four characters at a time, as most are none of its letters.
bool HayFile(std::string_view sql) {
  constexpr std::string_view kFile = "file";
  for (std::size_t fin = kFile.size(); fin <= sql.size();) {
    const auto letra = kFile.rfind(Minuscula(sql[fin - 1]));
    if (letra == std::string_view::npos)
      fin += kFile.size();
    else if (letra + 1 < kFile.size())
      fin += kFile.size() - 1 - letra;
    else if (Acaba(sql.substr(0, fin), kFile))
      return true;
    else
      ++fin;
  }
  return false;
}

/// Whether one of the characters that only few statements have makes a closer look necessary: every
/// statement passes here, and most of them must not cost more than this.
bool Sospechosa(Motor motor, std::string_view sql) {
  if (sql.find(';') != std::string_view::npos) return true;
  if (motor == Motor::MariaDb && sql.find("/*") != std::string_view::npos) return true;
  if (motor == Motor::Sqlite && sql.find(kMarcaDeOrden) != std::string_view::npos) return true;
  for (std::size_t i = sql.find('_'); i != std::string_view::npos; i = sql.find('_', i + 1))
    for (const std::string_view prefijo : {"load", "blob", "fts3", "sys", "pragma"})
      if (Acaba(sql.substr(0, i), prefijo)) return true;
  return HayFile(sql);
}

/// Without what may stand in front of a statement: blanks, comments, opening parentheses.
std::string_view SinPreambulo(std::string_view sql) {
  for (;;) {
    const auto tras = [&](std::string_view fin) {
      const std::size_t hallado = sql.find(fin);
      sql.remove_prefix(hallado == std::string_view::npos ? sql.size() : hallado + fin.size());
    };
    if (!sql.empty() && (EsBlanco(sql.front()) || sql.front() == '('))
      sql.remove_prefix(1);
    else if (sql.starts_with(kMarcaDeOrden))
      sql.remove_prefix(kMarcaDeOrden.size());
    else if (sql.starts_with("/*") && !sql.starts_with("/*!") && !sql.starts_with("/*M!"))
      tras("*/");
    else if (sql.starts_with("-- "))
      tras("\n");
    else
      return sql;
  }
}

/// The first word in small letters; empty when the text starts with something else than a word.
std::string PrimeraPalabra(std::string_view sql) {
  sql = SinPreambulo(sql);
  const auto fin = static_cast<std::size_t>(std::ranges::find_if_not(sql, EsLetra) - sql.begin());
  std::string palabra(sql.substr(0, std::min<std::size_t>(fin, 12)));
  std::ranges::transform(palabra, palabra.begin(), Minuscula);
  return palabra;
}

Genero GeneroDe(std::string_view palabra, std::string_view sql) {
  if (palabra == "select" || palabra == "show" || palabra == "values" || palabra == "describe" ||
      palabra == "desc" || palabra == "explain")
    return Genero::Lectura;
  if (palabra == "begin" || palabra == "start") return Genero::Inicio;
  if (palabra == "commit" || palabra == "end") return Genero::Confirmacion;
  // Back to a savepoint, the transaction goes on.
  if (palabra == "rollback" && Minusculas(sql).find(" to") == std::string::npos) return Genero::Reversion;
  return Genero::Escritura;
}

}  // namespace

Genero Revisa(Motor motor, std::string_view sql) {
  if (sql.find('\0') != std::string_view::npos)
    throw HostError("La instrucción contiene un carácter nulo y no se ejecutó.");
  const std::string palabra = PrimeraPalabra(sql);
  if (palabra.empty() || palabra == "vacuum" || EstaEn(kComienzos, palabra) || Sospechosa(motor, sql))
    Lector(motor, sql).Revisa();
  return GeneroDe(palabra, sql);
}

void ExigeSoloLee(std::string_view sql) {
  const std::string palabra = PrimeraPalabra(sql);
  if (palabra == "with" || GeneroDe(palabra, sql) == Genero::Lectura) return;
  if (palabra == "pragma") {
    std::string_view resto = SinPreambulo(sql).substr(palabra.size());
    resto.remove_prefix(std::min(resto.find_first_not_of(" \t\r\n"), resto.size()));
    std::string pragma = Minusculas(resto.substr(0, resto.find_first_of(" \t\r\n(=;")));
    if (const auto punto = pragma.find('.'); punto != std::string::npos) pragma.erase(0, punto + 1);
    // Those that only tell, with an argument or without.
    constexpr std::array<std::string_view, 10> kCuentan{
        "table_info",  "table_xinfo",   "table_list",      "index_list",       "index_info",
        "index_xinfo", "database_list", "integrity_check", "foreign_key_list", "foreign_key_check"};
    if (EstaEn(kCuentan, pragma) && resto.find('=') == std::string_view::npos) return;
  }
  throw HostError(
      "Esta conexión es de solo lectura: se admiten SELECT, WITH, VALUES, SHOW, DESCRIBE y EXPLAIN. No se "
      "ejecutó nada.");
}

}  // namespace zuvi::host
