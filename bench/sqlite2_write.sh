#!/usr/bin/env bash
# Writes and reads on a SQLite 2.x file: rowkeeper against the real SQLite 2.8.17
# shell, side by side in one run. The file (~25 MB, 200 000 rows, one index) is
# made by the 2.8.17 shell in one transaction, so it is genuine 2.8 output.
#
#   writes (each run on a fresh copy of the file, for each side): a one-row
#   UPDATE, INSERT and DELETE - median time, bytes written to the file and its
#   journal, peak memory; goals: time <= 3x, bytes < 4x, peak < 20 MiB
#   reads: count(*), rowid lookup, indexed lookup, range scan over the index
#   (as BETWEEN and as >= AND <=), full export - median time; goal: no slower
#   than the 2.8.17 shell; both sides' outputs are compared too
#
# Bytes written are the results of the write system calls on the file and its
# journal, as strace -y sees them. Afterwards the 2.8.17 shell checks the files
# rowkeeper wrote (PRAGMA integrity_check) and that their .dump equals that of
# the files it wrote itself.
#
# Needs the real SQLite 2.8.17 shell: SQLITE2_REFERENCE=/path/to/sqlite2
# (default /work/shared/sqlite2/reference/sqlite2); without it the script says so
# and stops. Also needs strace, python3 and GNU time (/usr/bin/time). The two
# sides are timed in alternation (bench/alternating_time.py), so that a drift
# of the machine's speed during the run falls on both. Only a developer runs
# this, by hand: the build, the tests and CI never do.
#
# Usage: bench/sqlite2_write.sh [path/to/rowkeeper]   (RUNS=n runs per median, default 21)
# Build first: cmake -S . -B build/release -DCMAKE_BUILD_TYPE=Release \
#   -DROWKEEPER_TESTS=OFF -DROWKEEPER_DIALOGS=OFF && cmake --build build/release -j2
set -euo pipefail

reference=${SQLITE2_REFERENCE:-/work/shared/sqlite2/reference/sqlite2}
if [ ! -x "$reference" ]; then
  echo "skipped: this benchmark needs the real SQLite 2.8.17 shell, not found at $reference" >&2
  echo "         (point SQLITE2_REFERENCE at it)" >&2
  exit 0
fi
missing=()
for tool in strace python3 /usr/bin/time; do
  command -v "$tool" >/dev/null || missing+=("$tool")
done
if [ ${#missing[@]} -gt 0 ]; then
  echo "this benchmark needs: ${missing[*]} (apt-get install strace python3 time)" >&2
  exit 1
fi
rowkeeper=${1:-build/release/app/rowkeeper}
if [ ! -x "$rowkeeper" ]; then
  echo "no rowkeeper at $rowkeeper: build it first (see the top of $0) or pass its path" >&2
  exit 1
fi
rowkeeper=$(realpath "$rowkeeper")
timer=$(realpath "$(dirname "$0")/alternating_time.py")
reference=$(realpath "$reference")
runs=${RUNS:-21}
tab=$'\t'

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"

# Quote for a command line that both bash (eval) and Python's shlex split alike.
q() { printf "'%s'" "${1//\'/\'\\\'\'}"; }
rk=$(q "$rowkeeper")
ref=$(q "$reference")

echo "machine: $(nproc) cores, load average $(cut -d' ' -f1-3 /proc/loadavg) at the start" \
     "(other jobs, builds included, make the times noisy)"
echo "rowkeeper: $rowkeeper"
echo "reference: $reference ($("$reference" -version))"
echo "timing: the two sides in alternation (bench/alternating_time.py), median of $runs runs after one warm-up round"

# ---- the file -------------------------------------------------------------
awk 'BEGIN {
  print "BEGIN;"
  print "CREATE TABLE t(id INTEGER PRIMARY KEY, name TEXT, qty INTEGER, price REAL, note TEXT);"
  print "CREATE INDEX t_qty ON t(qty);"
  for (x = 1; x <= 200000; x++)
    printf "INSERT INTO t VALUES(%d, \047name %d\047, %d, %.2f, \047note for row %d, with some more filler text\047);\n",
           x, x, x % 1000, x * 0.25, x
  print "COMMIT;"
}' | "$reference" base.db
echo "file: $(stat -c %s base.db) bytes, $("$reference" base.db 'SELECT count(*) FROM t') rows," \
     "made by the 2.8.17 shell; its integrity_check: $("$reference" base.db 'PRAGMA integrity_check;')"

# A fresh copy, flushed to disk so that the measured run does not pay for the copy.
cat > fresh <<EOF
#!/bin/sh
rm -f "\$1-journal" && cp "$work/base.db" "\$1" && sync "\$1"
EOF
chmod +x fresh

results=$work/results.tsv # kind, operation, ours, reference
: > "$results"

# time_pair NAME PREPARE_OURS CMD_OURS PREPARE_REF CMD_REF  (prepares may be empty)
time_pair() {
  local ours theirs
  read -r ours theirs < <(python3 "$timer" "$runs" "$2" "$3" "$4" "$5")
  printf 'time\t%s\t%s\t%s\n' "$1" "$ours" "$theirs" >> "$results"
}

# peak_kib CMD: peak resident memory of one run, in KiB
peak_kib() {
  eval "/usr/bin/time -f %M -o peak.txt $1" >/dev/null 2>&1
  tail -1 peak.txt
}

# written_bytes DB CMD: bytes the command writes to DB and DB-journal, from the
# return values of its write system calls (strace -y names each descriptor's
# file). Prints "db+journal db journal other fsyncs"; "other" is other files,
# e.g. the 2.8 shell's temporary files in /var/tmp. The size of the file's change
# alone would hide rewritten pages and the journal, which is deleted at commit.
written_bytes() {
  eval "strace -f -qq -y -o $1.strace \
    -e trace=write,pwrite64,writev,pwritev,pwritev2,fsync,fdatasync $2" >/dev/null 2>&1
  python3 - "$work/$1" "$1.strace" <<'PY'
import re, sys
db, trace = sys.argv[1], sys.argv[2]
sums = {"db": 0, "journal": 0, "other": 0}
syncs = 0
call = re.compile(r"^\d+\s+(\w+)\(\d+<([^>]*)>.*\)\s+=\s+(-?\d+)")
for line in open(trace):
    m = call.match(line)
    if not m:
        if "unfinished" in line or "resumed" in line:
            sys.exit("interleaved calls in the trace: " + line.strip())
        continue
    name, path, result = m.group(1), m.group(2), int(m.group(3))
    if name in ("fsync", "fdatasync"):
        syncs += 1
        continue
    if result <= 0 or not path.startswith("/") or path.startswith(("/dev/", "/proc/")):
        continue
    sums["db" if path == db else "journal" if path == db + "-journal" else "other"] += result
print(sums["db"] + sums["journal"], sums["db"], sums["journal"], sums["other"], syncs)
PY
}

# changed_pages A B: how many 1024-byte pages differ between the files, and the growth
changed_pages() {
  python3 - "$1" "$2" <<'PY'
import sys
a, b = (open(p, "rb").read() for p in sys.argv[1:3])
n = max(len(a), len(b))
diff = sum(1 for i in range(0, n, 1024) if a[i:i + 1024] != b[i:i + 1024])
print(f"{diff} pages changed, {len(b) - len(a):+d} bytes")
PY
}

# ---- writes ---------------------------------------------------------------
declare -A write_sql=(
  [update]="UPDATE t SET qty=qty+1 WHERE id=777"
  [insert]="INSERT INTO t(name, qty, price, note) VALUES('name 200001', 500, 50000.25, 'note for row 200001, with some more filler text')"
  [delete]="DELETE FROM t WHERE id=4242"
)
details=()
for op in update insert delete; do
  sql=$(q "${write_sql[$op]}")
  ours_cmd="$rk --exec ours.db $sql"
  ref_cmd="$ref ref.db $sql"
  echo "measuring ${op^^} ..."
  time_pair "${op^^} time (ms)" "./fresh ours.db" "$ours_cmd" "./fresh ref.db" "$ref_cmd"

  ./fresh "ours-$op.db"; ./fresh "ref-$op.db"
  read -r o_total o_db o_jr o_other o_sync < <(written_bytes "ours-$op.db" "$rk --exec ours-$op.db $sql")
  read -r r_total r_db r_jr r_other r_sync < <(written_bytes "ref-$op.db" "$ref ref-$op.db $sql")
  printf 'bytes\t%s\t%s\t%s\n' "${op^^} bytes written" "$o_total" "$r_total" >> "$results"
  details+=("${op^^}: rowkeeper db $o_db + journal $o_jr bytes, other files $o_other, $o_sync fsyncs, $(changed_pages base.db "ours-$op.db");"
            "        2.8.17   db $r_db + journal $r_jr bytes, other files $r_other, $r_sync fsyncs, $(changed_pages base.db "ref-$op.db")")

  ./fresh ours.db; ours_peak=$(peak_kib "$ours_cmd")
  ./fresh ref.db; ref_peak=$(peak_kib "$ref_cmd")
  printf 'peak\t%s\t%s\t%s\n' "${op^^} peak memory (MiB)" "$ours_peak" "$ref_peak" >> "$results"
done

# All three in a row on one file, each side.
./fresh ours-all.db; ./fresh ref-all.db
for op in update insert delete; do
  "$rowkeeper" --exec ours-all.db "${write_sql[$op]}" >/dev/null 2>&1
  "$reference" ref-all.db "${write_sql[$op]}"
done

# ---- reads ----------------------------------------------------------------
./fresh read.db
declare -A read_sql=(
  [count]="SELECT count(*) FROM t"
  [rowid]="SELECT * FROM t WHERE id=123456"
  [index]="SELECT * FROM t WHERE qty=500"
  [range]="SELECT * FROM t WHERE qty BETWEEN 100 AND 120"
  [range2]="SELECT * FROM t WHERE qty>=100 AND qty<=120"
  [export]="SELECT * FROM t"
)
# 2.8 reads the whole table for BETWEEN (its planner uses an index only for
# =, <, <=, >, >=), so the same range is also timed in the form it takes to its index.
declare -A read_name=(
  [count]="count(*) (ms)" [rowid]="rowid lookup (ms)" [index]="indexed lookup, 200 rows (ms)"
  [range]="range BETWEEN, 4 200 rows (ms)" [range2]="range >= AND <=, 4 200 rows (ms)"
  [export]="full export, 200 000 rows (ms)"
)
answers=()
for op in count rowid index range range2 export; do
  sql=$(q "${read_sql[$op]}")
  mode=$([ $op = count ] && echo --query-one || echo --query-tab)
  ours_cmd="$rk $mode read.db $sql"
  ref_cmd="$ref -separator $(q "$tab") read.db $sql"
  echo "measuring ${read_name[$op]% (ms)} ..."
  time_pair "${read_name[$op]}" "" "$ours_cmd" "" "$ref_cmd"
  eval "$ours_cmd" > "ours-$op.out" 2>/dev/null
  eval "$ref_cmd" > "ref-$op.out"
  if cmp -s "ours-$op.out" "ref-$op.out"; then
    answers+=("${read_name[$op]% (ms)}: same output ($(wc -l < "ours-$op.out") lines)")
  elif cmp -s <(sort "ours-$op.out") <(sort "ref-$op.out"); then # no ORDER BY: any order will do
    answers+=("${read_name[$op]% (ms)}: same rows in another order ($(wc -l < "ours-$op.out") lines)")
  else
    answers+=("${read_name[$op]% (ms)}: OUTPUT DIFFERS ($(wc -l < "ours-$op.out") lines against $(wc -l < "ref-$op.out"))")
  fi
done
printf 'peak\t%s\t%s\t%s\n' "full export peak memory (MiB)" \
  "$(peak_kib "$rk --query-tab read.db $(q "${read_sql[export]}")")" \
  "$(peak_kib "$ref -separator $(q "$tab") read.db $(q "${read_sql[export]}")")" >> "$results"

# ---- the table ------------------------------------------------------------
echo
echo "load average at the end: $(cut -d' ' -f1-3 /proc/loadavg)"
echo
python3 - "$results" <<'PY'
import sys
rows = []
for line in open(sys.argv[1]):
    kind, name, ours, ref = line.rstrip("\n").split("\t")
    ours, ref = float(ours), float(ref)
    ratio = ours / ref if ref else float("inf")
    write = name.split()[0] in ("UPDATE", "INSERT", "DELETE")
    if kind == "time":
        goal, met = ("<= 3x", ratio <= 3) if write else ("<= 1x", ratio <= 1)
        cells = (f"{ours:.2f}", f"{ref:.2f}")
    elif kind == "bytes":
        goal, met = "< 4x", ratio < 4
        cells = (f"{ours:.0f}", f"{ref:.0f}")
    else:
        ours, ref = ours / 1024, ref / 1024
        goal, met = ("< 20 MiB", ours < 20) if write else ("-", None)
        cells = (f"{ours:.1f}", f"{ref:.1f}")
    verdict = "-" if met is None else ("yes" if met else "NO")
    rows.append((name, *cells, f"{ratio:.2f}", f"{verdict} ({goal})" if met is not None else "-"))
head = ("operation", "ours", "reference", "ratio", "goal met")
widths = [max(len(r[i]) for r in rows + [head]) for i in range(5)]
def show(r):
    print(" | ".join(c.ljust(w) if i == 0 or i == 4 else c.rjust(w) for i, (c, w) in enumerate(zip(r, widths))))
show(head)
print("-+-".join("-" * w for w in widths))
for r in rows:
    show(r)
PY

echo
echo "bytes written (write system calls on the file and its journal, strace -y):"
printf '  %s\n' "${details[@]}"
echo
echo "reads, rowkeeper's output against the 2.8.17 shell's (-separator tab):"
printf '  %s\n' "${answers[@]}"
echo
echo "files rowkeeper wrote, checked by the 2.8.17 shell:"
for f in ours-update.db ours-insert.db ours-delete.db ours-all.db; do
  check=$("$reference" "$f" 'PRAGMA integrity_check;' 2>&1 | tr '\n' ' ')
  if [ "$("$reference" "$f" .dump | md5sum)" = "$("$reference" "ref-${f#ours-}" .dump | md5sum)" ]; then
    same="same .dump as the 2.8.17 shell's own result"
  else
    same=".dump DIFFERS from the 2.8.17 shell's own result"
  fi
  echo "  $f: integrity_check: ${check% }; $same"
done
