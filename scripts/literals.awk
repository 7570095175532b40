# Prints the string literals of C++ sources, one a line, adjacent ones joined.
# With mode=errors only those of functions that throw or warn, without their
# information and detail lines and the texts that they compare with.
#
# A top-level function ends at a line that begins with a closing brace.

function handle_function(    statements, count, i, rest) {
  gsub(/"[ \n]*\n[ \n]*"/, "", body)
  if (mode == "errors" &&
      body !~ /throw|Error\(|log_(warning|error)\(|"zels?[A-RT-Z]/) {
    body = ""
    return
  }
  count = split(body, statements, /;\n|[{}]\n/)
  for (i = 1; i <= count; ++i) {
    rest = statements[i]
    if (mode == "errors") {
      if (rest ~ /log_|static_assert/ && rest !~ /log_(warning|error)\(/) continue
      gsub(/[=!]= *"[^"]*"/, "", rest)
    }
    while (match(rest, /"([^"\\\n]|\\.)*"/)) {
      print substr(rest, RSTART + 1, RLENGTH - 2)
      rest = substr(rest, RSTART + RLENGTH)
    }
  }
  body = ""
}

FNR == 1 && NR > 1 { handle_function() }
/^ *(\/\/|#include)/ { next }
{ body = body $0 "\n" }
/^}/ { handle_function() }
END { handle_function() }
