// The host's services one by one.
#include <fstream>
#include <set>
#include <sstream>

#include "component/services/acceso_datos.h"
#include "component/services/documento_inventario.h"
#include "component/services/ventanas_host.h"
#include "host/constructor_sql_host.h"
#include "host/filtros.h"
#include "host/mensajes.h"
#include "host/reporte_orden.h"
#include "host/rutas.h"
#include "host/ventanas_host.h"
#include "tests/host/tienda.h"

namespace zuvi::host {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class Servicios : public testing::TestWithParam<std::string> {
 protected:
  Tienda tienda{GetParam()};
};
ZUVI_EN_CADA_BASE(Servicios);

TEST_P(Servicios, ElConstructorEscribeLiteralesYExigeElOrden) {
  ConstructorSqlHost sql(tienda.anfitrion);
  sql.PonConexion(tienda.anfitrion->Base());
  const auto falla = [](const char* texto, auto&& accion) {
    EXPECT_THAT(ErrorDe(accion).what(), HasSubstr(texto));
  };
  falla("falta llamar a Genera", [&] { sql.Ejecuta(); });
  falla("Falta el tipo", [&] { sql.Genera("op"); });
  falla("DELETE", [&] { sql.Tipo("DELETE"); });
  sql.Tipo("INSERT");
  falla("al menos una columna", [&] { sql.Genera("op"); });
  sql.AgregaCampo("op", "op", 501);
  sql.AgregaCampo("op", "observ", "O'Brien; \"ñ\"");
  sql.AgregaCampo("op", "importe", 2.5);
  sql.AgregaCampo("op", "f_emision", Fecha::DesdeTexto("2026-02-28"));
  sql.AgregaCampo("op", "usuario", Null{});
  sql.AgregaCampo("op", "ocupado", std::int16_t{1});
  falla("tabla oppart", [&] { sql.AgregaCampo("oppart", "op", 1); });
  falla("oppart", [&] { sql.Genera("oppart"); });
  sql.Genera("op");
  EXPECT_EQ(sql.Sentencia(),
            "INSERT INTO op (op, observ, importe, f_emision, usuario, ocupado) VALUES (501, "
            "'O''Brien; \"ñ\"', 2.5, '2026-02-28', NULL, 1)");
  sql.Ejecuta();
  EXPECT_THAT(tienda.Filas("SELECT observ, importe, estado FROM op WHERE op = 501", 3),
              ElementsAre("O'Brien; \"ñ\" 2.5 PE"));

  sql.Limpia();
  sql.Tipo("UPDATE");
  sql.Genera("oppart");
  sql.Ejecuta();
  EXPECT_EQ(sql.Sentencia(), "") << "an UPDATE without columns runs nothing";
  sql.AgregaCampo("op", "importe", 2.5);
  falla("condición", [&] { sql.Genera("op"); });
}

TEST_P(Servicios, UnGanchoYLaTablaDeProcesosVetan) {
  // A station that starts after the key was forbidden.
  tienda.Base().Ejecuta("INSERT INTO procesos (clave, vetado) VALUES ('DESEM007', 1)");
  EXPECT_FALSE(tienda.anfitrion->Vetada("DESEM007"));
  if (GetParam() != ":memory:") {
    const auto otro = AnfitrionEn(GetParam());
    EXPECT_TRUE(otro->Vetada("DESEM007"));
    EXPECT_FALSE(otro->Vetada("OPAUTO002"));
  }
  const double desde = tienda.UltimoMovimiento();
  bool veta = true;
  tienda.anfitrion->PonGancho("DESEM007", [&](PeticionProceso& peticion) { peticion.bandera = veta; });
  tienda.produccion->Desensamble("TRUFAS", 1, 1, 0);
  EXPECT_EQ(tienda.UltimoMovimiento(), desde);
  veta = false;
  tienda.produccion->Desensamble("TRUFAS", 1, 1, 0);
  EXPECT_EQ(tienda.UltimoMovimiento(), desde + 6);
}

TEST_P(Servicios, CancelarTerminaUnDesensambleQueNoTendriaFin) {
  class Impaciente final : public Interaccion {
   public:
    void Mensaje(const std::string&, EstiloMensaje) override {}
    bool Pregunta(const std::string&) override { return false; }
    std::unique_ptr<Progreso> AbreProgreso(std::int32_t, const std::string&, const std::string&) override {
      return std::make_unique<ProgresoMudo>();
    }
    bool Cancelado() override { return ++consultas_ > 100; }

   private:
    int consultas_ = 0;
  };
  tienda.anfitrion->PonInteraccion(std::make_unique<Impaciente>());
  const double total = tienda.ValorTotal();
  tienda.produccion->Desensamble("PQ-EMPRESA", 1, 1, 0);
  const auto cancelada = HasSubstr("Operación cancelada por el usuario");
  EXPECT_THAT(tienda.escritorio.Avisos(), ElementsAre(cancelada, cancelada));
  EXPECT_EQ(tienda.ValorTotal(), total) << "whole baskets were taken apart, none half";

  tienda.produccion->EntregaProductoTerminado(104);
  EXPECT_EQ(tienda.Numero("SELECT SUM(terminado) FROM oppart WHERE op = 104"), 0)
      << "nothing is marked delivered";
}

TEST_P(Servicios, LaPaginaDeLaOrdenYLaBusqueda) {
  tienda.Base().Ejecuta("UPDATE oppart SET observ = '<b>&' WHERE op = 105 AND cantidad = 2.5");
  tienda.Nuevo<ControlProcesos>()->ImprimeReporte("ORDENP", 105, nullptr, nullptr);
  std::ifstream archivo(Ruta(tienda.anfitrion->TraeOpciones().ruta) / "Reportes" / "ORDENP-105.html");
  std::stringstream texto;
  texto << archivo.rdbuf();
  EXPECT_THAT(texto.str(), testing::AllOf(HasSubstr("Orden de producción 105"), HasSubstr("Galleta de nuez"),
                                          HasSubstr(">2.5<"), HasSubstr("&lt;b&gt;&amp;"),
                                          HasSubstr("Taller de repostería"), HasSubstr(">768.00<")));
  EXPECT_THAT(ErrorDe([&] { PaginaDeOrden(tienda.Base(), 999); }).what(), HasSubstr("999 no existe"));

  BuscaCatalogoHost busca(tienda.anfitrion);
  busca.PonFiltro("kit <> 0");
  EXPECT_EQ(busca.Busca("Articulos", "canasta")->Campo("articulo"), Value("CAN-DESAYUNO"))
      << "not the baskets that are no kits";
  EXPECT_TRUE(busca.Busca("Articulos", "100%")->Eof());
  busca.PonFiltro("");
  EXPECT_EQ(ATexto(busca.Busca("Almacenes", "taller")->Campo(0)), "3");
  EXPECT_FALSE(busca.Busca("Impuestos por porcentaje", "")->Eof());
  EXPECT_FALSE(busca.Busca("Conceptos de Op al inventario", "kit")->Eof());
  EXPECT_THAT(ErrorDe([&] { busca.Muestra("Articulos"); }).what(), HasSubstr("no tiene ventanas"));
}

TEST_P(Servicios, ConversionesClavesYFolios) {
  const auto datos = tienda.Nuevo<AccesoDatos>();
  const auto conexion = tienda.anfitrion->Base();
  EXPECT_EQ(datos->ValorNumerico(Null{}), 0);
  EXPECT_EQ(datos->ValorNumerico("  "), 0);
  EXPECT_EQ(datos->ValorNumerico(" 2.5 "), 2.5);
  EXPECT_EQ(datos->ValorNumerico(true), -1);
  EXPECT_THAT(ErrorDe([&] { datos->ValorNumerico("2,5"); }).what(), HasSubstr("\"2,5\" no es un número"));
  EXPECT_EQ(datos->ValorTexto(Null{}), "");
  EXPECT_EQ(datos->TextoConCeros(7, 2) + datos->TextoConCeros(123, 2) + datos->TextoConCeros(-7, 4),
            "07123-007");
  EXPECT_EQ(datos->FechaSQL(conexion, datos->ComponeFecha(20240229, 0)), "'2024-02-29'");
  EXPECT_EQ(datos->ComponeFecha(20240229, 86399).Texto(), "2024-02-29 23:59:59");
  EXPECT_THROW(datos->ComponeFecha(20230229, 0), HostError);
  EXPECT_TRUE(datos->ExisteClave("MOÑO", "prods", "articulo", conexion));
  EXPECT_FALSE(datos->ExisteClave("x' OR '1'='1", "prods", "articulo", conexion));
  EXPECT_TRUE(datos->ExisteClave("1", "almacen", "almacen", nullptr));
  EXPECT_TRUE(datos->UbicacionRestringida("JAMON-SER", 2, conexion));
  EXPECT_FALSE(datos->UbicacionRestringida("JAMON-SER", 1, conexion));
  std::int32_t documento = 0;
  EXPECT_EQ(datos->SiguienteFolio("Op", conexion, documento, nullptr), 111);
  EXPECT_EQ(documento, 111);
  EXPECT_EQ(datos->SiguienteFolio("clave 'nueva'", conexion, documento, nullptr), 1);
  EXPECT_EQ(datos->SiguienteFolio("clave 'nueva'", conexion, documento, nullptr), 2);
}

TEST(Filtros, CadaEtiquetaAdmiteLoSuyoYDaSuForma) {
  HeadlessDesktop escritorio;
  const auto pon = [&](const char* etiqueta, const char* texto, std::int32_t seleccion = 0) {
    const auto caja = Destino(escritorio, texto, etiqueta).caja;
    caja->SetSelLength(seleccion);
    return caja;
  };
  const struct {
    const char *etiqueta, *tecleado, *queda, *formateado;
  } casos[] = {{"N", "-12a,5.3", "12.53", "12.53"},
               {"SD", "2.1234567x", "2.123456", "2.123456"},
               {"SD", "007", "007", "7.00"},
               {"SN", "-1-2,50", "-12.50", "-12.5"},
               {"D", "1/2/2026x9999", "1/2/202699", "1/2/202699"},
               {"D", "29-2-24", "29-2-24", "29-02-2024"},
               {"D", "01022026", "01022026", "01-02-2026"},
               {"D", "31/02/2026", "31/02/2026", "31/02/2026"},
               {"D", "2026-03-01", "2026-03-01", "01-03-2026"},
               {"U", "ab1", "AB1", "AB1"},
               {"", "aB-.", "aB-.", "aB-."},
               {"SN", "-", "-", "-"}};
  for (const auto& caso : casos) {
    const auto caja = pon(caso.etiqueta, "");
    for (const char* c = caso.tecleado; *c; ++c)
      if (const auto tecla = Filtra(CajaDe(caja), *c)) {
        caja->SetText(caja->Text() + static_cast<char>(tecla));
        caja->SetSelStart(caja->Length());
      }
    EXPECT_EQ(caja->Text(), caso.queda) << caso.etiqueta << " " << caso.tecleado;
    EXPECT_EQ(Formatea(CajaDe(caja)), caso.formateado) << caso.etiqueta << " " << caso.tecleado;
  }
  EXPECT_EQ(Filtra(CajaDe(pon("N", "1.5", 3)), '.'), '.') << "all of it is selected";
  EXPECT_EQ(Filtra(CajaDe(pon("N", "1.5")), '.'), 0);
  EXPECT_EQ(Filtra(CajaDe(pon("SN", "15")), '-'), '-');
  EXPECT_EQ(Filtra(CajaDe(pon("N", "")), 8), 8) << "backspace";
  EXPECT_EQ(EnMayuscula(0xf1), 0xd1);
  EXPECT_EQ(EnMayuscula(0xf7), 0xf7) << "the division sign has no upper case";
  EXPECT_EQ(Formatea({.etiqueta = "U", .texto = "ñandú"}), "ÑANDÚ");
}

TEST(Mensajes, ElCatalogoEstaCompletoEnLosDosIdiomas) {
  std::set<std::string> textos;
  const std::vector<std::int32_t> numeros{72,  74,  75,  76,  224, 234, 235, 236, 240, 241, 343, 703, 753,
                                          754, 755, 756, 757, 759, 832, 833, 834, 835, 836, 837, 838, 839};
  for (const auto numero : numeros)
    for (const char* idioma : {"es", "en"}) textos.insert(TextoMensaje(numero, idioma));
  EXPECT_THAT(textos, testing::Each(testing::Not(testing::ContainsRegex("[0-9]"))));
  EXPECT_EQ(textos.size(), numeros.size() * 2) << "no text serves twice";
  EXPECT_EQ(CatalogoMensajes().size(), numeros.size());
  EXPECT_THAT(TextoMensaje(9999, "en"), HasSubstr("9999"));
}

}  // namespace
}  // namespace zuvi::host
