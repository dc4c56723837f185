# The statements of one database out of a server's general log, in order, one a line (line ends inside a
# statement as \n). What only opens and closes a connection or prepares a statement is left out; what is
# executed is not.   awk -v base=NAME -f bitacora.awk general.log
function flush() {
  if (text != "") print text
  text = ""
}
# A record starts with a time or two tabs, then the connection's number and the command.
/^([0-9][0-9][0-9][0-9][0-9][0-9] [ 0-9][0-9]:[0-9][0-9]:[0-9][0-9])?\t+ *[0-9]+ [A-Z][A-Za-z ]*\t/ {
  flush()
  record = $0
  sub(/^[^\t]*\t+ */, "", record)
  id = record
  sub(/ .*/, "", id)
  tab = index(record, "\t")
  command = substr(record, length(id) + 2, tab - length(id) - 2)
  sub(/ +$/, "", command)
  argument = substr(record, tab + 1)
  if (command == "Connect") ours[id] = index(argument, " on " base " ") > 0
  else if (command == "Quit") delete ours[id]
  keep = ours[id] && (command == "Query" || command == "Execute")
  if (keep) text = argument
  next
}
{ if (keep) text = text "\\n" $0 }
END { flush() }
