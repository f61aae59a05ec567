#!/usr/bin/env python3
"""Times two commands in alternation: A, B, A, B, ...

Usage: alternating_time.py RUNS PREPARE_A COMMAND_A PREPARE_B COMMAND_B

A machine's speed drifts while a benchmark runs (other jobs, frequency, a
neighbour on shared hardware). Timing all runs of one command and then all of
the other lets such a drift fall on one side only; alternating spreads it over
both. Each command is split like a shell word list (shlex) and started
directly, its output discarded; a prepare (may be empty) runs through sh
before each run of its command and is not timed. One warm-up round comes first.

Prints the median wall-clock time of each command, in milliseconds: "A B".
"""
import os
import shlex
import statistics
import subprocess
import sys
import time


def timed_run(argv):
    devnull = os.open(os.devnull, os.O_WRONLY)
    try:
        actions = [(os.POSIX_SPAWN_DUP2, devnull, 1), (os.POSIX_SPAWN_DUP2, devnull, 2)]
        start = time.perf_counter_ns()
        pid = os.posix_spawn(argv[0], argv, os.environ, file_actions=actions)
        os.waitpid(pid, 0)
        return (time.perf_counter_ns() - start) / 1e6
    finally:
        os.close(devnull)


def main():
    runs = int(sys.argv[1])
    prepares = [sys.argv[2], sys.argv[4]]
    commands = [shlex.split(sys.argv[3]), shlex.split(sys.argv[5])]
    times = [[], []]
    for round_number in range(runs + 1):  # round 0 warms the caches
        for side in (0, 1):
            if prepares[side]:
                subprocess.run(prepares[side], shell=True, check=True)
            elapsed = timed_run(commands[side])
            if round_number > 0:
                times[side].append(elapsed)
    print(statistics.median(times[0]), statistics.median(times[1]))


if __name__ == "__main__":
    main()
