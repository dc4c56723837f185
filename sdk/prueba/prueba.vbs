' Lo que puede comprobarse sin manos en un Windows de verdad; docs/prueba-windows.md dice lo demás.
'   set ZUVI_BASE=%TEMP%\zuvi-prueba.db
'   cscript //nologo prueba.vbs
' Con las DLL de 32 bits: %SystemRoot%\SysWOW64\cscript. Termina a propósito con una ventana abierta.
Option Explicit
On Error Resume Next

Dim bien, mal
bien = 0
mal = 0

Sub Comprueba(que, obtenido, esperado)
  If Err.Number <> 0 Then
    mal = mal + 1
    WScript.Echo "MAL   " & que & ": error " & Err.Number & " " & Err.Description
    Err.Clear
  ElseIf CStr(obtenido) <> CStr(esperado) Then
    mal = mal + 1
    WScript.Echo "MAL   " & que & ": es " & obtenido & ", se esperaba " & esperado
  Else
    bien = bien + 1
    WScript.Echo "bien  " & que
  End If
End Sub

' What a record set of the system's own does: a text of results, the same with and without us.
Function AdoDelSistema()
  Dim filas
  On Error Resume Next
  Set filas = CreateObject("ADODB.Recordset")
  filas.Fields.Append "numero", 3
  filas.Open
  filas.AddNew
  filas.Fields("numero").Value = 7
  filas.Update
  AdoDelSistema = "error " & Err.Number
  If Err.Number = 0 Then
    AdoDelSistema = filas.RecordCount & " renglones, " & filas.Fields("numero").Value
  End If
  Err.Clear
End Function

Dim antes, ambiente, produccion, conexion, filas, numero
antes = AdoDelSistema()

Set ambiente = CreateObject("ZuviEnviroment.Ambiente")
Set produccion = CreateObject("ZuviProduccion.Produccion")
Comprueba "las dos DLL están registradas", Err.Number, 0
Set produccion.Ambiente = ambiente
Set conexion = ambiente.Conexion
Comprueba "la base se abre con el controlador instalado", Err.Number, 0
If mal > 0 Then
  WScript.Echo bien & " bien, " & mal & " mal"
  WScript.Quit 1
End If

Dim kits
kits = ambiente.Existencia("CAN-DESAYUNO", 1)
produccion.Ensamble "CAN-DESAYUNO", 1, 1
Comprueba "ensamblar una canasta", ambiente.Existencia("CAN-DESAYUNO", 1), kits + 1
produccion.Desensamble "CAN-DESAYUNO", 1, 1
Comprueba "desensamblarla", ambiente.Existencia("CAN-DESAYUNO", 1), kits

produccion.Ensamble "CAN-DESAYUNO", 1, "no es un número"
numero = Err.Number
Err.Clear
Comprueba "un argumento malo es un error y no el fin del programa", numero, 13

Comprueba "el ADO del sistema sigue siendo el suyo", AdoDelSistema(), antes
Set filas = CreateObject("ADODB.Recordset")
filas.CursorType = 1
filas.LockType = 3
filas.Open "SELECT descrip FROM prods WHERE articulo = 'CAN-DESAYUNO'", conexion
Comprueba "un Recordset sobre nuestra conexión", filas.Fields("descrip").Value, "Canasta Desayuno"

Class Gancho
  Public Function Ejecuta(ventana, entorno)
    Set editor = ventana
    Ejecuta = False
  End Function
End Class
Dim editor, procesos
Set procesos = CreateObject("ZuviQuery.ControlProcesos")
procesos.PonGancho "Op001", New Gancho
produccion.NuevaOp
Comprueba "el editor de órdenes se abre", editor.Visible, True
procesos.PonGancho "Op001", Nothing
Set editor = Nothing

WScript.Echo bien & " bien, " & mal & " mal"
If mal > 0 Then
  WScript.Quit 1
End If
' The window stays open: the end of the script takes the DLL's thread away under it.
