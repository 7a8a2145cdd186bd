#!/usr/bin/env python3
"""Gathers what the page says beside times: facts.py BUILD FILE PROCESSES TARGET... JAVA_HOME...

BUILD is the build folder of the preset linux. Writes FILE: the machine, the compiler, the runtimes; what loading takes;
size, relocations and static constructors of the libraries; and how long a clean build of each TARGET (a preset) takes.
"""
import datetime
import json
import os
import platform
import re
import statistics
import subprocess
import sys
import tempfile
import time

LIBRARIES = ("libtorvan.so", "libmirel.so", "libRXRoot.so", "libPlaceLib.so")
TIMES = 41


def output(*command):
    return subprocess.run(command, check=True, stdout=subprocess.PIPE, text=True).stdout


def cached(build, name):
    with open(os.path.join(build, "CMakeCache.txt"), encoding="utf-8") as cache:
        return re.search(rf"^{name}:[A-Z]+=(.*)$", cache.read(), re.MULTILINE).group(1)


def machine():
    with open("/proc/cpuinfo", encoding="utf-8") as info:
        name = re.search(r"^model name\s*: (.*)$", info.read(), re.MULTILINE)
    return f"{os.cpu_count()} cores of {name.group(1) if name else platform.machine()}"


def system():
    with open("/etc/os-release", encoding="utf-8") as release:
        name = re.search(r'^PRETTY_NAME="(.*)"$', release.read(), re.MULTILINE).group(1)
    return f"{name}, Linux {platform.release()}"


def release(home):
    with open(os.path.join(home, "release"), encoding="utf-8") as file:
        return dict(re.findall(r'^(\w+)="(.*)"$', file.read(), re.MULTILINE))


def feature(home):
    """"17" of a JDK 17.0.15; "8" of 1.8.0."""
    numbers = release(home)["JAVA_VERSION"].split(".")
    return numbers[1] if numbers[0] == "1" else re.match(r"\d+", numbers[0]).group()


def java(home):
    facts = release(home)
    return f"{facts.get('IMPLEMENTOR', 'Java')} {facts['JAVA_VERSION']}"


def load_times(build):
    """Medians in microseconds, the two kinds of process by turns."""
    program = os.path.join(build, "bin/bench_load")
    kinds = {"own": (os.path.join(build, "bin/libtorvan.so"), "_ZN6torvan10InitializeEv"),
             "bare": (os.path.join(build, "bin/libbench_nothing.so"), "BenchNothing")}
    times = {kind: [] for kind in kinds}
    for _ in range(TIMES):
        for kind, arguments in kinds.items():
            times[kind].append(float(output(program, *arguments)))
    return {"times": TIMES, **{kind: statistics.median(values) for kind, values in times.items()}}


def stripped_size(library, folder):
    copy = os.path.join(folder, "library")
    subprocess.run(["strip", "-o", copy, library], check=True)
    return os.path.getsize(copy)


def constructors(library):
    """The sources that construct something when the library is loaded, as debug information has them."""
    addresses = re.findall(r"^(\S+) \S _GLOBAL__sub_I_", output("nm", library), re.MULTILINE)
    places = output("addr2line", "-e", library, *addresses).splitlines() if addresses else []
    return sorted({os.path.basename(place.split(":")[0]) for place in places})


def clean_build(target, folder):
    """Seconds that a clean build of the libraries alone takes, with as many jobs as cores."""
    settings = ["-DTORVAN_BUILD_TESTS=OFF", "-DTORVAN_BUILD_EXAMPLES=OFF", "-DTORVAN_BUILD_BENCHMARKS=OFF"]
    environment = {name: value for name, value in os.environ.items() if not name.endswith("_COMPILER_LAUNCHER")}
    begin, before = time.monotonic(), os.times()
    for command in (["cmake", "--preset", target, "-B", folder, *settings],
                    ["cmake", "--build", folder, "-j", str(os.cpu_count())]):
        subprocess.run(command, check=True, stdout=subprocess.DEVNULL, env=environment)
    after = os.times()
    return {"elapsed": time.monotonic() - begin,
            "processor": sum(after[2:4]) - sum(before[2:4])}  # of the compilers and what else was started


def main(arguments):
    if len(arguments) < 4:
        sys.exit(__doc__)
    build, path, processes = arguments[:3]
    targets = [name for name in arguments[3:] if not os.path.isdir(name)]
    homes = [name for name in arguments[3:] if os.path.isdir(name)]
    libraries = {name: os.path.join(build, "bin", name) for name in LIBRARIES}
    with tempfile.TemporaryDirectory() as folder:
        facts = {
            "busy": os.getloadavg()[1],  # of the last minutes
            "cores": os.cpu_count(),
            "date": datetime.date.today().isoformat(),
            "machine": machine(),
            "system": system(),
            "compiler": output(cached(build, "CMAKE_CXX_COMPILER"), "--version").splitlines()[0],
            "build type": cached(build, "CMAKE_BUILD_TYPE"),
            "javas": {feature(home): java(home) for home in homes},
            "settings": settings(processes),
            "load": load_times(build),
            "sizes": {name: stripped_size(library, folder) for name, library in libraries.items()},
            "relocations": {name: len(re.findall(r" R_X86_64_| R_AARCH64_", output("readelf", "-rW", library)))
                            for name, library in libraries.items()},
            "constructors": {name: constructors(library) for name, library in libraries.items()},
            "builds": {},
        }
    for target in targets:
        with tempfile.TemporaryDirectory() as folder:
            print(f"bench: a clean build of {target}", file=sys.stderr)
            facts["builds"][target] = clean_build(target, folder)
    with open(path, "w", encoding="utf-8") as file:
        json.dump(facts, file, indent=1)


def settings(processes):
    return ("The ways of a row run in one process, by turns in an order drawn at random, 9 times 10 ms of processor time each; the "
            f"ratio of a process is that of its medians, and what is shown is the median of {processes} processes. What calls Java "
            "runs in batches of 64 in a local frame.")


if __name__ == "__main__":
    main(sys.argv[1:])
