// The ODBC functions that the host calls, passed on to the system's own library. Linked in the usual way the
// program's loader would look for that library beside the program first, where anybody may have put another.
// A function that is missing here is taken from the import library as before.
#include "host/odbc/odbc_api.h"
#include "win32/image.h"

namespace {

/// Null where the system has no such library, or it no such function.
template <class Funcion>
Funcion DelSistema(const char* nombre) {
  // Never let go: drivers that it has loaded may have threads.
  static const HMODULE biblioteca = zuvi::LoadSystemLibrary(L"odbc32.dll");
  return biblioteca ? zuvi::FunctionOf<Funcion>(biblioteca, nombre) : nullptr;
}

#ifdef _WIN64
using AtributoNumerico = SQLLEN*;
#else
using AtributoNumerico = SQLPOINTER;
#endif

}  // namespace

#define ZUVI_PASA(nombre, argumentos, pasados)                            \
  SQLRETURN SQL_API nombre argumentos {                                   \
    static const auto funcion = DelSistema<decltype(&::nombre)>(#nombre); \
    return funcion ? funcion pasados : static_cast<SQLRETURN>(SQL_ERROR); \
  }

extern "C" {

ZUVI_PASA(SQLAllocHandle, (SQLSMALLINT a, SQLHANDLE b, SQLHANDLE* c), (a, b, c))
ZUVI_PASA(SQLDrivers,
          (SQLHENV a, SQLUSMALLINT b, SQLCHAR* c, SQLSMALLINT d, SQLSMALLINT* e, SQLCHAR* f, SQLSMALLINT g,
           SQLSMALLINT* h),
          (a, b, c, d, e, f, g, h))
ZUVI_PASA(SQLDriversW,
          (SQLHENV a, SQLUSMALLINT b, SQLWCHAR* c, SQLSMALLINT d, SQLSMALLINT* e, SQLWCHAR* f, SQLSMALLINT g,
           SQLSMALLINT* h),
          (a, b, c, d, e, f, g, h))
ZUVI_PASA(SQLFreeHandle, (SQLSMALLINT a, SQLHANDLE b), (a, b))
ZUVI_PASA(SQLFreeStmt, (SQLHSTMT a, SQLUSMALLINT b), (a, b))
ZUVI_PASA(SQLSetEnvAttr, (SQLHENV a, SQLINTEGER b, SQLPOINTER c, SQLINTEGER d), (a, b, c, d))
ZUVI_PASA(SQLSetConnectAttr, (SQLHDBC a, SQLINTEGER b, SQLPOINTER c, SQLINTEGER d), (a, b, c, d))
ZUVI_PASA(SQLSetConnectAttrW, (SQLHDBC a, SQLINTEGER b, SQLPOINTER c, SQLINTEGER d), (a, b, c, d))
ZUVI_PASA(SQLGetConnectAttr, (SQLHDBC a, SQLINTEGER b, SQLPOINTER c, SQLINTEGER d, SQLINTEGER* e),
          (a, b, c, d, e))
ZUVI_PASA(SQLGetConnectAttrW, (SQLHDBC a, SQLINTEGER b, SQLPOINTER c, SQLINTEGER d, SQLINTEGER* e),
          (a, b, c, d, e))
ZUVI_PASA(SQLSetStmtAttr, (SQLHSTMT a, SQLINTEGER b, SQLPOINTER c, SQLINTEGER d), (a, b, c, d))
ZUVI_PASA(SQLSetStmtAttrW, (SQLHSTMT a, SQLINTEGER b, SQLPOINTER c, SQLINTEGER d), (a, b, c, d))
ZUVI_PASA(SQLGetInfo, (SQLHDBC a, SQLUSMALLINT b, SQLPOINTER c, SQLSMALLINT d, SQLSMALLINT* e),
          (a, b, c, d, e))
ZUVI_PASA(SQLGetInfoW, (SQLHDBC a, SQLUSMALLINT b, SQLPOINTER c, SQLSMALLINT d, SQLSMALLINT* e),
          (a, b, c, d, e))
ZUVI_PASA(SQLDriverConnect,
          (SQLHDBC a, SQLHWND b, SQLCHAR* c, SQLSMALLINT d, SQLCHAR* e, SQLSMALLINT f, SQLSMALLINT* g,
           SQLUSMALLINT h),
          (a, b, c, d, e, f, g, h))
ZUVI_PASA(SQLDriverConnectW,
          (SQLHDBC a, SQLHWND b, SQLWCHAR* c, SQLSMALLINT d, SQLWCHAR* e, SQLSMALLINT f, SQLSMALLINT* g,
           SQLUSMALLINT h),
          (a, b, c, d, e, f, g, h))
ZUVI_PASA(SQLDisconnect, (SQLHDBC a), (a))
ZUVI_PASA(SQLEndTran, (SQLSMALLINT a, SQLHANDLE b, SQLSMALLINT c), (a, b, c))
ZUVI_PASA(SQLExecDirect, (SQLHSTMT a, SQLCHAR* b, SQLINTEGER c), (a, b, c))
ZUVI_PASA(SQLExecDirectW, (SQLHSTMT a, SQLWCHAR* b, SQLINTEGER c), (a, b, c))
ZUVI_PASA(SQLPrepare, (SQLHSTMT a, SQLCHAR* b, SQLINTEGER c), (a, b, c))
ZUVI_PASA(SQLPrepareW, (SQLHSTMT a, SQLWCHAR* b, SQLINTEGER c), (a, b, c))
ZUVI_PASA(SQLExecute, (SQLHSTMT a), (a))
ZUVI_PASA(SQLCancel, (SQLHSTMT a), (a))
ZUVI_PASA(SQLBindCol, (SQLHSTMT a, SQLUSMALLINT b, SQLSMALLINT c, SQLPOINTER d, SQLLEN e, SQLLEN* f),
          (a, b, c, d, e, f))
ZUVI_PASA(SQLFetch, (SQLHSTMT a), (a))
ZUVI_PASA(SQLMoreResults, (SQLHSTMT a), (a))
ZUVI_PASA(SQLCloseCursor, (SQLHSTMT a), (a))
ZUVI_PASA(SQLGetData, (SQLHSTMT a, SQLUSMALLINT b, SQLSMALLINT c, SQLPOINTER d, SQLLEN e, SQLLEN* f),
          (a, b, c, d, e, f))
ZUVI_PASA(SQLNumResultCols, (SQLHSTMT a, SQLSMALLINT* b), (a, b))
ZUVI_PASA(SQLRowCount, (SQLHSTMT a, SQLLEN* b), (a, b))
ZUVI_PASA(SQLColAttribute,
          (SQLHSTMT a, SQLUSMALLINT b, SQLUSMALLINT c, SQLPOINTER d, SQLSMALLINT e, SQLSMALLINT* f,
           AtributoNumerico g),
          (a, b, c, d, e, f, g))
ZUVI_PASA(SQLDescribeCol,
          (SQLHSTMT a, SQLUSMALLINT b, SQLCHAR* c, SQLSMALLINT d, SQLSMALLINT* e, SQLSMALLINT* f, SQLULEN* g,
           SQLSMALLINT* h, SQLSMALLINT* i),
          (a, b, c, d, e, f, g, h, i))
ZUVI_PASA(SQLDescribeColW,
          (SQLHSTMT a, SQLUSMALLINT b, SQLWCHAR* c, SQLSMALLINT d, SQLSMALLINT* e, SQLSMALLINT* f, SQLULEN* g,
           SQLSMALLINT* h, SQLSMALLINT* i),
          (a, b, c, d, e, f, g, h, i))
ZUVI_PASA(SQLGetDiagRec,
          (SQLSMALLINT a, SQLHANDLE b, SQLSMALLINT c, SQLCHAR* d, SQLINTEGER* e, SQLCHAR* f, SQLSMALLINT g,
           SQLSMALLINT* h),
          (a, b, c, d, e, f, g, h))
ZUVI_PASA(SQLGetDiagRecW,
          (SQLSMALLINT a, SQLHANDLE b, SQLSMALLINT c, SQLWCHAR* d, SQLINTEGER* e, SQLWCHAR* f, SQLSMALLINT g,
           SQLSMALLINT* h),
          (a, b, c, d, e, f, g, h))
}

#undef ZUVI_PASA
