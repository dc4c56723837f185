#include "fractions/frm_fracciones.h"
#include "host/captura_fracciones.h"
#include "tests/host/tienda.h"

namespace zuvi::host {
namespace {

using testing::HasSubstr;

class Fracciones : public testing::TestWithParam<std::string> {
 protected:
  Fracciones() {
    ventana->PonAmbiente(t.fabrica.Crea(Ambiente::kProgId));
    t.anfitrion->PonGancho("FRACCIONES", [this](PeticionProceso&) { codigos.push_back(ventana->Codigo()); });
    ventana->Show();
  }
  std::string Pagina() { return ATexto(AObjeto(ventana->Call("wb"))->Call("Html")); }

  Tienda t{GetParam()};
  std::shared_ptr<frmFracciones> ventana = std::make_shared<frmFracciones>(t.modulo);
  std::vector<std::string> codigos;
};
INSTANTIATE_TEST_SUITE_P(Bases, Fracciones, testing::ValuesIn(Bases()),
                         [](const auto& info) { return info.index ? "MariaDb" : "Sqlite"; });

TEST_P(Fracciones, CapturaLoQueSeTecleaYSigueEnElCampo) {
  EXPECT_EQ(ventana->Caption(), "Captura de fracciones");
  EXPECT_EQ(ventana->State(), WindowState::Maximized);
  EXPECT_EQ(ventana->Estado(), "ESPERANDO USUARIO");
  const auto& [articulo, clave] = [&] {
    const auto fila = t.Base().Consulta("SELECT Articulo, clave FROM clavesadd ORDER BY clave");
    return std::pair(ATexto(fila->Campo(0)), ATexto(fila->Campo(1)));
  }();
  ventana->Type(" " + articulo + " ");
  ventana->Press(key::kEnter);
  ventana->Type("2.5*" + clave);
  ventana->Press(key::kEnter);
  EXPECT_EQ(codigos, (std::vector<std::string>{articulo, "2.5*" + clave}));
  EXPECT_THAT(t.Filas("SELECT codigo, articulo, cantidad FROM fracciones ORDER BY id", 3),
              testing::ElementsAre(articulo + " " + articulo + " 1", clave + " " + articulo + " 2.5"));
  EXPECT_EQ(ventana->ActiveControl()->Name(), "txtFields");

  ventana->Type("NO EXISTE <b>");
  ventana->Press(key::kEnter);
  EXPECT_EQ(ventana->Estado(), "CODIGO DESCONOCIDO");
  EXPECT_THAT(Pagina(), HasSubstr("Código desconocido: NO EXISTE &lt;b&gt;"));
  EXPECT_EQ(t.Numero("SELECT COUNT( * ) FROM fracciones WHERE articulo IS NULL"), 1);
  // A bare Enter starts the process as well, with nothing to capture.
  ventana->Press(key::kEnter);
  EXPECT_EQ(codigos.back(), "");
  EXPECT_EQ(t.Numero("SELECT COUNT( * ) FROM fracciones"), 3);
  EXPECT_TRUE(t.escritorio.Avisos().empty());
}

TEST_P(Fracciones, MilCodigosEnOrdenNingunoPerdido) {
  for (int i = 0; i < 1000; ++i) {
    ventana->Type("C" + std::to_string(i));
    ventana->Press(key::kEnter);
  }
  EXPECT_EQ(t.Numero("SELECT COUNT( * ) FROM fracciones"), 1000);
  EXPECT_EQ(t.Numero("SELECT COUNT( * ) FROM fracciones a INNER JOIN fracciones b ON b.id = a.id + 1 WHERE "
                     "CAST(SUBSTR(b.codigo, 2) AS DECIMAL) <> CAST(SUBSTR(a.codigo, 2) AS DECIMAL) + 1"),
            0);
}

TEST_P(Fracciones, UnProcesoQueFallaSeReportaYNoPierdeElCodigo) {
  t.anfitrion->PonGancho("FRACCIONES", [](PeticionProceso&) { throw HostError("sin red"); });
  ventana->Type("A");
  ventana->Press(key::kEnter);
  ASSERT_EQ(t.escritorio.Avisos().size(), 1u);
  EXPECT_EQ(t.escritorio.Avisos().at(0),
            "Error occured:\r\nModule: frmFracciones\r\nFunction: txtFields_KeyDown\r\nDescription: sin red");
  EXPECT_EQ(ventana->Codigo(), "A");
  EXPECT_EQ(LeeCaptura("A*B").codigo, "A*B");
  EXPECT_EQ(LeeCaptura("-2*B").cantidad, 1);
}

}  // namespace
}  // namespace zuvi::host
