// Texts are built by joining pieces, keys of users among them: a key must never bring a statement of its own.
// What is inside quotes or comments does not count; everything else after a semicolon does.
#include "host/unica_sentencia.h"

namespace zuvi::host {
namespace {

class Lector {
 public:
  Lector(Motor motor, std::string_view sql) : maria_(motor == Motor::MariaDb), sql_(sql) {}

  /// True when something follows a semicolon.
  bool HaySegunda() {
    bool terminada = false;
    while (pos_ < sql_.size()) {
      if (SaltaComentario()) continue;
      const char c = sql_[pos_];
      if (c == ';') {
        terminada = true;
        ++pos_;
      } else if (c == ' ' || (c >= '\t' && c <= '\r')) {
        ++pos_;
      } else if (terminada) {
        return true;
      } else {
        SaltaCodigo(c);
      }
    }
    return false;
  }

 private:
  bool Empieza(std::string_view texto) const { return sql_.substr(pos_).starts_with(texto); }

  void SaltaHasta(std::string_view fin, std::size_t desde) {
    const std::size_t hallado = sql_.find(fin, desde);
    pos_ = hallado == std::string_view::npos ? sql_.size() : hallado + fin.size();
  }

  bool SaltaComentario() {
    if (Empieza("--") &&
        (!maria_ || pos_ + 2 == sql_.size() || sql_[pos_ + 2] <= ' ' || sql_[pos_ + 2] == 127)) {
      SaltaHasta("\n", pos_ + 2);
    } else if (maria_ && Empieza("#")) {
      SaltaHasta("\n", pos_ + 1);
    } else if (maria_ && (Empieza("/*!") || Empieza("/*M!"))) {
      // The server runs what stands in these.
      return false;
    } else if (Empieza("/*")) {
      SaltaHasta("*/", pos_ + 2);
    } else {
      return false;
    }
    return true;
  }

  void SaltaCodigo(char c) {
    if (c == '\'' || c == '"' || c == '`') {
      SaltaComillas(c);
    } else if (c == '[' && !maria_) {
      SaltaHasta("]", pos_ + 1);
    } else {
      ++pos_;
    }
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
  }

  bool maria_;
  std::string_view sql_;
  std::size_t pos_ = 0;
};

}  // namespace

void ExigeUnaSentencia(Motor motor, std::string_view sql) {
  if (sql.find('\0') != std::string_view::npos)
    throw HostError("La instrucción contiene un carácter nulo y no se ejecutó.");
  if (sql.find(';') != std::string_view::npos && Lector(motor, sql).HaySegunda())
    throw HostError("El texto contiene más de una instrucción y no se ejecutó ninguna.");
}

}  // namespace zuvi::host
