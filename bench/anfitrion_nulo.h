// A host that does nothing: what is left is the component's own time.
#pragma once

#include <cstdlib>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "bench/acceso_datos_sin_ventanas.h"
#include "services/control_procesos.h"
#include "services/documento_inventario.h"
#include "services/fabrica.h"

namespace zuvi::bench {

/// `cuantas` equal rows, each of every column that assembly reads.
class FilasNulas final : public Recordset {
 public:
  explicit FilasNulas(int cuantas) : quedan_(cuantas) {}
  bool Eof() override { return quedan_ == 0; }
  void MoveNext() override { --quedan_; }
  Value Campo(FixedText nombre) override { return nombre[2] == 'm' && nombre[3] == 'p' ? articulo_ : uno_; }
  Value Campo(std::int32_t) override { return uno_; }
  void PonCursorType(std::int32_t) override {}
  void PonLockType(std::int32_t) override {}
  void Open(const std::string&, const std::shared_ptr<Conexion>&, std::int32_t, std::int32_t,
            std::int32_t) override {}

 private:
  int quedan_;
  Value articulo_ = "COMPONENTE-01";
  Value uno_ = 1.0;
};

class AmbienteNulo final : public Ambiente {
 public:
  std::shared_ptr<Conexion> TraeConexion() override { return conexion_; }
  std::string UsuarioActual() override { return "ADMIN"; }
  std::string RutaAplicacion() override { return {}; }
  void EjecutaSQL(const std::string&) override {}
  std::int32_t DatoFechaA() override { return 1; }
  std::int32_t DatoFechaB() override { return 2; }
  Value DatoDocumento() override { return {}; }
  std::shared_ptr<Recordset> ParametrosEstacion() override { return nullptr; }
  ObjectPtr ContenedorRutas() override { return nullptr; }

 private:
  std::shared_ptr<Conexion> conexion_ = std::make_shared<Conexion>();
};

class DatosNulos final : public pruebas::AccesoDatosSinVentanas {
 public:
  explicit DatosNulos(int componentes) : componentes_(componentes) {}
  std::shared_ptr<Recordset> Consulta(const std::string& sql, const std::shared_ptr<Conexion>&) override {
    return std::make_shared<FilasNulas>(sql.find("comppart") == std::string::npos ? 1 : componentes_);
  }
  double ValorNumerico(const Value& valor) override { return ToNumber(valor); }
  std::string TextoDeMensaje(std::int32_t, const std::shared_ptr<Ambiente>&) override { return {}; }
  void Mensaje(const std::string&, EstiloMensaje, const std::shared_ptr<Ambiente>&) override {}
  bool Pregunta(const std::string&, std::int16_t) override { return true; }
  std::int32_t SiguienteFolio(const std::string&, const std::shared_ptr<Conexion>&, std::int32_t&,
                              const std::shared_ptr<ConstructorSql>&) override {
    return 1;
  }
  Date ComponeFecha(std::int32_t, std::int32_t) override { return {}; }

 private:
  int componentes_;
};

class ProcesosNulos final : public ControlProcesos {
 public:
  void IniciaProceso(PeticionProceso&) override {}
  void ConsultaProceso(bool& bandera) override { bandera = false; }
  void CierraProceso(std::int32_t) override {}
  void ImprimeReporte(const std::string&, std::int32_t, const std::shared_ptr<Ambiente>&,
                      const ObjectPtr&) override {}
};

/// Counts the movements it is given.
class DocumentoNulo final : public DocumentoInventario {
 public:
  explicit DocumentoNulo(std::int64_t& movimientos) : movimientos_(movimientos) {}
  void PonAmbiente(const std::shared_ptr<Ambiente>&) override {}
  void PonDatoDocumento(const Value&) override {}
  void PonDatoFecha(std::int32_t) override {}
  void PonFecha(const Date&) override {}
  void PonTipo(const std::string&) override {}
  void PonConcepto(const std::string&) override {}
  void PonOrden(std::int32_t) override {}
  void PonFolio(const std::string&) override {}
  void PonUsuario(const std::string&) override {}
  void PonAlmacen(double) override {}
  void PonArticulo(const std::string&) override {}
  void PonCantidad(double) override {}
  void PonCosto(double) override {}
  double AplicaMovimiento(std::int32_t&) override {
    ++movimientos_;
    return 1;
  }

 private:
  std::int64_t& movimientos_;
};

class FabricaNula final : public FabricaServicios {
 public:
  explicit FabricaNula(int componentes) : componentes_(componentes) {}
  ObjectPtr Crea(std::string_view prog_id) override {
    if (prog_id == AccesoDatos::kProgId) return std::make_shared<DatosNulos>(componentes_);
    if (prog_id == ControlProcesos::kProgId) return std::make_shared<ProcesosNulos>();
    return std::make_shared<DocumentoNulo>(movimientos);
  }
  std::int64_t movimientos = 0;

 private:
  int componentes_;
};

}  // namespace zuvi::bench
