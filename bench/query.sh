#!/usr/bin/env bash
# Query commands against the SQLite 3 shell on the same file, side by side:
#   --query-one of one value from a small file  vs  sqlite3 FILE "SELECT ..."
#   --query-tab / --query-csv of 1 000 000 rows x 5 columns  vs  sqlite3 -tabs / -csv
# Usage: bench/query.sh [path/to/rowkeeper]   (needs hyperfine, sqlite3, python3, /usr/bin/time)
set -euo pipefail
rowkeeper=$(realpath "${1:-build/release/app/rowkeeper}")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"

sqlite3 small.db "CREATE TABLE t(a, b); INSERT INTO t VALUES(1, 'one'), (2, 'two');"
sqlite3 big.db "CREATE TABLE t(id INTEGER PRIMARY KEY, name TEXT, qty INTEGER, price REAL, note TEXT);
WITH RECURSIVE c(x) AS (SELECT 1 UNION ALL SELECT x + 1 FROM c WHERE x < 1000000)
INSERT INTO t SELECT x, 'name' || x, x % 97, x * 0.25, 'note number ' || (x % 1000) FROM c;"

median_ratio() {
  python3 - "$1" <<'PY'
import json, sys
r = json.load(open(sys.argv[1]))["results"]
print(f"  {r[0]['command']}: {r[0]['median']*1000:.2f} ms   {r[1]['command']}: {r[1]['median']*1000:.2f} ms   ratio {r[0]['median']/r[1]['median']:.2f}")
PY
}

echo "query-one, small file:"
hyperfine -N --warmup 10 --runs 200 --export-json one.json \
  "$rowkeeper --query-one small.db 'SELECT b FROM t WHERE a = 2'" \
  "sqlite3 small.db 'SELECT b FROM t WHERE a = 2'" >/dev/null
median_ratio one.json

for mode in tab csv; do
  flag=$([ $mode = tab ] && echo -tabs || echo -csv)
  echo "query-$mode, 1 000 000 rows x 5 columns:"
  hyperfine --warmup 1 --runs 5 --export-json $mode.json \
    "$rowkeeper --query-$mode big.db 'SELECT * FROM t' > /dev/null" \
    "sqlite3 $flag big.db 'SELECT * FROM t' > /dev/null" >/dev/null
  median_ratio $mode.json
  ours=$(/usr/bin/time -f %M "$rowkeeper" --query-$mode big.db 'SELECT * FROM t' 2>&1 >/dev/null)
  theirs=$(/usr/bin/time -f %M sqlite3 $flag big.db 'SELECT * FROM t' 2>&1 >/dev/null)
  echo "  peak memory: rowkeeper $((ours / 1024)) MiB, sqlite3 $((theirs / 1024)) MiB"
done
