' A host written in script: the environment is a VBScript object, the rest comes from the reference host.
' It counts what the component asks of it, and its hooks are handed what is done. Runs after operaciones.vbs on
' the same database.
Const COMPROBACIONES = 28
nombre = "anfitrion_guion"

Class AmbienteDeGuion
  Public Real
  Public Ordenes
  Public Usuarios

  Public Property Get Conexion()
    Set Conexion = Real.Conexion
  End Property
  Public Property Get UsuarioActual()
    Usuarios = Usuarios + 1
    UsuarioActual = "GUION"
  End Property
  Public Property Get RutaAplicacion()
    RutaAplicacion = "C:\Guion"
  End Property
  Public Function EjecutaSQL(sql)
    Ordenes = Ordenes & sql & "; "
    Real.EjecutaSQL sql
    EjecutaSQL = 1
  End Function
  Public Property Get DatoFechaA()
    DatoFechaA = 20240229
  End Property
  Public Property Get DatoFechaB()
    DatoFechaB = 3600
  End Property
  Public Property Get DatoDocumento()
    DatoDocumento = 7
  End Property
End Class

' A hook on a process key: what it returns is the veto.
Class Gancho
  Public Veces
  Public Veto
  Public Entregado
  Public Function Ejecuta(objeto, ambiente)
    Veces = Veces + 1
    Set Entregado = objeto
    Ejecuta = Veto
  End Function
End Class

' The error that the statement before has left.
Sub Fallo(que, numero)
  Dim visto
  visto = Err.Number
  Err.Clear
  Igual que, visto, numero
End Sub

On Error Resume Next

Dim ambiente, produccion, filas, conexion
Set ambiente = New AmbienteDeGuion
ambiente.Ordenes = ""
ambiente.Usuarios = 0
Set ambiente.Real = CreateObject("ZuviEnviroment.Ambiente")
Igual "crear Ambiente", Err.Number, 0
ambiente.Real.Respuestas = "si"
Set produccion = CreateObject("ZuviProduccion.Produccion")
Igual "crear Produccion", Err.Number, 0
If mal > 0 Then
  Termina
End If
Set produccion.Ambiente = ambiente
Set produccion.Parent = ambiente
Igual "el mismo objeto de vuelta", produccion.Ambiente Is ambiente, True

produccion.Ensamble "E2E-BANCO", 3, 1, 9001
Igual "ensamblar", Err.Number, 0
Set filas = ambiente.Conexion.Execute("SELECT usuario, documento, referencia, fecha, importe FROM movimientos ORDER BY id DESC")
Igual "usuario del movimiento", filas.Fields("usuario").Value, "GUION"
Igual "documento del movimiento", filas.Fields("documento").Value, "7"
Igual "referencia del movimiento", filas.Fields("referencia").Value, 20240229
Igual "fecha del movimiento", Year(filas.Fields("fecha").Value) * 100 + Month(filas.Fields("fecha").Value), 202402
Igual "importe del kit", filas.Fields("importe").Value, 2225
Igual "usuario leido", ambiente.Usuarios, 1

produccion.EntregaProductoTerminado 9003
Igual "entregar", Err.Number, 0
Igual "orden ejecutada", ambiente.Ordenes, "UPDATE oppart SET terminado = cantidad WHERE op = 9003; "
ambiente.Ordenes = ""
ambiente.Real.Respuestas = "si,si"
Igual "cancelar", produccion.CancelaOp(9001), True
Igual "orden de cierre", ambiente.Ordenes, "UPDATE op SET cerrado = 1 WHERE op = 9001; "

Dim procesos, enganchado, antes
Set procesos = CreateObject("ZuviQuery.ControlProcesos")
Set enganchado = New Gancho
enganchado.Veces = 0
enganchado.Veto = True
procesos.PonGancho "OPAUTO002", enganchado
Igual "enganchar", Err.Number, 0
antes = ambiente.Real.Existencia("E2E-BANCO", 3)
produccion.Ensamble "E2E-BANCO", 3, 1
Igual "vetado", ambiente.Real.Existencia("E2E-BANCO", 3), antes
enganchado.Veto = False
produccion.Ensamble "E2E-BANCO", 3, 1
Igual "permitido", ambiente.Real.Existencia("E2E-BANCO", 3), antes + 1
Igual "veces", enganchado.Veces, 2
procesos.PonGancho "OPAUTO002", Nothing
produccion.Ensamble "E2E-BANCO", 3, 1
Igual "desenganchado", enganchado.Veces, 2

' The editor's window, handed to a hook: used by name, and refused its first closing by another hook.
Const OCUPADA = "SELECT ocupado FROM op WHERE op = 7001"
Dim alCerrar, editor, numero
Set conexion = ambiente.Conexion
conexion.Execute "INSERT INTO op (op, estado, ocupado, usuario, f_emision, fechaEntrega, almacen, Tipo_doc) VALUES (7001, 'PE', 0, 'ANA', '2026-03-01', '2026-03-20', '1', 'OP')"
conexion.Execute "INSERT INTO oppart (id_entrada, op, articulo, cantidad, precio, observ) VALUES (70011, 7001, 'HARINA', 2.5, 10, 'urge')"
Set alCerrar = New Gancho
alCerrar.Veto = True
procesos.PonGancho "Op001", enganchado
procesos.PonGancho "Op006", alCerrar
Set produccion = CreateObject("ZuviProduccion.Produccion")
Set produccion.Ambiente = ambiente.Real
produccion.ModificaOp 7001
Set editor = enganchado.Entregado
Igual "abierta por el gancho", editor.OP, 7001
editor.txtFields(4).Text = "PIÑÓN"
Igual "miembro por omisión", editor.txtFields(4), "PIÑÓN"
numero = editor.NoExiste
Fallo "miembro desconocido", 438
numero = editor.txtFields(99).Text
Fallo "índice", 9
Igual "ocupada", conexion.Execute(OCUPADA).Fields(0).Value, 1
' The window does not need who opened it.
Set produccion = Nothing
editor.Unload
Igual "se negó a cerrar", editor.Visible, True
alCerrar.Veto = False
editor.Unload
Igual "cerró", editor.Visible, False
Igual "soltó la orden", conexion.Execute(OCUPADA).Fields(0).Value, 0
procesos.PonGancho "Op001", Nothing
procesos.PonGancho "Op006", Nothing
Igual "desenganchar", Err.Number, 0
Termina
