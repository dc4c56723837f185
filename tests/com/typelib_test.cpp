// What is promised to whoever binds to the type libraries, as text. A change here breaks existing hosts.
#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <regex>
#include <sstream>

#include "automation/com_ptr.h"
#include "automation/handles.h"

namespace zuvi::prueba {
namespace {

std::string Guid(REFGUID id) {
  wchar_t text[40];
  ::StringFromGUID2(id, text, 40);
  return Narrow(text);
}

/// The name of a type, or of a library.
template <class Documented, class Index>
std::string Nombre(Documented* documented, Index index) {
  UniqueBstr name;
  documented->GetDocumentation(index, name.put(), nullptr, nullptr, nullptr);
  return Narrow(name.get());
}

std::string Tipo(ITypeInfo* info, const TYPEDESC& type) {
  static const std::map<VARTYPE, std::string> kNombres = {
      {VT_I2, "short"},         {VT_I4, "long"},   {VT_R8, "double"},       {VT_BSTR, "BSTR"},
      {VT_BOOL, "BOOL"},        {VT_DATE, "DATE"}, {VT_VARIANT, "VARIANT"}, {VT_DISPATCH, "IDispatch"},
      {VT_UNKNOWN, "IUnknown"}, {VT_VOID, "void"}, {VT_HRESULT, "HRESULT"}};
  if (type.vt == VT_PTR) return Tipo(info, *type.lptdesc) + "*";
  if (type.vt == VT_USERDEFINED) {
    ComPtr<ITypeInfo> other;
    return FAILED(info->GetRefTypeInfo(type.hreftype, other.put())) ? "?" : Nombre(other.get(), MEMBERID_NIL);
  }
  const auto found = kNombres.find(type.vt);
  return found == kNombres.end() ? "vt" + std::to_string(type.vt) : found->second;
}

void DescribeFuncion(ITypeInfo* info, const FUNCDESC& f, std::ostream& out) {
  static const std::map<int, const char*> kClases = {{INVOKE_FUNC, "method"},
                                                     {INVOKE_PROPERTYGET, "get"},
                                                     {INVOKE_PROPERTYPUT, "put"},
                                                     {INVOKE_PROPERTYPUTREF, "putref"}};
  std::vector<BSTR> names(static_cast<std::size_t>(f.cParams) + 1);
  UINT count = 0;
  info->GetNames(f.memid, names.data(), static_cast<UINT>(names.size()), &count);
  out << "    " << f.memid << " " << kClases.at(f.invkind) << " " << Narrow(names[0]) << "(";
  for (SHORT i = 0; i < f.cParams; ++i) {
    const ELEMDESC& p = f.lprgelemdescParam[i];
    const auto flag = [&](USHORT mask, const char* text) {
      return p.paramdesc.wParamFlags & mask ? text : "";
    };
    out << (i ? ", " : "") << flag(PARAMFLAG_FIN, "in ") << flag(PARAMFLAG_FOUT, "out ")
        << flag(PARAMFLAG_FOPT, "optional ") << flag(PARAMFLAG_FRETVAL, "retval ")
        << flag(PARAMFLAG_FHASDEFAULT, "default ") << Tipo(info, p.tdesc);
    if (static_cast<UINT>(i) + 1 < count) out << " " << Narrow(names[static_cast<std::size_t>(i) + 1]);
  }
  out << ") " << Tipo(info, f.elemdescFunc.tdesc) << "\n";
  for (const BSTR name : names) ::SysFreeString(name);
}

void DescribeTipo(ITypeInfo* info, std::ostream& out) {
  static const std::map<int, const char*> kClases = {
      {TKIND_INTERFACE, "interface"}, {TKIND_DISPATCH, "dispinterface"}, {TKIND_COCLASS, "coclass"}};
  TYPEATTR* a = nullptr;
  ASSERT_EQ(info->GetTypeAttr(&a), S_OK);
  out << "  " << kClases.at(a->typekind) << " " << Nombre(info, MEMBERID_NIL) << " " << Guid(a->guid)
      << (a->wTypeFlags & TYPEFLAG_FDUAL ? " dual" : "")
      << (a->wTypeFlags & TYPEFLAG_FOLEAUTOMATION ? " oleautomation" : "")
      << (a->wTypeFlags & TYPEFLAG_FCANCREATE ? " creatable" : "") << "\n";
  for (UINT i = 0; i < a->cImplTypes && a->typekind == TKIND_COCLASS; ++i) {
    HREFTYPE reference = 0;
    ComPtr<ITypeInfo> implemented;
    info->GetRefTypeOfImplType(i, &reference);
    info->GetRefTypeInfo(reference, implemented.put());
    out << "    implements " << Nombre(implemented.get(), MEMBERID_NIL) << "\n";
  }
  for (UINT i = 0; i < a->cFuncs; ++i) {
    FUNCDESC* f = nullptr;
    if (FAILED(info->GetFuncDesc(i, &f))) continue;
    // Members inherited from IDispatch are nobody's promise of ours.
    if (f->memid < 0x60000000) DescribeFuncion(info, *f, out);
    info->ReleaseFuncDesc(f);
  }
  info->ReleaseTypeAttr(a);
}

std::string Describe(const wchar_t* file) {
  ComPtr<ITypeLib> library;
  std::ostringstream out;
  if (FAILED(::LoadTypeLibEx(file, REGKIND_NONE, library.put()))) return "cannot load\n";
  TLIBATTR* a = nullptr;
  library->GetLibAttr(&a);
  out << "library " << Nombre(library.get(), -1) << " " << Guid(a->guid) << " " << a->wMajorVerNum << "."
      << a->wMinorVerNum << "\n";
  library->ReleaseTLibAttr(a);
  for (UINT i = 0; i < library->GetTypeInfoCount(); ++i) {
    ComPtr<ITypeInfo> info;
    library->GetTypeInfo(i, info.put());
    DescribeTipo(info.get(), out);
  }
  return out.str();
}

TEST(BibliotecasDeTipos, SonLasPrometidas) {
  // The component's own library is taken out of the DLL, as clients do.
  const std::string now = Describe(L"ZuviProduccion.dll") +
                          Describe(L"" ZUVI_TLB_FOLDER "ZuviEnviroment.tlb") +
                          Describe(L"" ZUVI_TLB_FOLDER "ZuviQuery.tlb");
  std::ifstream file(ZUVI_GOLDEN, std::ios::binary);
  const std::string golden((std::istreambuf_iterator<char>(file)), {});
  if (now != golden) std::ofstream("typelib.now.txt", std::ios::binary) << now;
  EXPECT_EQ(now, golden);
}

/// What is loaded without registration: each library of a manifest out of the file, and the place in it, that
/// the manifest names. Wine's own look-up passes over the place.
TEST(BibliotecasDeTipos, LosManifiestosNombranCadaUnaDondeEsta) {
  int cuantas = 0;
  for (const std::string dll : {"ZuviProduccion", "ZuviHost"}) {
    std::ifstream file(dll + ".SxS.manifest", std::ios::binary);
    const std::string manifiesto((std::istreambuf_iterator<char>(file)), {});
    ASSERT_NE(manifiesto.find("<file name=\"" + dll + ".dll\">"), std::string::npos);
    const std::regex biblioteca("<typelib tlbid=\"([^\"]*)\"[^>]*>"), lugar("resourceid=\"([0-9]+)\"");
    std::string todas;
    for (std::sregex_iterator i(manifiesto.begin(), manifiesto.end(), biblioteca), fin; i != fin; ++i) {
      const std::string elemento = i->str(), guid = ToLower((*i)[1].str());
      std::smatch numero;
      const bool dicho = std::regex_search(elemento, numero, lugar);
      const std::wstring camino = Wide(dll + ".dll" + (dicho ? "\\" + numero[1].str() : ""));
      const std::string descrita = ToLower(Describe(camino.c_str()));
      EXPECT_NE(descrita.substr(0, descrita.find('\n')).find(guid), std::string::npos) << elemento;
      todas += guid;
      ++cuantas;
    }
    // Those that the classes are described by.
    const std::regex clase("<comClass [^>]*tlbid=\"([^\"]*)\"");
    for (std::sregex_iterator i(manifiesto.begin(), manifiesto.end(), clase), fin; i != fin; ++i)
      EXPECT_NE(todas.find(ToLower((*i)[1].str())), std::string::npos) << i->str();
  }
  EXPECT_EQ(cuantas, 3);
}

}  // namespace
}  // namespace zuvi::prueba
