#!/usr/bin/env bash
# Time from starting "rowkeeper --edit-row" on the sample database until its
# dialog is on screen: a scripted user (preloaded) notes the wall clock as
# soon as the dialog shows, then presses Cancel. Median of many runs, on the
# offscreen platform or, with DISPLAY set (Xvfb), in a real window.
# Usage: bench/dialog.sh [build folder]   (a build with tests: it holds the scripted user)
set -euo pipefail
build=${1:-build/release}
runs=${RUNS:-30}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cp examples/sample.db "$work/"
platform=offscreen
[ -n "${DISPLAY:-}" ] && platform=xcb
python3 - "$build" "$work" "$runs" "$platform" <<'PY'
import os, statistics, subprocess, sys, time
build, work, runs, platform = sys.argv[1], sys.argv[2], int(sys.argv[3]), sys.argv[4]
log = os.path.join(work, "user.log")
env = dict(os.environ, QT_QPA_PLATFORM=platform,
           LD_PRELOAD=os.path.abspath(os.path.join(build, "tests/dialogs/libscripted_user.so")),
           ROWKEEPER_SCRIPTED_USER="stamp;press Cancel", ROWKEEPER_SCRIPTED_LOG=log)
program = [os.path.abspath(os.path.join(build, "app/rowkeeper")), "--edit-row", "sample.db", "person", "id=3"]
shown, whole = [], []
for _ in range(runs + 3):
    if os.path.exists(log):
        os.remove(log)
    start = time.time_ns()
    subprocess.run(program, cwd=work, env=env, check=True, stderr=subprocess.DEVNULL)
    end = time.time_ns()
    stamp = int(open(log).read().split()[0])
    shown.append((stamp - start) / 1e6)
    whole.append((end - start) / 1e6)
shown, whole = shown[3:], whole[3:]  # the first runs warm the caches
print(f"{platform}: dialog shown after median {statistics.median(shown):.1f} ms "
      f"(min {min(shown):.1f}, max {max(shown):.1f}); whole run to Cancel {statistics.median(whole):.1f} ms; {runs} runs")
PY
