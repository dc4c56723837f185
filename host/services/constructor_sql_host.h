#pragma once

#include <optional>
#include <utility>
#include <vector>

#include "base/members.h"
#include "host/anfitrion/anfitrion.h"

namespace zuvi::host {

/// Statement builder. Values are written as literals of the database's engine; column and table names and
/// the condition as they are given. Without a connection of its own it uses the host's.
class ConstructorSqlHost final : public ConstructorSql {
 public:
  explicit ConstructorSqlHost(std::shared_ptr<Anfitrion> anfitrion) : anfitrion_(std::move(anfitrion)) {}

  void PonConexion(const std::shared_ptr<Conexion>& conexion) override;
  void PonRutas(const ObjectPtr&) override {}
  void Limpia() override;
  /// Throws for anything but "INSERT" and "UPDATE".
  void Tipo(const std::string& tipo) override;
  /// The columns of one statement belong to one table.
  void AgregaCampo(const std::string& tabla, const std::string& columna, const Value& valor) override;
  void Condicion(const std::string& condicion) override { condicion_ = condicion; }
  /// An UPDATE with columns but without a condition is refused: it would change every row.
  void Genera(const std::string& tabla) override;
  void Ejecuta() override;

  /// The statement built by `Genera`; empty when there is nothing to run.
  std::string Sentencia() const { return sentencia_.value_or(""); }

  const MemberTable* Members() const override;

 private:
  enum class Instruccion { Ninguna, Insert, Update };
  BaseDatos& Base() { return anfitrion_->BaseDe(conexion_); }

  std::shared_ptr<Anfitrion> anfitrion_;
  std::shared_ptr<Conexion> conexion_;
  Instruccion instruccion_ = Instruccion::Ninguna;
  std::string tabla_;
  std::vector<std::pair<std::string, std::string>> campos_;  // column, literal
  std::string condicion_;
  std::optional<std::string> sentencia_;
};

}  // namespace zuvi::host
