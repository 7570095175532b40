#!/usr/bin/env python3
"""map_sums.py TOVA_FW: the sums of `map` against a count address by address.

Makes small firmware at random, with sections that overlap, stand in two
modules or two ELFs, or belong to nothing, and symbols at one address.
"""
import json
import os
import random
import subprocess
import sys
import tempfile

FLAGS = {
    "text": "CONTENTS, ALLOC, LOAD, READONLY, CODE",
    "rodata": "CONTENTS, ALLOC, LOAD, READONLY, DATA",
    "bss": "ALLOC",
}
PAGE = 4096
tool = os.path.abspath(sys.argv[1])


def make_elf(rng, number):
    """Sections as (name, kind, vma, lma, size), and symbols as (address, name)."""
    sections, lma = [], 0x100000 * (number + 1)
    for i in range(rng.randrange(1, 12)):
        kind = rng.choice(list(FLAGS))
        lma += rng.choice([-200, 0, 4, 100, PAGE, 3 * PAGE])
        size = rng.choice([0, 1, 100, 300, PAGE, 5000])
        sections.append((f".{kind}.{number}.{i}", kind,
                         rng.randrange(0x1000, 0x9000, 100), lma, size))
        lma += size
    # The same in every ELF: the first one of the name is in the image.
    sections.append((".bss", "bss", rng.randrange(0x1000, 0x9000), lma, 64))
    symbols = [(rng.choice(sections)[2] + rng.randrange(0, 60, 20), f"s{i}")
               for i in range(12)]
    return sections, symbols


def write_files(folder, rng, elfs):
    """Yields (modules, classes, buffer, dyn_mem)."""
    classes = [("low", 0x1000, 0x3000), ("high", 0x3800, 0x4000)]
    buffer = (rng.randrange(0x1000, 0x8000), rng.choice([0, 256]))
    lines = ["binary_name SUMS", "binary_ver 1.8",
             f"hw_buf_ba {buffer[0]:x}", f"hw_buf_size {buffer[1]:x}"]
    lines += [f"memory_class {n} {b:x} {s:x}" for n, b, s in classes]
    modules, dyn_mem = [], set()
    for number, (sections, _) in enumerate(elfs):
        named = [s for s in sections if s[0] != ".bss" or number == 0]
        taken = [s for s in named if rng.random() < 0.7]
        spare = [s for s in named if s not in taken]
        if spare and rng.random() < 0.5:
            dyn_mem.add(spare[0])
            lines.append(f"dyn_mem {spare[0][0]}")
        built_in = [s for s in taken if rng.random() < 0.3]
        for sign, name, own in (("", f"base{number}", taken),
                                ("b ", f"part{number}", built_in)):
            if own:
                modules.append((name, own, bool(sign)))
                lines += [f"module {sign}{name}", "uuid 5A3C0001-7B1E-4C52-9D40-"
                          f"{len(modules):012X}", f"type {len(modules):x}"]
            for kind in FLAGS:
                group = [s[0] for s in own if s[1] == kind]
                lines += [f"group {kind}"] if group else []
                lines += ["  entry 1000"] if group and kind == "text" else []
                lines += [f"  section {s}" for s in group]
    files = {"fw.def": "\n".join(lines) + "\n", "fw.elfs": ""}
    for number, (sections, symbols) in enumerate(elfs):
        files[f"{number}.elf"] = ""
        files[f"{number}.sections"] = "Idx\n" + "".join(
            f"{i} {n} {size:x} {vma:x} {lma:x} 0 2**2\n {FLAGS[kind]}\n"
            for i, (n, kind, vma, lma, size) in enumerate(sections))
        files[f"{number}.symbols"] = "".join(
            f"{address:08x} t {name}\n" for address, name in symbols)
        files["fw.elfs"] += "".join(f"{number}.{end}\n"
                                    for end in ("elf", "sections", "symbols"))
    for name, text in files.items():
        with open(os.path.join(folder, name), "w") as file:
            file.write(text)
    return modules, classes, buffer, dyn_mem


def cells(section):
    return set(range(section[2], section[2] + section[4]))


def module_sums(own):
    sums = dict.fromkeys(("text", "rodata", "bss", "gaps", "padding", "pages"), 0)
    for kind in FLAGS:
        group = sorted((s[3:] for s in own if s[1] == kind), key=lambda s: s[0])
        if not group:
            continue
        sums[kind] = sum(size for _, size in group)
        covered = {lma + i for lma, size in group for i in range(size)}
        start, last = group[0][0], sum(group[-1])
        length = max(lma + size for lma, size in group) - start
        pages = -(-(last - start) // PAGE)
        sums["gaps"] += length - len(covered)
        sums["padding"] += max(pages * PAGE, length) - length
        sums["pages"] += pages
    return sums


def check(seed, folder):
    rng = random.Random(seed)
    elfs = [make_elf(rng, number) for number in range(rng.randrange(1, 4))]
    modules, classes, buffer, dyn_mem = write_files(folder, rng, elfs)
    run = subprocess.run(
        [tool, "map", "--definition", "fw.def", "--elf-list", "fw.elfs",
         "--json", "-"], cwd=folder, capture_output=True, text=True)
    assert run.returncode == 0 and not run.stderr, run.stderr
    got = json.loads(run.stdout)

    owner = {s: "dyn_mem" for s in dyn_mem}
    for name, own, built_in in modules:
        owner.update((s, name) for s in own if built_in or s not in owner)
    bound = set(owner)
    used = set().union(*map(cells, bound)) if bound else set()
    hw_buf = set(range(buffer[0], buffer[0] + buffer[1]))
    inside = set()
    for area, (name, base, size) in zip(got["classes"], classes, strict=True):
        own = set(range(base, base + size))
        inside |= own
        assert (area["name"], area["used"], area["free"], area["hw_buf"]) == (
            name, len(own & used), size - len(own & used),
            len((own & hw_buf) - used)), area
        listed = {(s["name"], s["module"], s["address"], s["size"])
                  for s in area["sections"]}
        assert listed == {(s[0], owner[s], s[2], s[4]) for s in bound
                          if cells(s) & own or (not s[4] and s[2] in own)}
    assert {(s["name"], s["outside"]) for s in got["outside_classes"]} == {
        (s[0], len(cells(s) - inside)) for s in bound if cells(s) - inside}
    for module, (name, own, built_in) in zip(got["modules"], modules, strict=True):
        want = module_sums(own) | {"name": name, "built_in": built_in}
        assert want.items() <= module.items(), (want, module)
    pairs = {frozenset((a[0], b[0])): len(cells(a) & cells(b))
             for a in bound for b in bound if a < b and cells(a) & cells(b)}
    pairs |= {frozenset((s[0], "hw_buf")): len(cells(s) & hw_buf)
              for s in bound if cells(s) & hw_buf}
    assert {frozenset(s["name"] for s in o["sections"]): o["size"]
            for o in got["overlaps"]} == pairs
    assert {(s["section"], s["elf"]) for s in got["left_out"]} == {
        (s[0], f"{number}.elf") for number, (sections, _) in enumerate(elfs)
        for s in sections
        if s[4] and (s not in bound or (s[0] == ".bss" and number))}
    # Each symbol lies in its section; those of one section share it out.
    assert got["symbols_total"] == sum(
        any(s[2] <= address < s[2] + s[4] for s in sections)
        for sections, symbols in elfs for address, _ in symbols)
    places = {}
    for symbol in got["symbols"]:
        key = (symbol["section"], symbol["address"] if symbol["module"] is None
               else symbol["module"])
        places.setdefault(key, []).append(symbol)
    for (_, module), symbols in places.items():
        if not isinstance(module, str):
            continue
        section = next(s for s in bound if s[0] == symbols[0]["section"])
        first = min(s["address"] for s in symbols)
        assert sum(s["size"] for s in symbols) == section[2] + section[4] - first
        assert all(s["address"] in cells(section) for s in symbols)


for seed in range(60):
    with tempfile.TemporaryDirectory() as scratch:
        try:
            check(seed, scratch)
        except AssertionError:
            print(f"seed {seed}", file=sys.stderr)
            raise
