// What the programs of this folder have in common: the reference host with the component on top of it.
#pragma once

#include <algorithm>
#include <chrono>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "component/produccion.h"
#include "host/anfitrion/anfitrion.h"
#include "host/anfitrion/interaccion_respuestas.h"
#include "host/services/fabrica_anfitrion.h"
#include "tests/support/headless_desktop.h"

namespace zuvi::bench {

using Sentencias = std::vector<std::string>;

double Segundos(auto&& trabajo) {
  const auto antes = std::chrono::steady_clock::now();
  trabajo();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - antes).count();
}

/// The middle time: a disk that somebody else keeps busy gives a few very long ones.
inline double Mediana(std::vector<double> tiempos) {
  const auto medio = tiempos.begin() + static_cast<std::ptrdiff_t>(tiempos.size() / 2);
  std::nth_element(tiempos.begin(), medio, tiempos.end());
  return *medio;
}

inline std::string Sqlite(const std::string& archivo) { return "DRIVER={SQLite3};Database=" + archivo; }

/// The component on the reference host, on one database and one screen.
class Banco {
 public:
  Banco(const std::string& base, Desktop& escritorio) {
    host::Opciones opciones;
    host::PonBase(opciones, base);
    anfitrion_ =
        std::make_shared<host::Anfitrion>(opciones, std::make_unique<host::RespuestasInteraccion>(""));
    fabrica_ = std::make_unique<host::FabricaAnfitrion>(anfitrion_);
    modulo_ = std::make_unique<Modulo>(*fabrica_, escritorio, [] { return false; });
    produccion_ = std::make_shared<Produccion>(*modulo_);
  }
  /// Opens the database, with the shop in it.
  void Abre() {
    if (anfitrion_->ExaminaBase().estado == host::EstadoEsquema::Falta)
      anfitrion_->CreaBase(host::Contenido::Tienda);
    produccion_->PonAmbiente(fabrica_->Crea(Ambiente::kProgId));
  }
  host::BaseDatos& Base() { return *anfitrion_->Base(); }
  /// Does a piece of work; `oye` hears each of its statements.
  void Oye(std::function<void(const std::string&)> oye, auto&& trabajo) {
    auto& traza = anfitrion_->TraeTraza();
    const auto oyente = traza.Escucha([&oye](host::Suceso suceso, const std::string& texto) {
      if (suceso == host::Suceso::Sentencia) oye(texto);
    });
    trabajo();
    traza.Deja(oyente);
  }
  Sentencias Graba(auto&& trabajo) {
    Sentencias sentencias;
    Oye([&](const std::string& sentencia) { sentencias.push_back(sentencia); }, trabajo);
    return sentencias;
  }

 protected:
  Produccion& ElComponente() { return *produccion_; }
  Modulo& ElModulo() { return *modulo_; }
  ObjectPtr NuevoAmbiente() { return fabrica_->Crea(Ambiente::kProgId); }

 private:
  std::shared_ptr<host::Anfitrion> anfitrion_;
  std::unique_ptr<host::FabricaAnfitrion> fabrica_;
  std::unique_ptr<Modulo> modulo_;
  std::shared_ptr<Produccion> produccion_;
};

/// There before the rest, and gone after it.
struct SinPantalla {
  HeadlessDesktop escritorio;
};

/// Without a screen.
class BancoOculto : private SinPantalla, public Banco {
 public:
  explicit BancoOculto(const std::string& base) : Banco(base, escritorio) {}
  void ExigeSinAvisos() const {
    if (!escritorio.Avisos().empty()) throw std::runtime_error(escritorio.Avisos().front());
  }

 protected:
  HeadlessDesktop& Escritorio() { return escritorio; }
};

}  // namespace zuvi::bench
