' A day at the example shop "La Espiga", told as it happens: an order of three lines is delivered, baskets are
' assembled and taken apart, a pending and a confirmed order are cancelled. Stock and costs before and after.
' Ends with code 0 only when all of it came out as told.
Option Explicit

Dim ambiente, produccion, conexion, fallas
fallas = 0

Sub Comprueba(que, cierto)
  If Err.Number <> 0 Then
    WScript.Echo "   ERROR " & que & ": " & Err.Number & " " & Err.Description
    Err.Clear
    fallas = fallas + 1
  ElseIf cierto Then
    WScript.Echo "   " & que
  Else
    WScript.Echo "   NO: " & que
    fallas = fallas + 1
  End If
End Sub

Function Ancho(texto, cuantos)
  Ancho = Left(texto & Space(cuantos), cuantos)
End Function

Function Derecha(texto, cuantos)
  Derecha = Right(Space(cuantos) & texto, cuantos)
End Function

Function Valor(sql)
  Dim filas
  Set filas = conexion.Execute(sql)
  Valor = 0
  If Not filas.EOF Then
    Valor = filas.Fields(0).Value
  End If
End Function

Sub Renglon(articulo, almacen)
  Dim filas, cantidad
  Set filas = conexion.Execute("SELECT descrip, unidad FROM prods WHERE articulo = '" & articulo & "'")
  cantidad = ambiente.Existencia(articulo, almacen)
  WScript.Echo "   " & Ancho(articulo, 14) & Ancho(filas.Fields("descrip").Value, 30) & Derecha(almacen, 3) & Derecha(FormatNumber(cantidad, 2), 10) & " " & Ancho(filas.Fields("unidad").Value, 4) & Derecha(FormatNumber(ambiente.Costo(articulo), 2), 10)
End Sub

Sub Existencias(titulo)
  WScript.Echo ""
  WScript.Echo titulo
  WScript.Echo "   " & Ancho("Artículo", 14) & Ancho("Descripción", 30) & Derecha("Alm", 3) & Derecha("Cantidad", 10) & "     " & Derecha("Costo", 10)
  Renglon "CAN-NAVIDAD", 1
  Renglon "CAN-DESAYUNO", 1
  Renglon "PASTEL-CHOC", 1
  Renglon "CAN-GOURMET", 1
  Renglon "BASE-GDE", 3
  Renglon "BASE-CH", 3
  Renglon "CAJA-GALLETA", 3
  Renglon "SIDRA", 1
  Renglon "VINO-TTO", 1
  Renglon "HARINA", 2
  Renglon "CHOCOLATE", 2
  WScript.Echo "   Valor de todo el inventario: " & FormatNumber(Valor("SELECT SUM(valor) FROM existencias") / 100, 2)
End Sub

On Error Resume Next
Set ambiente = CreateObject("ZuviEnviroment.Ambiente")
Comprueba "CreateObject(""ZuviEnviroment.Ambiente"")", Err.Number = 0
Set produccion = CreateObject("ZuviProduccion.Produccion")
Comprueba "CreateObject(""ZuviProduccion.Produccion"")", Err.Number = 0
If fallas > 0 Then
  WScript.Quit 1
End If
Set produccion.Ambiente = ambiente
Set conexion = ambiente.Conexion
Comprueba "base abierta: " & ambiente.CadenaConexion, Err.Number = 0
If fallas > 0 Then
  WScript.Quit 1
End If

Dim antes, cuantos
Existencias "Existencias y costos antes"
antes = Valor("SELECT SUM(valor) FROM existencias")

WScript.Echo ""
WScript.Echo "Se entrega la orden 103: 3 canastas Navidad, 5 canastas Desayuno y 2 pasteles"
cuantos = ambiente.Existencia("CAN-NAVIDAD", 1)
produccion.EntregaProductoTerminado 103
Comprueba "las partidas quedaron terminadas", Valor("SELECT COUNT( * ) FROM oppart WHERE op = 103 AND terminado = cantidad") = 3
Comprueba "hay 3 canastas Navidad más", ambiente.Existencia("CAN-NAVIDAD", 1) = cuantos + 3

WScript.Echo ""
WScript.Echo "Se arman 4 canastas Gourmet en el almacén 1 y se desarma una y media"
cuantos = ambiente.Existencia("CAN-GOURMET", 1)
produccion.Ensamble "CAN-GOURMET", 1, 4
Comprueba "hay 4 más", ambiente.Existencia("CAN-GOURMET", 1) = cuantos + 4
produccion.Desensamble "CAN-GOURMET", 1.5, 1
Comprueba "y una y media menos", ambiente.Existencia("CAN-GOURMET", 1) = cuantos + 2.5

WScript.Echo ""
WScript.Echo "Se cancela la orden 104, pendiente: primero se contesta que no"
ambiente.Respuestas = "no"
Comprueba "con ""no"" la orden sigue", produccion.CancelaOp(104) = False
ambiente.Respuestas = "si"
Comprueba "con ""sí"" se borra con sus partidas", produccion.CancelaOp(104) = True
Comprueba "ya no está", Valor("SELECT COUNT( * ) FROM op WHERE op = 104") + Valor("SELECT COUNT( * ) FROM oppart WHERE op = 104") = 0

WScript.Echo ""
WScript.Echo "Se cancela la orden 102, confirmada: pregunta dos veces y sólo la cierra"
ambiente.Respuestas = "si,si"
Comprueba "cancelada", produccion.CancelaOp(102) = True
Comprueba "quedó cerrada, con sus partidas", Valor("SELECT cerrado FROM op WHERE op = 102") = 1 And Valor("SELECT COUNT( * ) FROM oppart WHERE op = 102") = 1
Dim lineas, linea
lineas = Split(ambiente.Mensajes, vbLf)
For Each linea In lineas
  If linea <> "" Then
    WScript.Echo "   > " & linea
  End If
Next

Existencias "Existencias y costos después"
Comprueba "el valor del inventario es el mismo al centavo", CStr(Valor("SELECT SUM(valor) FROM existencias")) = CStr(antes)

WScript.Echo ""
Set produccion = Nothing
If fallas > 0 Then
  WScript.Echo "La jornada terminó con " & fallas & " fallas"
  WScript.Quit 1
End If
WScript.Echo "Jornada terminada"
WScript.Quit 0
