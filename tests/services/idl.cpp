#include "tests/services/idl.h"

#include <algorithm>
#include <fstream>
#include <map>
#include <regex>
#include <stdexcept>

namespace zuvi::pruebas {
namespace {

using Hallazgos = std::sregex_iterator;

bool Dice(const std::string& atributos, const char* palabra) {
  return std::regex_search(atributos, std::regex(std::string("\\b") + palabra + "\\b"));
}

MiembroIdl Miembro(const std::smatch& funcion) {
  const std::string atributos = funcion[2];
  std::string resultado = funcion[3];
  std::erase(resultado, ' ');
  MiembroIdl miembro{std::stoi(funcion[1]), funcion[4], resultado, Dice(atributos, "propget"), false, {}};
  miembro.se_pone = Dice(atributos, "propputref") || Dice(atributos, "propput");
  const std::string lista = funcion[5];
  static const std::regex parametro(R"(\[([^\]]*)\]\s*(\w+\s*\**)\s*(\w+))");
  for (Hallazgos p(lista.begin(), lista.end(), parametro), fin; p != fin; ++p) {
    std::string tipo = (*p)[2];
    std::erase(tipo, ' ');
    const std::string modo = (*p)[1];
    if (Dice(modo, "retval"))
      miembro.resultado = tipo.substr(0, tipo.size() - 1);
    else
      miembro.parametros.push_back({(*p)[3], tipo, Dice(modo, "out"), Dice(modo, "optional")});
  }
  return miembro;
}

}  // namespace

const MiembroIdl* InterfazIdl::Miembro(std::string_view buscado) const {
  const auto hallado = std::ranges::find(miembros, buscado, &MiembroIdl::nombre);
  return hallado == miembros.end() ? nullptr : &*hallado;
}

std::vector<InterfazIdl> LeeIdl(const std::string& archivo) {
  std::ifstream entrada(archivo);
  std::string texto((std::istreambuf_iterator<char>(entrada)), {});
  if (texto.empty()) throw std::runtime_error(archivo);
  texto = std::regex_replace(texto, std::regex("//[^\n]*|defaultvalue\\([^)]*\\)"), "");

  std::vector<InterfazIdl> interfaces;
  static const std::regex interfaz(R"(\b(disp)?interface\s+(\w+)[^{};]*\{([^{}]*)\})");
  static const std::regex funcion(R"(\[id\((\d+)\)([^\]]*)\]\s*(\w+\s*\**)\s*(\w+)\(([^()]*)\)\s*;)");
  for (Hallazgos i(texto.begin(), texto.end(), interfaz), fin; i != fin; ++i) {
    InterfazIdl una{(*i)[2], !(*i)[1].matched, {}};
    const std::string cuerpo = (*i)[3];
    for (Hallazgos f(cuerpo.begin(), cuerpo.end(), funcion); f != fin; ++f) {
      const MiembroIdl miembro = Miembro(*f);
      if (miembro.se_pone && !una.miembros.empty() && una.miembros.back().nombre == miembro.nombre)
        una.miembros.back().se_pone = true;
      else
        una.miembros.push_back(miembro);
    }
    if (static_cast<std::size_t>(std::ranges::count(cuerpo, ';')) !=
        static_cast<std::size_t>(std::distance(Hallazgos(cuerpo.begin(), cuerpo.end(), funcion), fin)))
      throw std::runtime_error("no se entiende " + una.nombre);
    interfaces.push_back(std::move(una));
  }
  return interfaces;
}

bool Cabe(CallType tipo, const std::string& idl) {
  static const std::map<std::string, CallType> tipos{
      {"BSTR", CallType::Text},         {"long", CallType::Long},        {"short", CallType::Short},
      {"double", CallType::Real},       {"DATE", CallType::Date},        {"VARIANT_BOOL", CallType::Boolean},
      {"IDispatch*", CallType::Object}, {"Ambiente*", CallType::Object}, {"void", CallType::None}};
  const auto hallado = tipos.find(idl);
  return idl == "VARIANT" || (hallado != tipos.end() && hallado->second == tipo);
}

}  // namespace zuvi::pruebas
