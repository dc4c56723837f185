' The module's windows from a script: a hook on a process key is handed the editor, reads and changes it by
' name, keeps it, refuses its closing and closes it from inside a call.
Const COMPROBACIONES = 27
nombre = "ventanas"

' The error that the statement before has left.
Sub Fallo(que, numero)
  Dim visto
  visto = Err.Number
  Err.Clear
  Igual que, visto, numero
End Sub

Dim guardada, veces, cierra
veces = 0
cierra = False

Class AlAbrir
  Public Function Ejecuta(ventana, ambiente)
    veces = veces + 1
    Set guardada = ventana
    ventana.txtFields(4).Text = "piñón"
    If cierra Then
      ventana.Unload
    End If
    Ejecuta = False
  End Function
End Class

' Refuses the first closing.
Class AlCerrar
  Public Veta
  Public Function Ejecuta(ventana, ambiente)
    Ejecuta = Veta
    Veta = False
  End Function
End Class

On Error Resume Next
Dim produccion, ambiente, procesos, conexion, alCierre
Set ambiente = CreateObject("ZuviEnviroment.Ambiente")
Set produccion = CreateObject("ZuviProduccion.Produccion")
Set procesos = CreateObject("ZuviQuery.ControlProcesos")
Igual "crear los objetos", Err.Number, 0
Set produccion.Ambiente = ambiente
Set conexion = ambiente.Conexion
conexion.Execute "DELETE FROM oppart WHERE op = 7001"
conexion.Execute "DELETE FROM op WHERE op = 7001"
conexion.Execute "INSERT INTO op (op, estado, ocupado, usuario, f_emision, fechaEntrega, almacen, Tipo_doc) VALUES (7001, 'PE', 0, 'ANA', '2026-03-01', '2026-03-20', '1', 'OP')"
conexion.Execute "INSERT INTO oppart (id_entrada, op, articulo, cantidad, precio, observ) VALUES (70011, 7001, 'HARINA', 2.5, 10, 'urge')"
Igual "la orden", Err.Number, 0
procesos.PonGancho "Op001", New AlAbrir
Set alCierre = New AlCerrar
alCierre.Veta = True
procesos.PonGancho "Op006", alCierre
Igual "los ganchos", Err.Number, 0

produccion.ModificaOp 7001
Igual "el gancho se llamó", veces, 1
Igual "TypeName", IsObject(guardada), True
Igual "Modo", guardada.Modo, "MODIFICACION"
Igual "Op", guardada.OP, 7001
Igual "visible", guardada.Visible, True
' The host writes articles in capitals.
Igual "caja cambiada", guardada.txtFields(4).Text, "PIÑÓN"
Igual "miembro por omisión", guardada.txtFields(4), "PIÑÓN"
Igual "almacén", guardada.txtFields(14).Text, "1"
Igual "celda", guardada.fg2.TextMatrix(1, 0), "HARINA"
guardada.fg2.Row = 1
guardada.Check3.Value = 1
Igual "casilla", guardada.Check3.Value, 1
Dim nada
nada = guardada.NoExiste
Fallo "miembro desconocido", 438
guardada.Costo = 5
Fallo "sólo de lectura", 438
nada = guardada.txtFields(99).Text
Fallo "índice", 9
Igual "ocupada", conexion.Execute("SELECT ocupado FROM op WHERE op = 7001").Fields(0).Value, 1

' The window does not need who opened it.
Set produccion = Nothing
Igual "sigue visible", guardada.Visible, True
guardada.Unload
Igual "se negó a cerrar", guardada.Visible, True
guardada.Unload
Igual "cerró", guardada.Visible, False
Igual "soltó la orden", conexion.Execute("SELECT ocupado FROM op WHERE op = 7001").Fields(0).Value, 0
Igual "se lee cerrada", guardada.txtFields(4).Text, "PIÑÓN"
guardada.Unload
Igual "cerrar otra vez", Err.Number, 0

' A hook that closes the window in the middle of its load.
cierra = True
Set produccion = CreateObject("ZuviProduccion.Produccion")
Set produccion.Ambiente = ambiente
Set guardada = Nothing
produccion.ConsultaOp 7001
Igual "otra vez el gancho", veces, 2
Igual "no quedó abierta", guardada.Visible, False
Igual "modo de consulta", guardada.Modo, "CONSULTA"
procesos.PonGancho "Op001", Nothing
procesos.PonGancho "Op006", Nothing
conexion.Execute "DELETE FROM oppart WHERE op = 7001"
conexion.Execute "DELETE FROM op WHERE op = 7001"
Igual "limpieza", Err.Number, 0
Termina
