#!/usr/bin/env python3
"""mutate.py ROOT COUNT SEED: plants COUNT faults at random in a copy of the portable rooms, one at a time, and runs the
native tests of the rooms that see it. Prints each fault that no test noticed, and the share of those noticed."""
import os, random, re, shutil, subprocess, sys

root, count, seed = sys.argv[1], int(sys.argv[2]), int(sys.argv[3])
copy = os.path.join(root, "build/mutation/tree")
build = os.path.join(copy, "build/linux")
random.seed(seed)

# The programs that see a room, its own first: the first that fails ends the search.
tests = {
    "platform": "platform_test propui_test adapter_test inspect_test formula_test",
    "genicam": "genicam_test registers_test formula_test adapter_test inspect_test simcam_test",
    "formula": "formula_test inspect_test genicam_test",
    "items": "items_test propui_test simcam_test adapter_test",
    "adapter": "adapter_test simcam_test inspect_test check_test",
    "propui": "propui_test simcam_test inspect_test playground_test",
    "simcam": "simcam_test items_test check_test playground_test inspect_test",
    "apps/inspect": "inspect_test check_test playground_test",
}

# What a slip of a finger or of the mind looks like.
faults = [
    (r"==", "!="), (r"!=", "=="), (r"<=", "<"), (r">=", ">"), (r" < ", " <= "), (r" > ", " >= "),
    (r"&&", "||"), (r"\|\|", "&&"), (r" \+ ", " - "), (r" - ", " + "), (r" \* ", " + "), (r" / ", " * "),
    (r"\+\+", "--"), (r"\+=", "-="), (r" & ", " | "), (r" << ", " >> "), (r" >> ", " << "), (r" \| ", " & "),
    (r"\btrue\b", "false"), (r"\bfalse\b", "true"), (r"std::min\b", "std::max"), (r"std::max\b", "std::min"),
    (r"\bif \((?!constexpr)", "if (!!!"), (r"(?<=[ (])!(?=\w)", ""), (r"\? ([\w.]+) : ([\w.]+)", r"? \2 : \1"),
    (r"\bnpos\b", "npos - 1"), (r"\.front\(\)", ".back()"), (r"\.first\b", ".second"), (r"\bcontinue;", "break;"),
    (r"\bE_FAIL\b", "E_INVALIDARG"), (r"\bE_NOTIMPL\b", "E_FAIL"), (r"return S_OK;", "return E_FAIL;"),
    (r"\baccess_denied\b", "invalid_parameter"), (r"\binvalid_parameter\b", "access_denied"),
    (r"\bnot_implemented\b", "invalid_parameter"), (r"\bdevice_lost\b", "access_denied"),
    (r"(?<![\w.'])(\d+)(?![\w.'])", None),            # a number that is one more
    (r"^ +[\w.>:\[\]-]+\([^;]*\);$", "; // removed"),  # a call that is missing
]


def run(command, seconds):
    try:
        return subprocess.run(command, cwd=copy, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                              timeout=seconds, env=dict(os.environ, LOCPATH=build + "/locales")).returncode
    except subprocess.TimeoutExpired:
        return -1  # it does not come back: noticed


def compiles(target):
    return run(["cmake", "--build", build, "-j2", "--target", target], 900) == 0


def code_of(line):
    """The line with comments and texts blanked, at the same offsets."""
    line = re.sub(r'"(\\.|[^"\\])*"|\'(\\.|[^\'\\])\'', lambda m: "\x01" * len(m.group()), line)
    at = line.find("//")
    return line if at < 0 else line[:at]


def plant(lines):
    """One fault in one line; None where that line offers none."""
    number = random.randrange(len(lines))
    code = code_of(lines[number])
    if re.match(r"\s*(#|static_assert|using|namespace|\x01)|.*\blog_", code):
        return None
    spots = [(p, m, r) for p, r in faults for m in re.finditer(p, code)]
    if not spots:
        return None
    pattern, match, new = random.choice(spots)
    text = str(int(match.group()) + 1) if new is None else match.expand(new) if "\\" in new else new
    if "\x01" in text:
        return None
    mutated = lines[number][:match.start()] + text + lines[number][match.end():]
    return number, mutated.replace("if (!!!", "if (!") if "!!!" in text else mutated


def negate_whole_condition(line):
    """"if (a && b)" becomes "if (!(a && b))" where the condition ends in its line."""
    match = re.match(r"(.*\bif \()!(.*)(\)( \{| .*;)?)$", line)
    return f"{match[1]}!({match[2]}){match[3]}" if match else line


def prepare():
    os.makedirs(copy, exist_ok=True)
    files = subprocess.run(["git", "ls-files", "-co", "--exclude-standard"], cwd=root, text=True,
                           capture_output=True, check=True).stdout.split("\n")
    for name in filter(None, files):
        source, target = os.path.join(root, name), os.path.join(copy, name)
        if not os.path.isfile(source):
            continue
        same = os.path.exists(target) and open(source, "rb").read() == open(target, "rb").read()
        if not same:
            os.makedirs(os.path.dirname(target), exist_ok=True)
            shutil.copy(source, target)
    shared = os.path.join(root, "../shared/descriptions")
    command = ["cmake", "-S", copy, "-B", build, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Debug", "-DSELVANE_WERROR=OFF",
               "-DCMAKE_CXX_FLAGS=-O0 -DSELVANE_SANITIZED", f"-DSELVANE_DESCRIPTIONS={shared}"]
    programs = sorted({p for names in tests.values() for p in names.split()})
    if run(command, 300) != 0 or not all(compiles(p) and run([f"{build}/bin/{p}"], 600) == 0 for p in programs):
        sys.exit("mutation: the tests do not pass before anything is planted")
    return [(room, os.path.join(folder, f)) for room in tests for folder, _, names in os.walk(os.path.join(root, room))
            if "windows" not in folder for f in names if f.endswith(".cpp")]


def is_noticed(room):
    return any(not compiles(p) or run([f"{build}/bin/{p}", "--gtest_fail_fast"], 120) != 0 for p in tests[room].split())


sources = prepare()
weights = [os.path.getsize(path) for _, path in sources]
planted = noticed = 0
while planted < count:
    (room, path), = random.choices(sources, weights)
    target = os.path.join(copy, os.path.relpath(path, root))
    lines = open(path).read().split("\n")
    fault = plant(lines)
    if fault is None:
        continue
    number, mutated = fault
    if "if (!" in mutated and "if (!" not in lines[number]:
        mutated = negate_whole_condition(mutated)
    open(target, "w").write("\n".join(lines[:number] + [mutated] + lines[number + 1:]))
    library = "selvane_" + ("inspect_parts" if room == "apps/inspect" else room)
    if compiles(library):
        planted += 1
        if is_noticed(room):
            noticed += 1
        else:
            print(f"unnoticed {os.path.relpath(path, root)}:{number + 1}\n-{lines[number]}\n+{mutated}", flush=True)
    shutil.copy(path, target)
print(f"mutation: {noticed} of {planted} planted faults noticed, {100 * noticed / planted:.1f} % (seed {seed})")
