#!/usr/bin/env python3
"""Runs linfit and its peers side by side on the same tables and prints a table of ratios.

usage: run.py --build DIR [--sizes NAME,...] [--repeat K] [--results FILE]

Every program is a whole process, from the CSV table to its report and a file with residuals and fitted
values. Times are wall-clock seconds, the median over the repetitions, which are interleaved between the
programs, with half the distance between the quartiles; memory is the peak of the resident set, summed over
the processes of a run.
"""
import argparse
import datetime
import os
import pathlib
import shutil
import statistics
import subprocess
import sys
import tempfile
import threading
import time

HERE = pathlib.Path(__file__).resolve().parent
SIZES = {
    "longley": (16, 7),
    "1e3x10": (1000, 10),
    "1e4x25": (10_000, 25),
    "1e5x25": (100_000, 25),
    "1e6x25": (1_000_000, 25),
    "1e4x500": (10_000, 500),
    "2000x1000": (2000, 1000),
}
OURS = "linfit"


def debian_python():
    """The interpreter that Debian's pandas and statsmodels belong to."""
    return "/usr/bin/python3" if os.path.exists("/usr/bin/python3") else sys.executable


def peers():
    """Name, command line for (table, output), and a command that succeeds when the peer is there."""
    python = debian_python()
    script = str(HERE / "peers" / "statsmodels_fit.py")
    return [
        ("R", lambda t, o: ["Rscript", "--vanilla", str(HERE / "peers/r.R"), t, o],
         ["Rscript", "-e", "library(data.table)"]),
        ("Python pinv", lambda t, o: [python, script, t, o, "pinv"],
         [python, "-c", "import pandas, statsmodels.api"]),
        ("Python qr", lambda t, o: [python, script, t, o, "qr"],
         [python, "-c", "import pandas, statsmodels.api"]),
        ("gretl", lambda t, o: ["gretlcli", "-b", str(HERE / "peers/gretl.inp")], ["gretlcli", "--version"]),
        ("Octave", lambda t, o: ["octave-cli", "--norc", str(HERE / "peers/octave.m"), t, o],
         ["octave-cli", "--version"]),
    ]


def is_there(command):
    try:
        return subprocess.run(command, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                              stderr=subprocess.DEVNULL).returncode == 0
    except OSError:
        return False


def resident_bytes(session):
    """Resident memory of all processes of a session."""
    total = 0
    for entry in os.listdir("/proc"):
        if not entry.isdigit():
            continue
        try:
            with open(f"/proc/{entry}/stat", encoding="ascii", errors="replace") as stat:
                fields = stat.read().rsplit(")", 1)[1].split()
            if int(fields[3]) == session:
                total += int(fields[21]) * os.sysconf("SC_PAGESIZE")
        except (OSError, IndexError, ValueError):
            continue
    return total


def measure(command, directory, environment):
    """Seconds and peak memory in MB."""
    log = pathlib.Path(directory) / "bench.log"
    peak = 0
    os.chdir(directory)
    files = [(os.POSIX_SPAWN_OPEN, 0, os.devnull, os.O_RDONLY, 0),
             (os.POSIX_SPAWN_OPEN, 1, str(log), os.O_WRONLY | os.O_CREAT | os.O_TRUNC, 0o644),
             (os.POSIX_SPAWN_DUP2, 1, 2)]
    start = time.perf_counter()
    process = os.posix_spawnp(command[0], command, {**os.environ, **environment}, file_actions=files, setsid=True)
    done = threading.Event()

    def watch():
        nonlocal peak
        while not done.wait(0.02):
            peak = max(peak, resident_bytes(process))

    watcher = threading.Thread(target=watch)
    watcher.start()
    _, status, usage = os.wait4(process, 0)
    seconds = time.perf_counter() - start
    done.set()
    watcher.join()
    code = os.waitstatus_to_exitcode(status)
    if code != 0:
        text = log.read_text(encoding="utf-8", errors="replace")
        sys.exit(f"run.py: {' '.join(command)} ended with status {code}:\n{text[-2000:]}")
    return seconds, max(peak, usage.ru_maxrss * 1024) / 1e6


def programs(build):
    tavolite = str(build / "bin" / "tavolite")
    found = [(OURS, lambda t, o: [tavolite, "solve", t, "--response", "y", "--timing", o + ".timing", "--quiet"])]
    for name, command, check in peers():
        if is_there(check):
            found.append((name, command))
        else:
            print(f"{name}: not installed, skipped")
    return found


def make_table(build, name, directory):
    if name == "longley":
        return str(HERE / "longley.csv")
    n, p = SIZES[name]
    table = str(pathlib.Path(directory) / f"{name}.csv")
    subprocess.run([str(build / "bench" / "make_table"), str(n), str(p), table], check=True)
    return table


def run_size(build, name, found, repeat, directory):
    table = make_table(build, name, directory)
    n, p = SIZES[name]
    count = repeat or (21 if n * p < 100_000 else 7)
    times = {program: [] for program, _ in found}
    memory = {program: 0.0 for program, _ in found}
    bare = []
    steps = {}
    for _ in range(count):
        for program, command in found:
            output = str(pathlib.Path(directory) / "output.csv")
            seconds, peak = measure(command(table, output), directory,
                                       {"BENCH_TABLE": table, "BENCH_OUTPUT": output})
            times[program].append(seconds)
            memory[program] = max(memory[program], peak)
            if program == OURS:
                for step, value in read_steps(output + ".timing"):
                    steps.setdefault(step, []).append(value)
        bare.append(bare_seconds(build, n, p))
    if name != "longley":
        os.remove(table)
    return {"times": {k: statistics.median(v) for k, v in times.items()},
            "spread": {k: half_quartile_distance(v) for k, v in times.items()}, "memory": memory,
            "bare": statistics.median(bare), "steps": {k: statistics.median(v) for k, v in steps.items()}}


def half_quartile_distance(values):
    quartiles = statistics.quantiles(values, method="inclusive")
    return (quartiles[2] - quartiles[0]) / 2


def bare_seconds(build, n, p):
    text = subprocess.run([str(build / "bench" / "bare_solve"), str(n), str(p)], check=True, capture_output=True,
                          text=True).stdout
    return sum(float(word) for word in text.split())


def solver_alone(build, directory, n, p, repeat):
    """Median seconds, peak MB and bare seconds of `linfit` itself on a prepared control file."""
    scratch = tempfile.mkdtemp(dir=directory)
    subprocess.run([str(build / "bench" / "make_instance"), str(n), str(p), scratch, str(build / "bin") + "/"],
                   check=True)
    seconds, bare, peak = [], [], 0.0
    for _ in range(repeat):
        taken, memory = measure([str(build / "bin" / "linfit"), scratch + "/control.txt"], scratch, {})
        seconds.append(taken)
        peak = max(peak, memory)
        bare.append(bare_seconds(build, n, p))
    shutil.rmtree(scratch)
    return statistics.median(seconds), peak, statistics.median(bare)


def solver_table(build, directory):
    lines = ["The solver alone: `linfit` on a prepared instance, results file included.", "",
             "| size | seconds | bare solve | ratio | peak MB | design matrix MB |",
             "| --- | ---: | ---: | ---: | ---: | ---: |"]
    for name, n, p, repeat in [("16x7", 16, 7, 21), ("1e6x25", 1_000_000, 25, 7), ("2e6x25", 2_000_000, 25, 3)]:
        seconds, peak, bare = solver_alone(build, directory, n, p, repeat)
        lines.append(f"| {name} | {seconds:.4f} | {bare:.4f} | {seconds / bare:.1f} | {peak:.0f} | {n * p * 8e-6:.1f} |")
    return lines


# Steps that the timing file tells by the status line before which they end.
STEP_BEFORE_LINE = [("DGELS", "factor"), ("DPOTRI", "factor"), ("bratio", "statistics"), ("gammad", "statistics"),
                    ("Parameter", "statistics"), ("", "report")]
RESULTS_STEP = "estimate, report, results file"


GROWTH = [250_000, 500_000, 1_000_000, 2_000_000, 4_000_000]


def growth_table(build, directory):
    """The whole run on tables of more and more rows: time and memory are to grow in proportion."""
    lines = ["Growth with the number of rows, 25 coefficients, from the table to the results file. A process that",
             "only fills the table's numbers into fresh memory once takes what the last column says.", "",
             "| rows | seconds | microseconds a row | peak MB | bytes a number | seconds to fill memory |",
             "| --- | ---: | ---: | ---: | ---: | ---: |"]
    for n in GROWTH:
        table = str(pathlib.Path(directory) / "growth.csv")
        subprocess.run([str(build / "bench" / "make_table"), str(n), "25", table], check=True)
        command = [str(build / "bin" / "tavolite"), "solve", table, "--response", "y", "--quiet"]
        os.sync()  # the disk's work on the table is not the program's
        runs = [measure(command, directory, {}) for _ in range(3)]
        fill = min(measure(["dd", "if=/dev/zero", "of=/dev/null", f"bs={n * 25 * 8}", "count=1"], directory, {})[0]
                   for _ in range(3))
        os.remove(table)
        seconds = min(run[0] for run in runs)
        peak = max(run[1] for run in runs)
        lines.append(f"| {n} | {seconds:.2f} | {seconds / n * 1e6:.2f} | {peak:.0f} | {peak * 1e6 / (n * 25):.1f} "
                     f"| {fill:.2f} |")
    return lines


def read_steps(file):
    """Seconds of each step of one run, steps of one name added up."""
    steps = {}
    with open(file, encoding="utf-8") as lines:
        for line in lines:
            seconds, step = line.rstrip("\n").split("\t", 1)
            if step.startswith("before the line: "):
                text = step.removeprefix("before the line: ")
                step = next(name for start, name in STEP_BEFORE_LINE if text.startswith(start))
            elif step == RESULTS_STEP and "factor" in steps:
                step = "results file"
            steps[step] = steps.get(step, 0.0) + float(seconds)
    return steps.items()


def seconds_text(seconds):
    return f"{seconds:.4f}" if seconds < 0.1 else f"{seconds:.3f}"


def overview(results):
    names = list(next(iter(results.values()))["times"])
    lines = ["Seconds of the whole process: median ± half the distance between the quartiles (peak MB). The ratio is",
             "the fastest peer's time over linfit's.", "",
             "| size | " + " | ".join(names) + " | ratio | bare solve |",
             "| --- |" + " ---: |" * (len(names) + 2)]
    for size, result in results.items():
        cells = [f"{seconds_text(result['times'][k])} ± {seconds_text(result['spread'][k])} "
                 f"({result['memory'][k]:.0f})" for k in names]
        others = [result["times"][k] for k in names if k != OURS]
        ratio = f"{min(others) / result['times'][OURS]:.2f}" if others else "-"
        lines.append(f"| {size} | " + " | ".join(cells) + f" | {ratio} | {result['bare']:.3f} |")
    return lines


def step_table(results):
    steps = []
    for result in results.values():
        steps += [step for step in result["steps"] if step not in steps]
    lines = ["Seconds per step of the linfit run.", "",
             "| step | " + " | ".join(results) + " |", "| --- |" + " ---: |" * len(results)]
    for step in steps:
        lines.append(f"| {step} | " + " | ".join(
            f"{r['steps'][step]:.4f}" if step in r["steps"] else "-" for r in results.values()) + " |")
    return lines


def versions(found):
    commands = {"R": ["Rscript", "-e", "cat(R.version.string, 'data.table', format(packageVersion('data.table')))"],
                "Python pinv": [debian_python(), "-c",
                                "import sys, pandas, statsmodels; print('Python', sys.version.split()[0], 'pandas', "
                                "pandas.__version__, 'statsmodels', statsmodels.__version__)"],
                "gretl": ["gretlcli", "--version"], "Octave": ["octave-cli", "--version"]}
    lines = []
    for name, _ in found:
        if name in commands:
            text = subprocess.run(commands[name], capture_output=True, text=True).stdout.strip()
            lines.append("- " + text.splitlines()[0])
    return lines


def machine():
    with open("/proc/cpuinfo", encoding="utf-8") as info:
        model = next((line.split(":", 1)[1].strip() for line in info if line.startswith("model name")), "unknown")
    with open("/proc/meminfo", encoding="ascii") as info:
        memory = int(info.readline().split()[1]) / 1024 / 1024
    system = "unknown"
    if os.path.exists("/etc/os-release"):
        with open("/etc/os-release", encoding="utf-8") as release:
            system = dict(l.rstrip().split("=", 1) for l in release if "=" in l).get("PRETTY_NAME", system).strip('"')
    return f"{os.cpu_count()} cores, {model}, {memory:.0f} GiB of memory, {system}"


def main():
    parser = argparse.ArgumentParser(description="linfit beside its peers")
    parser.add_argument("--build", type=pathlib.Path, required=True, help="build directory with bin/")
    parser.add_argument("--sizes", default=",".join(SIZES), help="comma-separated: " + ", ".join(SIZES))
    parser.add_argument("--repeat", type=int, default=0, help="runs of each program (default: 21, large sizes 7)")
    parser.add_argument("--results", type=pathlib.Path, help="write the tables to this file, too")
    arguments = parser.parse_args()
    build = arguments.build.resolve()
    report = arguments.results and arguments.results.resolve()
    found = programs(build)
    results = {}
    directory = tempfile.mkdtemp(prefix="linfit-bench-")
    try:
        for name in arguments.sizes.split(","):
            results[name] = run_size(build, name, found, arguments.repeat, directory)
            print(f"{name}: " + ", ".join(f"{k} {v:.3f} s" for k, v in results[name]["times"].items()), flush=True)
        alone = solver_table(build, directory)
        growth = growth_table(build, directory)
    finally:
        os.chdir(HERE)
        shutil.rmtree(directory, ignore_errors=True)
    text = ["# Bench results", "",
            f"{datetime.date.today().isoformat()}, {machine()}. Made by `make bench`.", "", *versions(found), "",
            *overview(results), "", *step_table(results), "", *alone, "", *growth, ""]
    print("\n".join(text))
    if report:
        report.write_text("\n".join(text), encoding="utf-8")


if __name__ == "__main__":
    main()
