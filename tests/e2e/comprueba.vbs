' What every script of checks starts with: counting, and the verdict as the last line. The script that follows
' says how many checks it makes (COMPROBACIONES) and what it is at (nombre).
Option Explicit

Dim bien, mal, nombre
bien = 0
mal = 0

Sub Igual(que, obtenido, esperado)
  If Err.Number <> 0 Then
    mal = mal + 1
    WScript.Echo "FALLA " & nombre & ": " & que & ": error " & Err.Number & " " & Err.Description
    Err.Clear
  ElseIf CStr(obtenido) = CStr(esperado) Then
    bien = bien + 1
  Else
    mal = mal + 1
    WScript.Echo "FALLA " & nombre & ": " & que & " es " & obtenido & ", se esperaba " & esperado
  End If
End Sub

' A check whose own arguments fail is passed over by the engine: the number of checks tells.
Sub Termina
  If bien + mal < COMPROBACIONES Then
    mal = mal + 1
    WScript.Echo "FALLA: no se hicieron todas las comprobaciones"
  End If
  WScript.Echo bien & " passed, " & mal & " failed"
  If mal > 0 Then
    WScript.Quit 1
  End If
  WScript.Quit 0
End Sub

