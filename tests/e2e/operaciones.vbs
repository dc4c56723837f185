' The batch operations as any automation client uses them, checked against figures worked out by hand:
' a table takes 2/4 boards, 16/4 legs and 50/4 screws (the recipe yields 4); a bench 1 board and 3 legs.
' Arguments: file with the fixture's statements; "marcas" to put marks into the server's log.
Const COMPROBACIONES = 38

On Error Resume Next

Dim produccion, ambiente, conexion
Set ambiente = CreateObject("ZuviEnviroment.Ambiente")
Set produccion = CreateObject("ZuviProduccion.Produccion")
Set produccion.Ambiente = ambiente
Set conexion = ambiente.Conexion
Igual "crear los objetos y abrir la base", Err.Number, 0
If mal > 0 Then
  Termina
End If

Dim marcas
marcas = WScript.Arguments.Count > 1

Sub Empieza(operacion)
  nombre = operacion
  If marcas Then
    conexion.Execute "SELECT 'inicio " & operacion & "'"
  End If
End Sub

Sub Acaba
  Igual "sin error", Err.Number, 0
  If marcas Then
    conexion.Execute "SELECT 'fin " & nombre & "'"
  End If
End Sub

Function Valor(sql)
  Dim filas
  Set filas = conexion.Execute(sql)
  If filas.EOF Then
    Valor = "nada"
  Else
    Valor = filas.Fields(0).Value
  End If
End Function

Sub Movimientos(desde, esperado)
  Dim filas, texto
  Set filas = conexion.Execute("SELECT tipo, concepto, almacen, articulo, cantidad, importe FROM movimientos WHERE id > " & desde & " ORDER BY id")
  texto = ""
  Do Until filas.EOF
    texto = texto & filas.Fields("tipo").Value & " " & filas.Fields("concepto").Value & " " & filas.Fields("almacen").Value & " " & Mid(filas.Fields("articulo").Value, 5) & " " & CLng(filas.Fields("cantidad").Value * 1000) & " " & filas.Fields("importe").Value & "; "
    filas.MoveNext
  Loop
  Igual "movimientos", texto, esperado
End Sub

Function Ultimo()
  Ultimo = Valor("SELECT COALESCE(MAX(id), 0) FROM movimientos")
End Function

' The fixture: one statement a line.
nombre = "datos"
Dim archivos, archivo, linea
Set archivos = CreateObject("Scripting.FileSystemObject")
Set archivo = archivos.OpenTextFile(WScript.Arguments(0), 1)
Igual "abrir los datos", Err.Number, 0
Do Until archivo.AtEndOfStream Or mal > 0
  linea = archivo.ReadLine
  ambiente.EjecutaSQL linea
  Igual "ejecutar " & linea, Err.Number, 0
Loop
archivo.Close
If mal > 0 Then
  Termina
End If

Dim desde
desde = Ultimo()
Empieza "ensamble"
produccion.Ensamble "E2E-MESA", 3, 6
Acaba
Movimientos desde, "S EN 1 TABLA 3000 3750; S EN 2 PATA 24000 7800; S EN 1 TORNILLO 75000 525; E DE 3 MESA 6000 12075; "

desde = Ultimo()
Empieza "desensamble"
produccion.Desensamble "E2E-MESA", 1.5, 3
Acaba
Movimientos desde, "E DES 1 TABLA 750 938; E DES 2 PATA 6000 1950; E DES 1 TORNILLO 18750 131; S DEN 3 MESA 1500 3019; "

desde = Ultimo()
Empieza "entrega"
produccion.EntregaProductoTerminado 9001
Acaba
Movimientos desde, "S OP 1 TABLA 1000 1250; S OP 2 PATA 8000 2600; S OP 1 TORNILLO 25000 175; E OP 3 MESA 2000 4025; S OP 1 TABLA 4000 5000; S OP 2 PATA 12000 3900; E OP 3 BANCO 4000 8900; "
' Whole numbers read the same in every language.
Igual "existencia", CLng(ambiente.Existencia("E2E-MESA", 3) * 1000), 6500
Igual "costo", CLng(ambiente.Costo("E2E-MESA") * 10000), 201250

' A variable goes in as one passed by reference, which every method has to take.
desde = Ultimo()
Dim kit, almacen, cuantos, orden
kit = "E2E-BANCO"
almacen = 3
cuantos = 2
orden = 9001
Empieza "desensamble con orden"
produccion.Desensamble kit, cuantos, almacen, orden
Acaba
Movimientos desde, "E COP 1 TABLA 2000 2500; E COP 2 PATA 6000 1950; S COP 3 BANCO 2000 4450; "
Igual "valor en existencia", Valor("SELECT SUM(valor) FROM existencias WHERE articulo LIKE 'E2E-%'"), 197000

ambiente.Respuestas = "no"
Empieza "cancela no"
Igual "resultado", produccion.CancelaOp(9002), False
Acaba
Dim dicho
dicho = ambiente.Mensajes
ambiente.Respuestas = "si"
Empieza "cancela pendiente"
Igual "resultado", produccion.CancelaOp(9002), True
Acaba
ambiente.Respuestas = "si,no"
Igual "declinada", produccion.CancelaOp(9003), False
dicho = ambiente.Mensajes
ambiente.Respuestas = "si,si"
Empieza "cancela confirmada"
Igual "resultado", produccion.CancelaOp(9003), True
Acaba
dicho = ambiente.Mensajes
Igual "segunda pregunta", InStr(dicho, "ya fue confirmada, Desea cerrar esta order de producci") > 0, True
Igual "segunda respuesta", Right(dicho, 8), "n -> si" & vbLf
ambiente.Respuestas = "si"
Empieza "cancela ausente"
Igual "resultado", produccion.CancelaOp(9999), False
Acaba

Set produccion = Nothing
Set ambiente = Nothing
Termina
