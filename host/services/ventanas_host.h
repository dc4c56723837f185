#pragma once

#include "base/members.h"
#include "host/anfitrion/anfitrion.h"
#include "services/ventanas.h"

namespace zuvi::host {

/// Progress window: the user's display, whatever that is on this station.
class VentanaProgresoHost final : public VentanaProgreso {
 public:
  explicit VentanaProgresoHost(std::shared_ptr<Anfitrion> anfitrion) : anfitrion_(std::move(anfitrion)) {}

  void Inicia(std::int32_t total, const std::string& titulo, const std::string& animacion) override;
  /// Without `Inicia` there is nothing to move.
  void Avanza(std::int32_t paso, const std::string& texto, const std::string& texto2) override;
  void Cierra() override;

  const MemberTable* Members() const override;

 private:
  std::shared_ptr<Anfitrion> anfitrion_;
  std::unique_ptr<Progreso> progreso_;
};

/// Catalogue lookup. The rows are here; a station with windows shows them.
class BuscaCatalogoHost : public BuscaCatalogo {
 public:
  explicit BuscaCatalogoHost(std::shared_ptr<Anfitrion> anfitrion) : anfitrion_(std::move(anfitrion)) {}

  void PonAmbiente(const std::shared_ptr<Ambiente>&) override {}
  void PonDestino(const ObjectPtr& caja) override { destino_ = caja; }
  void PonFiltro(const std::string& filtro) override { filtro_ = filtro; }
  /// Throws: this station has no windows.
  void Muestra(const std::string& titulo) override;

  /// Rows of the catalogue with that caption that meet the filter and hold the searched text.
  std::shared_ptr<Recordset> Busca(const std::string& titulo, const std::string& busqueda);
  /// Writes the chosen key into the target box.
  void Elige(const std::string& clave);

  const MemberTable* Members() const override;

 protected:
  const ObjectPtr& Destino() const { return destino_; }
  const std::string& Filtro() const { return filtro_; }

 private:
  void MuestraConTextos(const std::string& titulo, const Value&, const Value&, const Value&, const Value&);

  std::shared_ptr<Anfitrion> anfitrion_;
  ObjectPtr destino_;
  std::string filtro_;
};

/// Numeric pad; needs windows too.
class CapturaNumericaHost : public CapturaNumerica {
 public:
  void PonAmbiente(const std::shared_ptr<Ambiente>&) override {}
  void PonDestino(const ObjectPtr& caja) override { destino_ = caja; }
  /// Throws: this station has no windows.
  void Muestra() override;

  /// Writes the entered number into the target box.
  void Captura(double numero);

  const MemberTable* Members() const override;

 protected:
  const ObjectPtr& Destino() const { return destino_; }

 private:
  ObjectPtr destino_;
};

}  // namespace zuvi::host
