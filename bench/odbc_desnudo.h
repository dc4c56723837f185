// The floor of the comparison: a loop that runs texts of statements through the plain ODBC C API, with
// nothing around it but what a correct program cannot leave out.
#pragma once

#include <sql.h>
#include <sqlext.h>

#include <array>
#include <deque>
#include <stdexcept>
#include <string>

namespace zuvi::bench {

class OdbcDesnudo {
 public:
  explicit OdbcDesnudo(const std::string& cadena) {
    SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &entorno_);
    SQLSetEnvAttr(entorno_, SQL_ATTR_ODBC_VERSION, reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0);
    SQLAllocHandle(SQL_HANDLE_DBC, entorno_, &enlace_);
    Exige(
        SQLDriverConnect(enlace_, nullptr, Texto(cadena), SQL_NTS, nullptr, 0, nullptr, SQL_DRIVER_NOPROMPT),
        SQL_HANDLE_DBC, enlace_, "connect");
    Exige(SQLAllocHandle(SQL_HANDLE_STMT, enlace_, &sentencia_), SQL_HANDLE_DBC, enlace_, "statement");
  }
  OdbcDesnudo(const OdbcDesnudo&) = delete;
  OdbcDesnudo& operator=(const OdbcDesnudo&) = delete;
  ~OdbcDesnudo() {
    SQLFreeHandle(SQL_HANDLE_STMT, sentencia_);
    SQLDisconnect(enlace_);
    SQLFreeHandle(SQL_HANDLE_DBC, enlace_);
    SQLFreeHandle(SQL_HANDLE_ENV, entorno_);
  }

  /// Runs one statement; fetches all its rows into bound text buffers, or asks how many rows it touched.
  void Corre(const std::string& sql) {
    const auto exige = [&](SQLRETURN r) { Exige(r, SQL_HANDLE_STMT, sentencia_, sql); };
    exige(SQLExecDirect(sentencia_, Texto(sql), static_cast<SQLINTEGER>(sql.size())));
    SQLSMALLINT columnas = 0;
    exige(SQLNumResultCols(sentencia_, &columnas));
    if (columnas == 0) {
      SQLLEN tocadas = 0;
      exige(SQLRowCount(sentencia_, &tocadas));
    } else {
      while (celdas_.size() < static_cast<std::size_t>(columnas)) {
        Celda& celda = celdas_.emplace_back();
        exige(SQLBindCol(sentencia_, static_cast<SQLUSMALLINT>(celdas_.size()), SQL_C_CHAR,
                         celda.texto.data(), static_cast<SQLLEN>(celda.texto.size()), &celda.largo));
      }
      SQLRETURN r;
      while ((r = SQLFetch(sentencia_)) != SQL_NO_DATA) exige(r);
    }
    SQLFreeStmt(sentencia_, SQL_CLOSE);
  }

 private:
  struct Celda {
    std::array<char, 256> texto;
    SQLLEN largo = 0;
  };
  static SQLCHAR* Texto(const std::string& texto) {
    return reinterpret_cast<SQLCHAR*>(const_cast<char*>(texto.c_str()));
  }
  static void Exige(SQLRETURN r, SQLSMALLINT tipo, SQLHANDLE handle, const std::string& que) {
    if (SQL_SUCCEEDED(r) || r == SQL_NO_DATA) return;
    SQLCHAR estado[6] = {}, texto[512] = {};
    SQLGetDiagRec(tipo, handle, 1, estado, nullptr, texto, sizeof texto, nullptr);
    throw std::runtime_error(que + ": " + reinterpret_cast<char*>(texto));
  }

  SQLHANDLE entorno_ = nullptr;
  SQLHANDLE enlace_ = nullptr;
  SQLHANDLE sentencia_ = nullptr;
  std::deque<Celda> celdas_;
};

}  // namespace zuvi::bench
