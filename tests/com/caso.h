// The stage of every test of the component's DLL.
#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "automation/variants.h"
#include "tests/com/anfitrion_falso.h"
#include "tests/com/cliente.h"

namespace zuvi::prueba {

/// One shop and one component; at the end nothing of either may be left.
class ConTienda : public testing::Test {
 protected:
  void TearDown() override {
    produccion = {};
    tienda.reset();
    EXPECT_EQ(Tienda::Vivos(), 0);
    EXPECT_EQ(dll.PuedeDescargarse(), se_queda ? S_FALSE : S_OK);
    EXPECT_EQ(cajas.Toma(), std::vector<std::string>());
  }
  void Abre(Estilo estilo = Estilo::Simple) {
    produccion = {};
    tienda.emplace(estilo);
    produccion = dll.Crea();
    ASSERT_TRUE(produccion);
    const auto ambiente = tienda->Ambiente();
    ASSERT_EQ(produccion->putref_Ambiente(reinterpret_cast<::Ambiente*>(ambiente.get())), S_OK);
  }

  bool se_queda = false;
  Dll dll;
  Cajas cajas;
  std::optional<Tienda> tienda;
  ComPtr<::_Produccion> produccion;
};

}  // namespace zuvi::prueba
