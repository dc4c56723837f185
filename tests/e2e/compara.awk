# Compares the statements of the marked operations with what sentencias.txt expects, with nothing missing,
# nothing more and nothing out of order.   awk -f compara.awk sentencias.txt statements
# With -v operacion=NAME the whole second file is one run of a program for that operation: before and after
# the operation's own statements come those of the program, which must match the variables ANTES and DESPUES of the environment.
BEGIN {
  antes = ENVIRON["ANTES"]
  despues = ENVIRON["DESPUES"]
}
function fail(text) {
  printf "FALLA %s: %s\n", name, text
  failed = 1
}
function expect(kind, text) { expected[current, ++count[current]] = kind "\t" text }
function expect_numbering(key, how_many) {
  expect("~", "^BEGIN( IMMEDIATE)?$")
  expect("=", "UPDATE folios SET ultimo = ultimo + " how_many " WHERE clave = '" key "'")
  expect("?", "^INSERT INTO folios \\(clave, ultimo\\) VALUES \\('" key "', " how_many "\\)$")
  expect("=", "SELECT ultimo FROM folios WHERE clave = '" key "'")
  expect("=", "COMMIT")
}
function expect_movement(type, concept, article,    number) {
  number = "-?[0-9.]+"
  expect("b", "")
  expect("~", "^BEGIN( IMMEDIATE)?$")
  # The article's row is the lock; the cost follows a movement that it does not explain; the movement comes last.
  expect("~", "^SELECT costo FROM prods WHERE articulo = '" article "'( FOR UPDATE)?$")
  expect("~", "^UPDATE existencias SET cantidad = ROUND\\(cantidad \\+ " number ", 6\\), valor = valor \\+ " number ", movimiento = [0-9]+ WHERE articulo = '" article "' AND almacen = [0-9]+$")
  expect("?", "^INSERT INTO existencias \\(articulo, almacen, cantidad, valor, movimiento\\) VALUES \\('" article "', ")
  expect("?", "^UPDATE prods SET costo = \\(SELECT SUM\\(valor\\) / SUM\\(cantidad\\) / 100 FROM existencias WHERE articulo = '" article "'\\) ")
  expect("~", "^INSERT INTO movimientos \\(id, fecha, tipo, concepto, orden, folio, referencia, documento, usuario, almacen, articulo, cantidad, costo, importe\\) VALUES \\([0-9]+, '[-0-9: ]+', '" type "', '" concept "', [0-9]+, '[0-9]+', [0-9]+, [^,]+, '[^']*', [0-9]+, '" article "', " number ", " number ", " number "\\)$")
  expect("=", "COMMIT")
}
# The host's movement numbers are drawn twenty at a time, outside of any movement.
function is_block(at) {
  return got[at] ~ /^BEGIN( IMMEDIATE)?$/ && got[at + 1] ~ /^UPDATE folios SET ultimo = ultimo \+ 20 WHERE clave = 'movimientos'$/
}
function check(   i, at, kind, text, parts) {
  at = 1
  failed = 0
  for (i = 1; i <= count[name]; i++) {
    split(expected[name, i], parts, "\t")
    kind = parts[1]
    text = parts[2]
    if (kind == "b") {
      if (!is_block(at)) continue
      if (blocks[name]++ > 0) fail("más de un bloque de números de movimiento")
      at += (got[at + 2] ~ /^INSERT INTO folios/) ? 5 : 4
    } else if (kind == "?") {
      if (got[at] ~ text) at++
    } else if (kind == "~" ? got[at] ~ text : got[at] == text) {
      at++
    } else {
      fail("se esperaba [" text "] y vino [" got[at] "]")
      break
    }
  }
  if (operacion != "")
    while (at <= n && despues != "" && got[at] ~ despues) at++
  if (!failed && at <= n) fail("sobra [" got[at] "]")
  seen[name] = 1
  if (failed) bad++
  else good++
}
function clear() {
  n = 0
  split("", got)
}
FNR == NR {
  if ($1 == "operacion") {
    current = substr($0, 11)
    order[++operations] = current
    count[current] = 0
  } else if ($1 == "=" || $1 == "~") expect($1, substr($0, 3))
  else if ($1 == "folio") expect_numbering($2, 1)
  else if ($1 == "movimiento") expect_movement($2, $3, $4)
  next
}
operacion != "" {
  name = operacion
  if (n == 0 && "=\t" $0 != expected[name, 1]) {
    if ($0 !~ antes) early = early " [" $0 "]"
    next
  }
  got[++n] = $0
  next
}
/^SELECT 'inicio / {
  name = substr($0, 16, length($0) - 16)
  inside = 1
  clear()
  next
}
/^SELECT 'fin / {
  if (inside) check()
  inside = 0
  next
}
inside { got[++n] = $0 }
END {
  if (operacion != "") {
    name = operacion
    check()
    if (early != "") {
      fail("antes de la operación sobra" early)
      bad++
    }
  } else
    for (i = 1; i <= operations; i++)
      if (!(order[i] in seen)) {
        name = order[i]
        fail("no está en la bitácora")
        bad++
      }
  printf "%d passed, %d failed\n", good, bad
  exit bad > 0
}
