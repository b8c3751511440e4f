#!/usr/bin/env bash
# Runs clang-tidy on each file that the "clang" build compiles, without those of GoogleTest.
#
#   scripts/checks/clang_tidy.sh [FILE...]     default: all files
#
# A file that had no findings is not looked at again until it, a header it includes, .clang-tidy
# or its compile command changes. Headers of the system are not looked at (clang_tidy/own_sources.cpp).
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.." || exit 1

plugin=build/clang-tidy/own_sources.so
source=scripts/checks/clang_tidy/own_sources.cpp
if [[ ! $plugin -nt $source ]]; then
  mkdir -p "$(dirname "$plugin")"
  if ! clang++ -std=c++20 -O1 -fno-rtti -fPIC -shared -isystem "$(llvm-config --includedir)" -o "$plugin" "$source"; then
    echo "0 passed, 1 failed"
    exit 1
  fi
fi

exec python3 - "$@" <<'PY'
import concurrent.futures, hashlib, json, os, pathlib, re, shlex, subprocess, sys

root = pathlib.Path.cwd()
build = root / "build/clang"
cache = root / "build/clang-tidy"
plugin = cache / "own_sources.so"
wanted = {str((root / name).resolve()) for name in sys.argv[1:]}
config = b"".join(p.read_bytes() for p in sorted(root.rglob(".clang-tidy")) if "build" not in p.parts)
version = subprocess.run(["clang-tidy", "--version"], capture_output=True).stdout


def stamp(command):
    """A file named after everything that the result depends on."""
    words = shlex.split(command["command"])
    listing = subprocess.run(  # the dependencies, as make rules
        [words[0], *[w for w in words[1:] if w.startswith(("-I", "-D", "-std", "-isystem"))],
         "-MM", command["file"]], cwd=command["directory"], capture_output=True, text=True)
    names = listing.stdout.replace("\\\n", " ").split()[1:]
    digest = hashlib.sha256(version + config + plugin.read_bytes() + command["command"].encode())
    for name in names:
        digest.update((pathlib.Path(command["directory"]) / name).read_bytes())
    return cache / digest.hexdigest() if listing.returncode == 0 else None


def check(command):
    mark = stamp(command)
    if mark is not None and mark.exists():
        return command["file"], 0, ""
    run = subprocess.run(["clang-tidy", "--load", str(plugin), "--quiet", "-p", str(build), command["file"]],
                         capture_output=True, text=True)
    if run.returncode == 0 and mark is not None:
        mark.touch()
    noise = ("warnings generated", "warning generated", "Suppressed ", "Use -header-filter")
    errors = "\n".join(l for l in run.stderr.splitlines() if not any(n in l for n in noise))
    return command["file"], run.returncode, run.stdout + errors


commands = [c for c in json.load(open(build / "compile_commands.json")) if pathlib.Path(c["file"]).is_relative_to(root)]
precompiled = re.findall(r" -o (\S+\.pch) ", "\n".join(c["command"] for c in commands))
commands = [c for c in commands if ".pch -c " not in c["command"] and (not wanted or c["file"] in wanted)]
made = subprocess.run(["cmake", "--build", build, "--target", *precompiled], capture_output=True, text=True)
if made.returncode != 0:
    print(made.stdout, "0 passed, 1 failed", sep="\n")
    sys.exit(1)
passed = failed = 0
with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
    for name, code, text in pool.map(check, commands):
        if code == 0:
            passed += 1
        else:
            failed += 1
            print(f"{name}\n{text}", flush=True)
print(f"{passed} passed, {failed} failed")
sys.exit(failed != 0 or passed == 0)
PY
