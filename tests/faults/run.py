#!/usr/bin/env python3
"""Disturbs the kavo command from outside and judges what it leaves: scripts/faults.sh builds the command and runs this.

    run.py --kavo PATH [options] [inject|kill|disk|memory|pairs]...     all parts without a name
    run.py --kavo PATH show SCENARIO CALL NTH ERROR              one run of `inject` or `kill` in full

Exit code 0: nothing found; 1: violations, one JSON line each in the file of --results; 2: the runs could not be made.
"""
import argparse
import collections
import json
import multiprocessing
import os
import shutil
import subprocess
import sys
import tempfile
import time

import classify
import disk
import inject
import kill
import memory
import pairs
import scenarios
import trace
from sandbox import Sandbox

PARTS = {"inject": inject, "kill": kill, "disk": disk, "memory": memory, "pairs": pairs}
SLICES = 6  # of one scenario's runs, so that the workers end at the same time

_worker = {}  # the folder of this worker, and what it has set up last


def begin_worker(root, kavo, options):
    number = multiprocessing.current_process()._identity[0] % 10  # one digit: the folders' names are equally long
    _worker.update(root=f"{root}/w{number}", kavo=kavo, options=options, stages={}, sandboxes={})
    os.makedirs(_worker["root"])


def sandboxes_of(part):
    """Where a part runs; what `disk` needs has to be mounted."""
    if part not in _worker["sandboxes"]:
        make = getattr(PARTS[part], "make_sandboxes", lambda root, kavo: [Sandbox(f"{root}/run", kavo)])
        _worker["sandboxes"][part] = make(_worker["root"], _worker["kavo"])
    return _worker["sandboxes"][part]


def stage_of(part, module, sandbox, scenario):
    """The scenario set up in the sandbox, and its calls where a part goes by them: kept for the next slice."""
    key = part, sandbox.root, sandbox.folders["tmp"], scenario.name
    if key not in _worker["stages"]:
        stage, calls = getattr(module, "Stage", scenarios.Stage)(sandbox, scenario), []
        if part in ("inject", "kill"):
            sandbox.restore(stage.before)
            calls = trace.watch(sandbox, stage.arguments)[1]
        _worker["stages"][key] = stage, calls
    return _worker["stages"][key]


def work(task):
    """One slice of the runs of a scenario: (row, part, counts, violations, number of calls)."""
    part, scenario_name, index, slices = task
    module, options = PARTS[part], _worker["options"]
    counts, violations, call_count = collections.Counter(), [], 0
    scenario = next(one for one in module.scenarios() if one.name == scenario_name)
    try:
        for sandbox in sandboxes_of(part):
            stage, calls = stage_of(part, module, sandbox, scenario)
            call_count = len(calls)
            for job in module.jobs(stage, calls, options)[index::slices]:
                column, found = module.run_job(stage, job)
                counts["runs"] += 1
                counts.update([column] if column else {violation["class"] for violation in found})
                call = job[0] if isinstance(job, tuple) and isinstance(job[0], trace.Call) else None
                for violation in found:
                    place = {"number": call.number, "call": call.name, "nth": call.nth} if call else {}
                    violations.append({"part": part, "scenario": scenario.name, **place, **violation})
    except (scenarios.SetupFailed, RuntimeError, OSError) as reason:
        return scenario_name, part, counts, violations, call_count, f"{scenario_name}: {reason}"
    return scenario_name, part, counts, violations, call_count, None


def row_of(part, name):
    return name.split(":")[0] if part == "pairs" else name


def run_part(part, pool, options, results):
    """Runs a part and prints its table. (violations, troubles)"""
    module = PARTS[part]
    names = [scenario.name for scenario in module.scenarios()
             if not options.only or any(word in scenario.name for word in options.only)]
    slices = 1 if part in ("pairs", "disk") or options.quick else SLICES
    tasks = [(part, name, index, slices) for name in names for index in range(slices)]
    rows, call_counts, troubles, violation_count = {}, {}, [], 0
    left, runs = collections.Counter({name: slices for name in names}), collections.Counter()
    for name in names:
        rows.setdefault(row_of(part, name), collections.Counter())
    started = time.monotonic()
    for done, (name, _, counts, violations, call_count, trouble) in enumerate(pool.imap_unordered(work, tasks), 1):
        rows[row_of(part, name)].update(counts)
        call_counts.setdefault(name, set()).add(call_count)
        rows[row_of(part, name)]["calls"] = call_count
        if trouble:
            troubles.append(trouble)
        for violation in violations:
            results.write(json.dumps(violation, ensure_ascii=False) + "\n")
        results.flush()
        violation_count += len(violations)
        left[name] -= 1
        runs[name] += counts["runs"]
        if left[name] == 0 and not sys.stderr.isatty():  # a log, which is of use when the rest is stopped
            print(f"{part}: {name}: {runs[name]} runs, {violation_count} violations so far", file=sys.stderr,
                  flush=True)
        if sys.stderr.isatty():
            print(f"\r{part}: {done} of {len(tasks)}, {violation_count} violations ", end="", file=sys.stderr)
    if sys.stderr.isatty():
        print("\r\033[K", end="", file=sys.stderr)
    for name, numbers in call_counts.items():
        if len(numbers) > 1:
            troubles.append(f"{name}: undisturbed runs make {' or '.join(map(str, sorted(numbers)))} calls")
    print_table(part, rows, module.COLUMNS)
    total = sum(row["runs"] for row in rows.values())
    print(f"{part}: {total} runs in {time.monotonic() - started:.0f} s, {violation_count} violations\n", flush=True)
    return violation_count, sorted(set(troubles))


def print_table(part, rows, columns):
    rows = {**rows, "all": sum(rows.values(), collections.Counter())}
    width = max(len(name) for name in (*rows, part))
    print("  ".join([part.ljust(width), *columns]))
    for name, row in rows.items():
        print("  ".join([name.ljust(width), *(str(row[column] or "-").rjust(len(column)) for column in columns)]))


def show(arguments, options, root, kavo):
    """One run of a scenario with all of its calls."""
    name, call_name, nth, error = arguments
    sandbox = Sandbox(f"{root}/w0/run", kavo)
    stage = scenarios.Stage(sandbox, next(one for one in scenarios.all_scenarios() if one.name == name))
    what = f"signal={error[3:]}" if error.startswith("SIG") else f"error={error}"
    run = stage.run(trace.strace(sandbox.log, "-y", "-s", "80", "-e", "trace=%file,%desc",
                                 "-e", f"inject={call_name}:{what}:when={nth}"))
    with open(sandbox.log, encoding="utf-8", errors="replace") as log:
        print(log.read())
    print(f"kavo {' '.join(stage.arguments)}\nexit code {run.code}\n{run.output}{run.errors}")
    now = sandbox.snapshot()
    for title, state in (("before", stage.before), ("the result", stage.after)):
        print(f"against {title}:")
        for path, how in classify.differences(state, now):
            print(f"    {path}: {how}")
    if error == "SIGKILL":
        again = sandbox.run(stage.arguments)
        print(f"run again: exit code {again.code}\n{again.output}{again.errors}against the result:")
        for path, how in classify.differences(stage.after, sandbox.snapshot()):
            print(f"    {path}: {how}")
    return 0


def enter_mount_namespace():
    """Starts this program again where it may mount: for every user, where the system allows that."""
    flags = ["-m"] if os.getuid() == 0 else ["-r", "-m"]
    if subprocess.run(["unshare", *flags, "true"], check=False).returncode != 0:
        return
    os.environ["KAVO_FAULTS_NAMESPACE"] = "1"
    os.execvp("unshare", ["unshare", *flags, "--propagation", "private", sys.executable, *sys.argv])


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--kavo", required=True, help="the command to disturb")
    parser.add_argument("--failing-new", default=f"build/native/{memory.LIBRARY}", help="what lets allocations fail")
    parser.add_argument("--quick", action="store_true", help="every tenth run of inject, kill and memory, few of the others")
    parser.add_argument("--step", type=int, help="every so many runs of inject, kill and memory (1; 10 with --quick)")
    parser.add_argument("--all", action="store_true", help="every run of inject, also of verbs with very many calls")
    parser.add_argument("--workers", type=int, default=os.cpu_count(), help="runs at the same time (at most 9)")
    parser.add_argument("--rounds", type=int, default=pairs.ROUNDS, help="how often each pair is run")
    parser.add_argument("--only", action="append", help="scenarios whose name holds this (can be given several times)")
    parser.add_argument("--results", default="build/faults.jsonl", help="where violations are written")
    parser.add_argument("what", nargs="*", help="parts, or show SCENARIO CALL NTH ERROR")
    options = parser.parse_args()
    options.step = options.step or (10 if options.quick else 1)
    kavo = os.path.abspath(options.kavo)
    memory.library = os.path.abspath(options.failing_new)
    is_showing = options.what[:1] == ["show"]
    parts = options.what if options.what and not is_showing else list(PARTS)
    if (is_showing and len(options.what) != 5) or (not is_showing and not set(parts) <= PARTS.keys()):
        parser.error("name parts (inject, kill, disk, memory, pairs), or: show SCENARIO CALL NTH ERROR")
    if "memory" in parts and not is_showing and not os.path.exists(memory.library):
        parser.error(f"{memory.library} is missing: build the target failing_new")
    if "disk" in parts and not is_showing and "KAVO_FAULTS_NAMESPACE" not in os.environ:
        enter_mount_namespace()
    parent = "/dev/shm" if os.access("/dev/shm", os.W_OK) else None  # in memory: no disk slows the runs
    root = tempfile.mkdtemp(prefix="kavo-faults-", dir=parent)
    os.umask(0o022)
    try:
        if is_showing:
            return show(options.what[1:], options, root, kavo)
        os.makedirs(os.path.dirname(os.path.abspath(options.results)), exist_ok=True)
        violations, troubles = 0, []
        with open(options.results, "w", encoding="utf-8") as results, \
                multiprocessing.Pool(min(options.workers, 9), begin_worker, (root, kavo, options)) as pool:
            for part in parts:
                found, trouble = run_part(part, pool, options, results)
                violations += found
                troubles += trouble
        for trouble in troubles:
            print(f"faults: {trouble}", file=sys.stderr)
        if violations:
            print(f"{violations} violations, one a line in {options.results}")
        return 2 if troubles else int(violations > 0)
    finally:
        for entry in os.scandir(root):
            subprocess.run(["umount", f"{entry.path}/disk"], stderr=subprocess.DEVNULL, check=False)
        shutil.rmtree(root, ignore_errors=True)


if __name__ == "__main__":
    sys.exit(main())
