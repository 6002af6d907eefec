#!/usr/bin/env python3
"""mutate.py ROOT COUNT SEED: plants COUNT faults at random in copies of the portable rooms, one at a time in each, and runs
the native tests of the rooms that see it. Prints each fault that no test noticed, and the share of those noticed."""
import collections, concurrent.futures, os, queue, random, re, shutil, subprocess, sys

root, count, seed = sys.argv[1], int(sys.argv[2]), int(sys.argv[3])
random.seed(seed)

# The programs that see a room, its own first: the first that fails ends the search.
tests = {
    "platform": "platform_test propui_test adapter_test inspection_test inspect_test formula_test",
    "genicam": "genicam_test registers_test formula_test adapter_test inspect_test simcam_test",
    "formula": "formula_test inspect_test genicam_test",
    "items": "items_test propui_test simcam_test adapter_test",
    "adapter": "adapter_test simcam_test inspect_test check_test",
    "propui": "propui_test simcam_test inspect_test playground_test",
    "simcam": "simcam_test items_test check_test playground_test inspect_test",
    "inspection": "inspection_test inspect_test check_test playground_test camera_test",
    "apps/inspect": "inspect_test check_test playground_test camera_test",
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


class Tree:
    """A copy of the sources with the tests built from it."""

    def __init__(self, number):
        self.folder = os.path.join(root, f"build/mutation/tree{number}")
        self.build = os.path.join(self.folder, "build/linux")
        os.makedirs(self.folder, exist_ok=True)
        subprocess.run(["rsync", "-rlpc", "--delete", "--exclude=/build", "--exclude=/.git", root + "/", self.folder],
                       check=True)
        command = ["cmake", "-S", self.folder, "-B", self.build, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=None",
                   "-DSELVANE_WERROR=OFF", "-DCMAKE_CXX_FLAGS=-O0 -DSELVANE_SANITIZED",
                   f"-DSELVANE_DESCRIPTIONS={os.path.join(root, '../shared/descriptions')}"]
        programs = sorted({p for names in tests.values() for p in names.split()})
        if self.run(command, 300) != 0 or not all(self.compiles(p) and self.passes(p, 600) for p in programs):
            sys.exit("mutation: the tests do not pass before anything is planted")

    def run(self, command, seconds):
        try:
            return subprocess.run(command, cwd=self.folder, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                                  timeout=seconds, env=dict(os.environ, LOCPATH=self.build + "/locales")).returncode
        except subprocess.TimeoutExpired:
            return -1  # it does not come back: noticed

    def compiles(self, target):
        return self.run(["cmake", "--build", self.build, "-j2", "--target", target], 900) == 0

    def passes(self, program, seconds=120):
        return self.run([f"{self.build}/bin/{program}", "--gtest_fail_fast"], seconds) == 0

    def notices(self, fault):
        """Whether a test fails; None where what was planted does not compile."""
        target = os.path.join(self.folder, fault.file)
        open(target, "w").write(fault.text)
        try:
            programs = tests[fault.room].split()
            if not self.compiles(programs[0]):
                return None
            return any(not self.compiles(p) or not self.passes(p) for p in programs)
        finally:
            shutil.copy(os.path.join(root, fault.file), target)


Fault = collections.namedtuple("Fault", "room file text told")


def next_fault():
    while True:
        (room, path), = random.choices(sources, weights)
        lines = open(path).read().split("\n")
        fault = plant(lines)
        if fault is not None:
            number, line = fault
            if "if (!" in line and "if (!" not in lines[number]:
                line = negate_whole_condition(line)
            file = os.path.relpath(path, root)
            return Fault(room, file, "\n".join(lines[:number] + [line] + lines[number + 1:]),
                         f"{file}:{number + 1}\n-{lines[number]}\n+{line}")


def is_noticed(fault):
    tree = trees.get()
    try:
        return tree.notices(fault)
    finally:
        trees.put(tree)


sources = [(room, os.path.join(folder, f)) for room in tests for folder, _, names in os.walk(os.path.join(root, room))
           if "windows" not in folder for f in names if f.endswith(".cpp")]
weights = [os.path.getsize(path) for _, path in sources]
trees = queue.Queue()
for number in range(min(os.cpu_count(), 1 + count // 50)):
    trees.put(Tree(number))
planted = noticed = 0
with concurrent.futures.ThreadPoolExecutor(trees.qsize()) as pool:
    while planted < count:
        batch = [next_fault() for _ in range(count - planted)]
        for fault, was_noticed in zip(batch, pool.map(is_noticed, batch)):
            planted += was_noticed is not None
            noticed += bool(was_noticed)
            if was_noticed is False:
                print(f"unnoticed {fault.told}", flush=True)
print(f"mutation: {noticed} of {planted} planted faults noticed, {100 * noticed / planted:.1f} % (seed {seed})")
