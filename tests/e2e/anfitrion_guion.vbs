' A host written in script: the environment is a VBScript object, the rest comes from the reference host.
' It counts what the component asks of it. Runs after operaciones.vbs on the same database.
Const COMPROBACIONES = 19
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
  Public Function Ejecuta(objeto, ambiente)
    Veces = Veces + 1
    Ejecuta = Veto
  End Function
End Class

On Error Resume Next

Dim ambiente, produccion, filas
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

Set produccion = Nothing
Termina
