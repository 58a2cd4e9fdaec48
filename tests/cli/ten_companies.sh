#!/bin/sh
# ten_companies.sh MACT_CLI: a year's end for a consultant with ten shops, done by a script: companies by name, usage
# through a pipe, a report to a file of its own, and the answers of check and status.
set -eu

cli=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export XDG_CONFIG_HOME="$work/settings" TMPDIR="$work/temporary"
mkdir "$work/settings" "$work/temporary" "$work/program" "$work/pages"

mact() {
  "$cli" --folder "$work/program" "$@"
}

fail() {
  echo "ten_companies.sh: $*" >&2
  exit 1
}

# expect WHAT ACTUAL EXPECTED
expect() {
  [ "$2" = "$3" ] || fail "$1 is
$2
instead of
$3"
}

# expect_status EXPECTED COMMAND...: prints what the command prints. To be assigned to a variable: only then does a
# failure end the script.
expect_status() {
  wanted=$1
  shift
  ended=0
  "$@" || ended=$?
  [ "$ended" = "$wanted" ] || fail "$* ended with status $ended instead of $wanted"
}

cat >"$work/names" <<'NAMES'
Acme Boats
Båter Øst
O'Neill & Sons
Shop "Four"
Five $HOME
-6-
Over the Limit
Eight \ 8
Canoës #9
Tenth; last
NAMES

# Each shop has a resin of its own, with 34 % HAP of at most 35; the seventh has 36 %.
number=0
while IFS= read -r name; do
  number=$((number + 1))
  content=34
  [ $number -ne 7 ] || content=36
  told=$(mact add-company -- "$name" "Dock $number")
  expect "the id" "$told" "$number"
  echo "R-$number|Resin|Production resin|Non-Spray|9|$content|0|0|0|0|0|0|0|0|0|0|0|0|0" |
    mact import-materials - --company "$name" >"$work/summary"
  for month in 1 2 3 4 5 6 7 8 9 10 11 12; do
    echo "R-$number|$month|2005|2204.6|lbs"
  done | mact import-usage - --company "$name" >"$work/summary"
  expect "the summary" "$(cat "$work/summary")" "Total Records Processed : 12
Sucessful Imports : 12
Errors : 0"

  page=$work/pages/$number.htm
  told=$(mact report compliant --ending 12/2005 --company "$name" --output "$page")
  expect "the path" "$told" "$page"
  grep -q "R-$number - Resin" "$page" || fail "The report of $name lacks its resin."
  mact --company "$number" report compliant --ending 12/2005 --output - | cmp - "$page"

  answer="$number|$name|12/2005|within|not used|within|2.86|0|0"
  standing=0
  if [ $number -eq 7 ]; then # 0.014 * 36^2.275 = 48.61 kg/Mg, of 46
    answer="$number|$name|12/2005|over|not used|over|-5.67|0|0"
    standing=5
  fi
  told=$(expect_status $standing mact status --company "$name")
  expect "the status" "$told" "$answer"
done <"$work/names"
expect "the number of shops" "$number" 10

told=$(expect_status 0 mact check --json)
expect "the check" "$told" "[]"
echo "R-3|02|2006|5|lbs" | mact import-usage - --company "o'neill & sons" >"$work/summary"
told=$(expect_status 4 mact check --json)
expect "the check" "$told" '[
  {"file": "3_usage.talvor", "record": 13, "finding": "its period \"02/2006\" is in no report; a month is written as in 3/2005"}
]'
told=$(expect_status 5 mact status --all)
expect "the worst of all" "$(echo "$told" | head -n 1)" \
  "7|Over the Limit|12/2005|over|not used|over|-5.67|0|0"
told=$(mact companies --json)
expect "the companies" "$(echo "$told" | grep -c '"id": ')" 10
expect "what is left of the pipes" "$(ls "$work/temporary")" ""
[ ! -e "$work/program/report.htm" ] || fail "The program's own report was written."
