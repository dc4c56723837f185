// The shift windows on a real shop: what they do to the tables, and the statements by which they do it.
#pragma once

#include "shifts/frm_turno.h"
#include "shifts/frm_turnos.h"
#include "tests/host/tienda.h"

namespace zuvi::host {

class Ventanas : public testing::TestWithParam<std::string> {
 protected:
  Ventanas() {
    t.escritorio.SetNow(Fecha::DesdeCivil({2026, 11, 16, 9, 30, 0}));  // a Monday
    t.Base().Ejecuta("DELETE FROM horarios");
    t.anfitrion->TraeTraza().Escucha([this](Suceso suceso, const std::string& texto) {
      if (suceso == Suceso::Sentencia) sentencias.push_back(texto);
      if (suceso == Suceso::Mensaje || suceso == Suceso::Pregunta) mensajes.push_back(texto);
    });
  }

  // An open window is known to the host, which it knows itself.
  ~Ventanas() override {
    for (const auto& ventana : std::vector(t.escritorio.Forms())) ventana->Unload();
  }

  template <class Ventana>
  std::shared_ptr<Ventana> Crea() {
    auto ventana = std::make_shared<Ventana>(t.modulo);
    ventana->PonAmbiente(t.fabrica.Crea(Ambiente::kProgId));
    return ventana;
  }
  /// Rows of a list, columns separated by bars.
  static std::vector<std::string> Renglones(const ListView& lista) {
    std::vector<std::string> renglones;
    for (std::int32_t i = 1; i <= lista.Items().Count(); ++i) {
      std::string renglon;
      for (std::size_t c = 0; c < lista.Columns().All().size(); ++c)
        renglon += (c ? "|" : "") + lista.Cell(i, c);
      renglones.push_back(renglon);
    }
    return renglones;
  }
  std::vector<std::string> Toma(std::vector<std::string>& de) { return std::exchange(de, {}); }

  std::vector<std::string> sentencias, mensajes;
  Tienda t{GetParam(), "si,si,si,si"};
};

}  // namespace zuvi::host
