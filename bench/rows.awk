# Makes table rows of samples, lines of "SUBJECT VALUE" that are sorted by both: subject 1 is ours, the next are its
# peers, whose names are in `peers`, each ending in a tab. With `sizes` ("10 / 100 / ...") subjects are the sizes, then
# the exponent of growth, and that of its last step.

# With three significant digits where there is a fraction.
function short(value) {
  if (value >= 100) return sprintf("%.0f", value)
  if (value >= 10) return sprintf("%.1f", value)
  if (value >= 1 || value == 0) return sprintf("%.2f", value)
  if (value >= 0.1) return sprintf("%.3f", value)
  if (value >= 0.01) return sprintf("%.4f", value)
  return sprintf("%.5f", value)
}

function quantile(subject, part) { return values[subject, 1 + int(part * (count[subject] - 1) + 0.5)] }

function median(subject) { return quantile(subject, 0.5) }

function with_spread(subject) {
  if (count[subject] == 1) return short(median(subject))
  return short(median(subject)) " (" short(quantile(subject, 0.05)) "-" short(quantile(subject, 0.95)) ")"
}

function ratio(subject) {
  return median(subject) == 0 ? "" : sprintf("%.2f", median(1) / median(subject))
}

function row(peer, theirs, proportion) {
  print "| " figure " | " ours " | " peer " | " theirs " | " proportion " | " count[1] " |"
}

{ values[$1, ++count[$1]] = $2 }

END {
  if (!count[1]) exit 1
  ours = with_spread(1)
  if (sizes) {
    number = split(sizes, size, " / ")
    ours = short(median(1))
    for (i = 2; i <= number; ++i) ours = ours " / " short(median(i))
    row("growth in proportion", "exponent 1",
        "exponent " with_spread(number + 1) ", last tenfold " with_spread(number + 2))
    exit
  }
  number = split(peers, peer, "\t") - 1
  if (number < 1) row("", "", "")
  for (i = 1; i <= number; ++i) {
    if (count[i + 1]) row(peer[i], with_spread(i + 1), ratio(i + 1))
    else row(peer[i], "not installed", "")
  }
}
