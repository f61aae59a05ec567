#!/usr/bin/env bash
# Open + SELECT count(*) on a ~25 MB, 200 000-row SQLite 2.x file (made by our
# engine) against SQLite 3 on the same data in a 3.x file, side by side, with
# peak memory. Usage: bench/sqlite2_count.sh [path/to/rowkeeper]
set -euo pipefail
rowkeeper=$(realpath "${1:-build/release/app/rowkeeper}")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
fill="WITH RECURSIVE c(x) AS (SELECT 1 UNION ALL SELECT x + 1 FROM c WHERE x < 200000)
INSERT INTO t SELECT x, 'name ' || x, x %% 1000, 'some longer text to make the rows about one hundred bytes, row ' || x FROM c"
"$rowkeeper" --create2 two.db "CREATE TABLE t(id INTEGER PRIMARY KEY, name TEXT, qty INTEGER, note TEXT); $fill" 2>/dev/null
fill=${fill//%%/%} # the SQLite 3 shell takes one %
sqlite3 three.db "CREATE TABLE t(id INTEGER PRIMARY KEY, name TEXT, qty INTEGER, note TEXT); $fill"
echo "2.x file: $(( $(stat -c %s two.db) / 1048576 )) MiB, 3.x file: $(( $(stat -c %s three.db) / 1048576 )) MiB"
hyperfine -N --warmup 2 --runs 15 --export-json count.json \
  "$rowkeeper --query-one two.db 'SELECT count(*) FROM t'" \
  "sqlite3 three.db 'SELECT count(*) FROM t'" >/dev/null
python3 - count.json <<'PY'
import json, sys
r = json.load(open(sys.argv[1]))["results"]
print(f"rowkeeper on 2.x: {r[0]['median']*1000:.1f} ms, sqlite3 on 3.x: {r[1]['median']*1000:.1f} ms, ratio {r[0]['median']/r[1]['median']:.1f}")
PY
ours=$(/usr/bin/time -f %M "$rowkeeper" --query-one two.db 'SELECT count(*) FROM t' 2>&1 >/dev/null)
theirs=$(/usr/bin/time -f %M sqlite3 three.db 'SELECT count(*) FROM t' 2>&1 >/dev/null)
echo "peak memory: rowkeeper $((ours / 1024)) MiB, sqlite3 $((theirs / 1024)) MiB"
