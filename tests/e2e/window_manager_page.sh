#!/bin/bash
# Writes what a run of run.sh --results found into a page, between its two "table" comments:
# window_manager_page.sh RESULTS PAGE
set -euo pipefail

# From lines "window manager, capability, result, detail" the table, and its notes. A check that failed outweighs a
# capability that is not there, and that one what was not tried.
table() {
  awk -F '\t' '
    !($1 in managers) { managers[$1] = 1; manager[++columns] = $1 }
    $3 == "version" { version[$1] = $4; next }
    !($2 in capabilities) { capabilities[$2] = 1; capability[++rows] = $2 }
    { count[$1, $2, $3]++ }
    $3 == "passed" { passed[$1]++ }
    $3 != "passed" {
      sub(/[^.]$/, "&.", $4)
      details[$1, $2, $3] = details[$1, $2, $3] " " ($3 == "failed" ? "Failed: " : "") $4
    }

    # The word, with the number of its note; the same words twice are one note.
    function noted(word, text) {
      if (!(text in number)) { number[text] = ++notes; note[notes] = text }
      return word " (" number[text] ")"
    }
    function cell(manager, capability,    i, result) {
      for (i = 1; i <= 4; i++) {
        result = order[i]
        if (count[manager, capability, result]) {
          word["failed"] = count[manager, capability, "passed"] ? "all but " count[manager, capability, "failed"] " of " \
            count[manager, capability, "passed"] + count[manager, capability, "failed"] " checks" : "fails"
          return noted(word[result], details[manager, capability, result])
        }
      }
      return count[manager, capability, "passed"] ? "yes" : ""
    }
    END {
      split("failed lacking partial skipped", order, " ")
      word["lacking"] = "no"; word["partial"] = "partly"; word["skipped"] = "not tried"
      heading = "| |"; rule = "|---|"; last = "| checks passed |"
      for (c = 1; c <= columns; c++) {
        heading = heading " " manager[c] " " version[manager[c]] " |"; rule = rule "---|"
        last = last " " passed[manager[c]] " |"
      }
      print heading; print rule
      for (r = 1; r <= rows; r++) {
        line = "| " capability[r] " |"
        for (c = 1; c <= columns; c++) { line = line " " cell(manager[c], capability[r]) " |" }
        print line
      }
      print last
      if (notes) { print "" }
      for (n = 1; n <= notes; n++) { print n "." note[n] }
    }' "$1"
}

filled=$(mktemp)
trap 'rm -f "$filled"' EXIT
table "$1" >"$filled.table"
awk -v table="$filled.table" '
  /^<!-- end of the table -->/ { inside = 0 }
  !inside { print }
  /^<!-- table/ { inside = 1; print ""; while ((getline line < table) > 0) print line; print "" }' "$2" >"$filled"
rm "$filled.table"
cat "$filled" >"$2"
